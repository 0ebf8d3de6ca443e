// Pictures where the file system is in the way.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "tests/client/IconFixture.h"
#include "tests/support/TraceLines.h"

namespace {

namespace fs = std::filesystem;

class IconFilesTest : public IconFixture {
protected:
    ~IconFilesTest() override { unsetenv("TMPDIR"); }

    int downloadInto(const fs::path& temporary)
    {
        setenv("TMPDIR", temporary.c_str(), 1);
        return download("a.png", std::string(100'000, 'x'));
    }

    void expectNotSent(const fs::path& file)
    {
        EXPECT_EQ(upload(file), 0);
        EXPECT_EQ(reason(), "Unable to read the picture: " + file.string());
        EXPECT_EQ(narrow(url), "before");
        EXPECT_EQ(requestCount(), 0U);
    }
};

/// Lets no file grow beyond `bytes`, as a full disk does.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }

private:
    rlimit before_{};
    void (*signal_)(int);
};

/// Nothing is closed to root, so that a test that root runs goes on as a user without rights.
class WithoutRights {
public:
    WithoutRights()
    {
        if (user_ == 0 && seteuid(kNobody) != 0) ADD_FAILURE() << "root cannot be left";
    }
    WithoutRights(const WithoutRights&) = delete;
    WithoutRights& operator=(const WithoutRights&) = delete;
    ~WithoutRights()
    {
        if (seteuid(user_) != 0) std::abort();
    }

private:
    static constexpr uid_t kNobody = 65534;
    uid_t user_ = geteuid();
};

}  // namespace

TEST_F(IconFilesTest, AreNotReadWithoutTheRight)
{
    const fs::path file = write("closed.png", "picture");
    fs::permissions(file, fs::perms::none);
    const WithoutRights user;
    expectNotSent(file);
}

TEST_F(IconFilesTest, AreNoPipes)
{
    const fs::path pipe = folder / "pipe.png";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    expectNotSent(pipe);
}

TEST_F(IconFilesTest, HaveNamesThatGoOutAsTheyStand)
{
    for (const std::string name : {"a\\b.png", "a\"b\".png"}) {
        reply(resultReply("SUCCESS"));
        const fs::path file = write(name, "picture");
        EXPECT_EQ(upload(file), 1);
        EXPECT_NE(lastBody().find("name=\"name\"\r\n\r\n" + name + "\r\n"), std::string::npos);
        EXPECT_NE(lastBody().find("filename=\"" + file.string() + "\"\r\n"), std::string::npos);
    }
}

TEST_F(IconFilesTest, NeedATemporaryFolder)
{
    const TraceLines lines;
    EXPECT_EQ(downloadInto(folder / "missing"), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "get temporary dir failed.");
    EXPECT_EQ(TraceLines::all(), (std::vector<std::string>{"9 Debug: ---->>>> Enter CWapiClient::GetSpaceIcon",
                                                           "0 Error: get temporary dir failed.",
                                                           "9 Debug: <<<<---- Leave CWapiClient::GetSpaceIcon"}));
}

TEST_F(IconFilesTest, LeaveNothingInAFullTemporaryFolder)
{
    int result = 1;
    {
        const FileSizeLimit full(4096);
        result = downloadInto(folder);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "Unable to write the file: " + (folder / "a.png").string());
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(IconFilesTest, AreNotWrittenWithoutTheRight)
{
    fs::permissions(folder, fs::perms(0555));
    const WithoutRights user;
    EXPECT_EQ(downloadInto(folder), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "Unable to write the file: " + (folder / "a.png").string());
    EXPECT_TRUE(fs::is_empty(folder));
}
