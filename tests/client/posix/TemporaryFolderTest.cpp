// Icons that come down where there is no room for them.
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <sys/resource.h>

#include "tests/client/ClientFixture.h"
#include "tests/support/TraceLines.h"

namespace {

namespace fs = std::filesystem;

class TemporaryFolderTest : public ClientFixture {
protected:
    TemporaryFolderTest() { fs::create_directories(folder); }
    ~TemporaryFolderTest() override
    {
        unsetenv("TMPDIR");
        fs::remove_all(folder);
    }

    int download(const fs::path& into)
    {
        setenv("TMPDIR", into.c_str(), 1);
        server.reply(200, "image/png", std::string(100'000, 'x'));
        return client.GetSpaceIcon("c"_w, server.url("/a.png"), path);
    }

    fs::path folder = fs::temp_directory_path() / ("temporary-folder-test-" + std::to_string(server.port()));
    CStringT path = "before"_w;
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

}  // namespace

TEST_F(TemporaryFolderTest, MissingIsSaid)
{
    const TraceLines lines;
    EXPECT_EQ(download(folder / "missing"), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "get temporary dir failed.");
    EXPECT_EQ(TraceLines::all(), (std::vector<std::string>{"9 Debug: ---->>>> Enter CWapiClient::GetSpaceIcon",
                                                           "0 Error: get temporary dir failed.",
                                                           "9 Debug: <<<<---- Leave CWapiClient::GetSpaceIcon"}));
}

TEST_F(TemporaryFolderTest, FullLeavesNothingBehind)
{
    int result = 1;
    {
        const FileSizeLimit full(4096);
        result = download(folder);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "Unable to write the file: " + (folder / "a.png").string());
    EXPECT_TRUE(fs::is_empty(folder));
}
