// Who may read what the library writes, and what it does not write to.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "pvutil/Folders.h"
#include "pvutil/LogFile.h"
#include "tests/support/Text.h"

namespace kzn::test {
namespace {

namespace fs = std::filesystem;

class PrivateFiles : public testing::Test {
protected:
    PrivateFiles()
    {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        folder = fs::temp_directory_path() / (std::string("pvwapi-private-") + test->name());
        fs::remove_all(folder);
        fs::create_directories(folder);
        // Even a mask that allows everything lets nobody else in.
        mask = umask(0);
    }

    ~PrivateFiles() override
    {
        umask(mask);
        file.close();
        fs::remove_all(folder);
    }

    bool open(const fs::path& path) { return file.open(wide(path.string())); }

    static unsigned int modeOf(const fs::path& path)
    {
        struct stat found {};
        EXPECT_EQ(stat(path.c_str(), &found), 0);
        return found.st_mode & 07777U;
    }

    fs::path folder;
    mode_t mask = 0;
    pvutil::LogFile file;
};

TEST_F(PrivateFiles, LogIsTheOwnersAlone)
{
    ASSERT_TRUE(open(folder / "log.txt"));
    EXPECT_EQ(modeOf(folder / "log.txt"), 0600U);
    std::ofstream(folder / "loose.txt") << "x";
    ASSERT_EQ(modeOf(folder / "loose.txt"), 0666U);
    ASSERT_TRUE(open(folder / "loose.txt"));
    EXPECT_EQ(modeOf(folder / "loose.txt"), 0600U);
    EXPECT_EQ(fs::file_size(folder / "loose.txt"), 0U);
}

TEST_F(PrivateFiles, LinkIsNotFollowed)
{
    std::ofstream(folder / "precious") << "precious";
    fs::create_symlink(folder / "precious", folder / "log.txt");
    EXPECT_FALSE(open(folder / "log.txt"));
    EXPECT_EQ(fs::file_size(folder / "precious"), 8U);
    fs::remove(folder / "log.txt");
    fs::create_symlink(folder / "nowhere", folder / "log.txt");
    EXPECT_FALSE(open(folder / "log.txt"));
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(PrivateFiles, PipeNeitherHangsNorIsWritten)
{
    const auto path = folder / "log.txt";
    ASSERT_EQ(mkfifo(path.c_str(), 0666), 0);
    EXPECT_FALSE(open(path));
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_FALSE(open(path));
    EXPECT_FALSE(file.isOpen());
    close(reader);
    EXPECT_FALSE(open("/dev/null"));
    EXPECT_FALSE(open("/dev/full"));
}

TEST_F(PrivateFiles, NameWithAZeroIsNone)
{
    CStringT name = wide((folder / "log.txt").string());
    name += CStringT::value_type{0};
    name += "x"_w;
    EXPECT_FALSE(file.open(name));
    EXPECT_FALSE(pvutil::createFolders(name));
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(PrivateFiles, LogIsNotInheritedByProgramsThatAreStarted)
{
    const auto before = dup(0);
    close(before);
    ASSERT_TRUE(open(folder / "log.txt"));
    EXPECT_TRUE((fcntl(before, F_GETFD) & FD_CLOEXEC) != 0);
}

TEST_F(PrivateFiles, FoldersThatAreMadeAreTheOwnersAlone)
{
    fs::create_directory(folder / "stood");
    fs::permissions(folder / "stood", fs::perms(0755));
    EXPECT_TRUE(pvutil::createFolders(wide((folder / "stood/a/b/c/").string())));
    EXPECT_EQ(modeOf(folder / "stood"), 0755U);
    EXPECT_EQ(modeOf(folder / "stood/a"), 0700U);
    EXPECT_EQ(modeOf(folder / "stood/a/b/c"), 0700U);
}

}  // namespace
}  // namespace kzn::test
