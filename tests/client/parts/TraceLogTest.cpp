// The log file's lines: their form, which of them are written, and from how many threads.
#include "client/TraceLog.h"

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "pvutil/Process.h"
#include "tests/pvutil/Units.h"
#include "tests/support/Text.h"

namespace {

namespace fs = std::filesystem;
using kzn::pvutil::processId;
using kzn::pvutil::threadId;
using kzn::pvutil::stringex::CharT;
using wapi::LogLevel;
using wapi::TraceLog;

class TraceLogTest : public testing::Test {
protected:
    TraceLogTest()
    {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        open(log, "one.txt");
    }

    ~TraceLogTest() override
    {
        log.close();
        fs::remove_all(folder_);
    }

    void open(TraceLog& opened, const char* name) const { opened.open(path(name), path("earlier.txt")); }

    CStringT path(const char* name) const { return (folder_ / name).string<CharT>(); }

    std::string bytes(const char* name = "one.txt") const
    {
        std::ifstream file(folder_ / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    // Each line without what the clock and the system put into it.
    std::string lines(const char* name = "one.txt") const
    {
        static const std::regex head("<[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}, pid=[0-9]+, tid=[0-9]+>");
        return std::regex_replace(bytes(name), head, "<head>");
    }

    static std::string line(const std::string& text) { return "\r\n<head> " + text + std::string(endOfLine()); }

    static std::string_view endOfLine() { return fs::path::preferred_separator == '\\' ? "\r\n" : "\n"; }

    TraceLog log;

private:
    const fs::path folder_ = fs::current_path() / fs::path(u8"trace log test \u00E9");
};

TEST_F(TraceLogTest, WritesEachLevelWithItsPrefixAndTwoBlanks)
{
    log.write(LogLevel::error, "a"_w);
    log.write(LogLevel::warning, "b"_w);
    log.write(LogLevel::info, "c"_w);
    log.write(LogLevel::debug, "d"_w);
    EXPECT_EQ(lines(), line("Error:  a") + line("Warning:  b") + line("Info:  c") + line("Debug:  d"));
}

TEST_F(TraceLogTest, WritesNoPrefixAtOtherLevelsUpToTheMaximum)
{
    log.write(0, "zero"_w);
    log.write(-5, "less"_w);
    EXPECT_EQ(lines(), line(" zero") + line(" less"));
}

TEST_F(TraceLogTest, DropsLinesAboveTheMaximum)
{
    log.write(5, "five"_w);
    log.writeUtf8(5, "five");
    EXPECT_EQ(lines(), "");
    log.setMaximum(1);
    log.write(2, "two"_w);
    log.write(1, "one"_w);
    log.setMaximum(9);
    log.write(9, "nine"_w);
    EXPECT_EQ(lines(), line("Error:  one") + line(" nine"));
}

TEST_F(TraceLogTest, DropsAllLinesWhileItIsSwitchedOff)
{
    log.switchOn(false);
    log.write(LogLevel::error, "off"_w);
    log.writeUtf8(LogLevel::error, "off");
    log.switchOn(true);
    log.write(LogLevel::error, "on"_w);
    EXPECT_EQ(lines(), line("Error:  on"));
}

TEST_F(TraceLogTest, IsOnUpToLevelFourAtFirst)
{
    TraceLog fresh;
    open(fresh, "fresh.txt");
    for (int level = 1; level <= 5; ++level) fresh.write(level, "x"_w);
    EXPECT_EQ(lines("fresh.txt"), line("Error:  x") + line("Warning:  x") + line("Info:  x") + line("Debug:  x"));
    fresh.close();
}

TEST_F(TraceLogTest, BeginsWithTimeProcessAndThread)
{
    const std::time_t before = std::time(nullptr);
    log.write(LogLevel::info, "x"_w);
    const std::time_t after = std::time(nullptr);

    const std::string written = bytes();
    const std::regex form("\r\n<([-0-9]+ [:0-9]+), pid=([0-9]+), tid=([0-9]+)> Info:  x\r?\n");
    std::smatch found;
    ASSERT_TRUE(std::regex_match(written, found, form)) << written;
    std::set<std::string> possible;
    for (std::time_t time = before; time <= after; ++time) {
        std::string text(19, ' ');
        std::strftime(text.data(), text.size() + 1, "%Y-%m-%d %H:%M:%S", std::localtime(&time));
        possible.insert(text);
    }
    EXPECT_EQ(possible.count(found[1]), 1U) << found[1];
    EXPECT_EQ(found[2], std::to_string(processId()));
    EXPECT_EQ(found[3], std::to_string(threadId()));
}

TEST_F(TraceLogTest, WritesUtf8)
{
    log.write(LogLevel::debug, "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"_w);
    log.writeUtf8(LogLevel::debug, "\xC3\xA9");
    log.write(LogLevel::debug, units({0xD83D}));
    EXPECT_EQ(lines(), line("Debug:  \xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80") + line("Debug:  \xC3\xA9") +
                           line("Debug:  \xEF\xBF\xBD"));
}

TEST_F(TraceLogTest, LeavesTheTextAsItIs)
{
    log.write(LogLevel::debug, "a\nb\r\nc%s%n"_w + units({0, 'd'}));
    log.write(LogLevel::debug, CStringT());
    log.write(LogLevel::debug, CStringT(1'000'000, 'x'));
    EXPECT_EQ(lines().substr(0, 80), (line("Debug:  a\nb\r\nc%s%n" + std::string(1, '\0') + "d") + line("Debug:  ") +
                                      line("Debug:  " + std::string(100, 'x')))
                                         .substr(0, 80));
    EXPECT_EQ(lines().size(),
              line("Debug:  a\nb\r\nc%s%n d").size() + line("Debug:  ").size() + line("Debug:  ").size() + 1'000'000);
}

TEST_F(TraceLogTest, IsReadableBeforeItIsClosed)
{
    log.write(LogLevel::info, "now"_w);
    EXPECT_EQ(lines(), line("Info:  now"));
}

TEST_F(TraceLogTest, KeepsTheFileThatItFindsAsTheEarlierOne)
{
    std::ofstream(fs::path(path("two.txt"))) << std::string(10'000, 'o');
    open(log, "two.txt");
    EXPECT_EQ(bytes("two.txt"), "");
    EXPECT_EQ(bytes("earlier.txt"), std::string(10'000, 'o'));
    log.write(LogLevel::info, "x"_w);
    EXPECT_EQ(lines("two.txt"), line("Info:  x"));
}

TEST_F(TraceLogTest, GoesOnInTheFileOpenedLast)
{
    log.write(LogLevel::info, "first"_w);
    open(log, "two.txt");
    log.write(LogLevel::info, "second"_w);
    EXPECT_EQ(lines(), line("Info:  first"));
    EXPECT_EQ(lines("two.txt"), line("Info:  second"));
    open(log, "one.txt");
    log.write(LogLevel::info, "third"_w);
    EXPECT_EQ(lines(), line("Info:  third"));
    EXPECT_EQ(lines("earlier.txt"), line("Info:  first"));
    EXPECT_EQ(lines("two.txt"), line("Info:  second"));
}

TEST_F(TraceLogTest, JoinsALogThatAnotherWrites)
{
    TraceLog other;
    open(other, "one.txt");
    other.write(LogLevel::info, "other"_w);
    log.write(LogLevel::info, "own"_w);
    other.close();
    EXPECT_EQ(lines(), line("Info:  other") + line("Info:  own"));
}

TEST_F(TraceLogTest, WritesNothingOnceItIsClosed)
{
    log.write(LogLevel::info, "before"_w);
    log.close();
    log.write(LogLevel::info, "after"_w);
    log.close();
    EXPECT_EQ(lines(), line("Info:  before"));
}

TEST_F(TraceLogTest, WritesNothingWhereNoFileCanBeOpened)
{
    open(log, "no such folder/one.txt");
    log.write(LogLevel::info, "lost"_w);
    EXPECT_EQ(bytes(), "");
    open(log, "two.txt");
    log.write(LogLevel::info, "found"_w);
    EXPECT_EQ(lines("two.txt"), line("Info:  found"));
}

// What a thread writes in the course of the test below, line by line.
std::string textOf(int thread, int number)
{
    const auto length = static_cast<std::size_t>(number % 50 * 40);
    return std::to_string(thread) + ":" + std::to_string(number) + ":" +
           std::string(length, static_cast<char>('a' + thread)) + ";";
}

TEST_F(TraceLogTest, WritesWholeLinesFromEveryThread)
{
    constexpr int kThreads = 4;
    constexpr int kLines = 300;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([this, thread] {
            for (int i = 0; i < kLines; ++i) log.write(LogLevel::debug, wide(textOf(thread, i)));
        });
    for (std::thread& thread : threads) thread.join();

    const std::string all = bytes();
    auto at = all.begin();
    std::vector<int> next(kThreads, 0);
    std::set<std::string> threadIDs;
    const std::regex form("\r\n<[^>]*, pid=[0-9]+, tid=([0-9]+)> Debug:  ([0-3]):([0-9]+:[a-d]*;)\r?\n");
    constexpr auto kHere = std::regex_constants::match_continuous;
    for (std::smatch found; std::regex_search(at, all.end(), found, form, kHere); at = found[0].second) {
        const int thread = std::stoi(found[2]);
        ASSERT_EQ(found[2].str() + ":" + found[3].str(), textOf(thread, next[static_cast<std::size_t>(thread)]++));
        threadIDs.insert(found[1]);
    }
    EXPECT_EQ(std::string(at, all.end()), "");
    EXPECT_EQ(next, std::vector<int>(kThreads, kLines));
    EXPECT_EQ(threadIDs.size(), 4U);
}

}  // namespace
