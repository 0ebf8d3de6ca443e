// Who may read what the library writes, and what it does not write to.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "pvutil/Folders.h"
#include "pvutil/LogFile.h"
#include "tests/support/FileBytes.h"
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

    bool open(const fs::path& path) { return file.open(wide(path.string()), wide((folder / "earlier.txt").string())); }

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
    EXPECT_EQ(modeOf(folder / "earlier.txt"), 0600U);
    EXPECT_EQ(fs::file_size(folder / "earlier.txt"), 1U);
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

TEST_F(PrivateFiles, WhatIsNoFileOfTheUsersIsNeitherFollowedNorReplacedByTheEarlierLog)
{
    const auto earlier = folder / "earlier.txt";
    std::ofstream(folder / "precious") << "precious";
    fs::create_symlink(folder / "precious", earlier);
    std::ofstream(folder / "log.txt") << "old ";
    ASSERT_TRUE(open(folder / "log.txt"));
    file.write("new ");
    EXPECT_EQ(bytesOf(folder / "precious"), "precious");
    EXPECT_EQ(fs::read_symlink(earlier), folder / "precious");

    fs::remove(earlier);
    ASSERT_EQ(mkfifo(earlier.c_str(), 0666), 0);
    ASSERT_TRUE(open(folder / "log.txt"));
    file.write("newer");
    EXPECT_TRUE(fs::is_fifo(earlier));
    EXPECT_EQ(bytesOf(folder / "log.txt"), "old new newer");
}

// Only root can make such a file, and root's own rights would hide the difference.
TEST_F(PrivateFiles, SomebodyElsesFileIsLeftAlone)
{
    const auto log = folder / "log.txt";
    const auto earlier = folder / "earlier.txt";
    std::ofstream(log) << "old ";
    std::ofstream(earlier) << "theirs";
    if (geteuid() != 0) {
        EXPECT_FALSE(open("/etc/passwd"));
        return;
    }
    constexpr uid_t kOther = 12345;
    ASSERT_EQ(chown(earlier.c_str(), kOther, kOther), 0);
    ASSERT_TRUE(open(log));
    file.write("new");
    EXPECT_EQ(bytesOf(log), "old new");
    EXPECT_EQ(bytesOf(earlier), "theirs");
    ASSERT_EQ(chown(log.c_str(), kOther, kOther), 0);
    EXPECT_FALSE(open(log));
    EXPECT_EQ(bytesOf(log), "old new");
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
    EXPECT_FALSE(file.open(name, wide((folder / "earlier.txt").string())));
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

TEST_F(PrivateFiles, LogNeverTakesTheStandardDescriptors)
{
    std::array<int, 3> saved{};
    for (int standard = 0; standard < 3; ++standard) {
        saved.at(static_cast<std::size_t>(standard)) = fcntl(standard, F_DUPFD_CLOEXEC, 10);
        close(standard);
    }
    const bool opened = open(folder / "log.txt");
    std::array<bool, 3> taken{};
    for (int standard = 0; standard < 3; ++standard) {
        taken.at(static_cast<std::size_t>(standard)) = fcntl(standard, F_GETFD) >= 0;
        dup2(saved.at(static_cast<std::size_t>(standard)), standard);
        close(saved.at(static_cast<std::size_t>(standard)));
    }
    EXPECT_TRUE(opened);
    EXPECT_THAT(taken, testing::Each(false));
    file.write("x");
    EXPECT_EQ(bytesOf(folder / "log.txt"), "x");
}

TEST_F(PrivateFiles, LogIsHeldByAForkedChildToo)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    ASSERT_TRUE(open(folder / "log.txt"));
    const pid_t child = fork();
    if (child == 0) {
        char end = 0;
        close(ends[1]);
        file.write("child ");
        _exit(static_cast<int>(read(ends[0], &end, 1)));
    }
    ASSERT_GT(child, 0);
    close(ends[0]);
    file.close();
    for (int times = 0; bytesOf(folder / "log.txt").empty() && times < 5000; ++times) usleep(1000);
    ASSERT_TRUE(open(folder / "log.txt"));
    file.write("parent");
    EXPECT_EQ(bytesOf(folder / "log.txt"), "child parent");
    file.close();

    close(ends[1]);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    ASSERT_TRUE(open(folder / "log.txt"));
    EXPECT_EQ(bytesOf(folder / "earlier.txt"), "child parent");
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
