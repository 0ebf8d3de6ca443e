// The file that the log is written to.
#include "pvutil/LogFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <barrier>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "tests/support/FileBytes.h"
#include "tests/support/Text.h"

namespace kzn::test {
namespace {

namespace fs = std::filesystem;
using pvutil::LogFile;

static_assert(std::is_trivially_destructible_v<LogFile>);

class LogFileTest : public testing::Test {
protected:
    LogFileTest()
    {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        folder = fs::temp_directory_path() / (std::string("pvwapi-log-") + test->name());
        fs::remove_all(folder);
        fs::create_directories(folder);
    }

    ~LogFileTest() override
    {
        file.close();
        fs::remove_all(folder);
    }

    static CStringT text(const fs::path& path) { return wide(path.u8string().c_str()); }

    static CStringT wide(const char8_t* utf8) { return ::wide(reinterpret_cast<const char*>(utf8)); }

    // What another process would do: the hold belongs to the opening.
    bool open(LogFile& log) const { return log.open(text(path()), text(earlier())); }
    bool open() { return open(file); }

    fs::path path() const { return folder / "log.txt"; }
    fs::path earlier() const { return folder / "log.1.txt"; }

    void leave(const std::string& lines) const { std::ofstream(path(), std::ios::binary) << lines; }

    fs::path folder;
    LogFile file;
};

TEST_F(LogFileTest, LinesStandInTheFileAtOnce)
{
    ASSERT_TRUE(open());
    EXPECT_TRUE(file.isOpen());
    file.write("one\n");
    EXPECT_EQ(bytesOf(path()), "one\n");
    file.write(std::string("t\0o", 3));
    file.write("");
    EXPECT_EQ(bytesOf(path()), std::string("one\nt\0o", 7));
}

TEST_F(LogFileTest, KeepsWhatStoodThereAsTheEarlierOne)
{
    leave("from the last time, and longer");
    ASSERT_TRUE(open());
    EXPECT_EQ(bytesOf(path()), "");
    EXPECT_EQ(bytesOf(earlier()), "from the last time, and longer");
    file.write("new");
    EXPECT_EQ(bytesOf(path()), "new");
    ASSERT_TRUE(file.open(text(folder / "other.txt"), text(folder / "other.1.txt")));
    file.write("other");
    EXPECT_EQ(bytesOf(path()), "new");
    EXPECT_EQ(bytesOf(folder / "other.txt"), "other");
}

TEST_F(LogFileTest, KeepsOneEarlierFile)
{
    for (const char* lines : {"first", "second", "third"}) {
        ASSERT_TRUE(open());
        file.write(lines);
        file.close();
    }
    EXPECT_EQ(bytesOf(path()), "third");
    EXPECT_EQ(bytesOf(earlier()), "second");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 2);
}

TEST_F(LogFileTest, DoesNotKeepAnEmptyFile)
{
    std::ofstream(earlier()) << "of the last real run";
    for (int times = 0; times < 10; ++times) {
        ASSERT_TRUE(open());
        file.close();
    }
    EXPECT_EQ(bytesOf(path()), "");
    EXPECT_EQ(bytesOf(earlier()), "of the last real run");
}

TEST_F(LogFileTest, AppendsToAFileThatIsHeld)
{
    LogFile first;
    ASSERT_TRUE(open(first));
    first.write("one ");
    ASSERT_TRUE(open());
    file.write("two ");
    first.write("three ");
    first.close();

    LogFile third;
    ASSERT_TRUE(open(third));
    third.write("four");
    third.close();
    EXPECT_EQ(bytesOf(path()), "one two three four");
    EXPECT_FALSE(fs::exists(earlier()));

    file.close();
    ASSERT_TRUE(open());
    EXPECT_EQ(bytesOf(path()), "");
    EXPECT_EQ(bytesOf(earlier()), "one two three four");
}

TEST_F(LogFileTest, AppendsWhereTheEarlierOneCannotBe)
{
    leave("old ");
    fs::create_directories(earlier() / "in it");
    ASSERT_TRUE(open());
    file.write("new");
    EXPECT_EQ(bytesOf(path()), "old new");
    EXPECT_TRUE(fs::exists(earlier() / "in it"));
}

// Some find the same free file at the same time. One of them renames it, and nobody writes to what was renamed.
TEST_F(LogFileTest, LosesNothingWhereManyBeginAtOnce)
{
    constexpr std::size_t kWriters = 6;
    for (int round = 0; round < 50; ++round) {
        leave("before");
        fs::remove(earlier());
        std::array<LogFile, kWriters> logs;
        std::barrier start(kWriters);
        std::vector<std::thread> threads;
        for (std::size_t at = 0; at < kWriters; ++at)
            threads.emplace_back([&, at] {
                start.arrive_and_wait();
                if (open(logs.at(at))) logs.at(at).write(std::string(1, static_cast<char>('a' + at)));
            });
        for (std::thread& thread : threads) thread.join();
        for (LogFile& log : logs) log.close();

        std::string written = bytesOf(path());
        std::sort(written.begin(), written.end());
        ASSERT_EQ(written, "abcdef") << round;
        ASSERT_EQ(bytesOf(earlier()), "before") << round;
    }
}

TEST_F(LogFileTest, KeepsTheLinesOfSeveralWritersWhole)
{
    constexpr std::size_t kWriters = 4;
    constexpr std::size_t kLines = 200;
    std::array<LogFile, kWriters> logs;
    for (LogFile& log : logs) ASSERT_TRUE(open(log));
    std::vector<std::thread> threads;
    for (std::size_t at = 0; at < kWriters; ++at)
        threads.emplace_back([&, at] {
            for (std::size_t line = 0; line < kLines; ++line)
                logs.at(at).write(std::string(line, static_cast<char>('a' + at)) + "\n");
        });
    for (std::thread& thread : threads) thread.join();
    for (LogFile& log : logs) log.close();

    std::array<std::size_t, kWriters> next{};
    std::ifstream in(path(), std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        if (line.empty()) continue;  // the first of each, which tells nothing of its writer
        const auto writer = static_cast<std::size_t>(line.front() - 'a');
        ASSERT_LT(writer, kWriters) << line;
        ASSERT_EQ(line, std::string(++next.at(writer), line.front()));
    }
    for (const std::size_t last : next) EXPECT_EQ(last, kLines - 1);
}

TEST_F(LogFileTest, ClosedItTakesNothing)
{
    file.write("nowhere");
    ASSERT_TRUE(open());
    file.write("kept");
    file.close();
    file.close();
    EXPECT_FALSE(file.isOpen());
    file.write("lost");
    EXPECT_EQ(bytesOf(path()), "kept");
    fs::remove(path());
    EXPECT_FALSE(fs::exists(path()));
}

TEST_F(LogFileTest, NameMayBeInAnyScript)
{
    const auto name = folder / u8"Größe-журнал-\u65E5\u8A8C-\U0001F600.txt";
    const auto older = folder / u8"Größe-журнал-\u65E5\u8A8C-\U0001F600.1.txt";
    for (const char* lines : {"x", "y"}) {
        ASSERT_TRUE(file.open(text(name), text(older)));
        file.write(lines);
    }
    EXPECT_EQ(bytesOf(name), "y");
    EXPECT_EQ(bytesOf(older), "x");
}

TEST_F(LogFileTest, WhatCannotBeOpenedIsNotOpen)
{
    ASSERT_TRUE(open());
    EXPECT_FALSE(file.open(text(folder / "missing" / "log.txt"), text(earlier())));
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(file.open(text(folder), text(earlier())));
    EXPECT_FALSE(file.open({}, text(earlier())));
    file.write("nowhere");
    EXPECT_EQ(bytesOf(path()), "");
}

TEST_F(LogFileTest, ManyOpeningsLeaveNothingBehind)
{
    for (int times = 0; times < 3000; ++times) {
        ASSERT_TRUE(open()) << times;
        file.write("x");
    }
}

}  // namespace
}  // namespace kzn::test
