// The log file comes and goes with the library; this program loads it by itself, beside processes that have it too.
#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <map>
#include <regex>
#include <thread>

#include "tests/support/ChildProcess.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestSystem.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibrary = PVWAPI_LIBRARY;

class LogLoadTest : public testing::Test {
protected:
    explicit LogLoadTest(const fs::path& name = u8"log load test é") : folder_(fs::current_path() / name)
    {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }

    ~LogLoadTest() override { fs::remove_all(folder_); }

    static void loadAndUnload()
    {
        const LoadedLibrary library(kLibrary);
        ASSERT_TRUE(library);
    }

    // Something for a load to keep: the log of a run that wrote.
    void leave(const std::string& lines) const
    {
        fs::create_directories(file_.parent_path());
        std::ofstream(file_, std::ios::binary) << lines;
    }

    const fs::path folder_;
    const fs::path file_ = folder_ / "Pravik" / "Log" / "pvwapi.txt";
    const fs::path earlier_ = folder_ / "Pravik" / "Log" / "pvwapi.1.txt";
};

// Beside other processes, which take their words in the letters of whatever code page.
class LogProcessTest : public LogLoadTest {
protected:
    LogProcessTest() : LogLoadTest("log process test") {}

    // What stays until stop() is called has written its lines when this returns.
    std::unique_ptr<ChildProcess> writer(int lines, bool stays) const
    {
        std::vector<std::string> words{folder_.string(), std::to_string(lines)};
        if (stays) words.push_back(stop_.string());
        auto child = std::make_unique<ChildProcess>(PVWAPI_LOG_WRITER, words);
        EXPECT_NE(child->id(), 0U);
        for (int times = 0; stays && linesOf(child->id()) < lines && times < 4000; ++times)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return child;
    }

    void stop() const { std::ofstream(stop_) << "stop"; }

    // The lines of each process, by its number. A line that is not whole, or not in its turn, is a failure.
    std::map<unsigned long, int> lines() const
    {
        static const std::regex form("\r\n<[-0-9]{10} [:0-9]{8}, pid=([0-9]+), tid=[0-9]+> Info:  ([0-9]+):(x*);\r?\n");
        std::map<unsigned long, int> count;
        const std::string all = bytesOf(file_);
        auto at = all.begin();
        constexpr auto kHere = std::regex_constants::match_continuous;
        for (std::smatch found; std::regex_search(at, all.end(), found, form, kHere); at = found[0].second) {
            const int number = std::stoi(found[2]);
            EXPECT_EQ(number, count[std::stoul(found[1])]++);
            EXPECT_EQ(found[3].length(), number % 50 * 40);
        }
        EXPECT_EQ(std::string(at, all.end()), "");
        return count;
    }

    int linesOf(unsigned long process) const
    {
        const std::string mark = ", pid=" + std::to_string(process) + ",";
        const std::string all = bytesOf(file_);
        int count = 0;
        for (auto at = all.find(mark); at != std::string::npos; at = all.find(mark, at + 1)) ++count;
        return all.ends_with('\n') ? count : 0;
    }

    const fs::path stop_ = folder_ / "stop";
};

}  // namespace

TEST_F(LogLoadTest, StandsFromLoadingOnAndIsClosedAfterwards)
{
    const DataFolderSetting setting(folder_);
    ASSERT_FALSE(fs::exists(file_));

    LoadedLibrary library(kLibrary);
    ASSERT_TRUE(library) << kLibrary;
    ASSERT_TRUE(fs::exists(file_));
    EXPECT_EQ(fs::file_size(file_), 0U);
    EXPECT_TRUE(isOpenHere(file_));
    EXPECT_TRUE(isOwnersAlone(file_));

    library.unload();
    EXPECT_TRUE(fs::exists(file_));
    EXPECT_FALSE(isOpenHere(file_));
}

TEST_F(LogLoadTest, KeepsTheLogOfTheRunBefore)
{
    const DataFolderSetting setting(folder_);
    for (const std::string run : {"one", "two", "three"}) {
        leave("run " + run);
        LoadedLibrary library(kLibrary);
        ASSERT_TRUE(library);
        EXPECT_EQ(bytesOf(file_), "");
        EXPECT_EQ(bytesOf(earlier_), "run " + run);
        EXPECT_TRUE(isOwnersAlone(earlier_));
        library.unload();
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(file_.parent_path()), {}), 2);
}

TEST_F(LogLoadTest, KeepsTheLastRunThroughLoadsThatWriteNothing)
{
    const DataFolderSetting setting(folder_);
    leave("the last real run");
    for (int times = 0; times < 10; ++times) loadAndUnload();
    EXPECT_EQ(bytesOf(file_), "");
    EXPECT_EQ(bytesOf(earlier_), "the last real run");
}

TEST_F(LogProcessTest, LeavesTheLogToAnotherProcessThatWritesIt)
{
    const DataFolderSetting setting(folder_);
    const auto other = writer(3, true);
    for (int times = 0; times < 3; ++times) loadAndUnload();
    EXPECT_THAT(lines(), testing::ElementsAre(testing::Pair(other->id(), 3)));
    EXPECT_FALSE(fs::exists(earlier_));

    stop();
    EXPECT_EQ(other->wait(), 0);
    loadAndUnload();
    EXPECT_EQ(bytesOf(file_), "");
    EXPECT_NE(bytesOf(earlier_), "");
}

TEST_F(LogProcessTest, HoldsTheLogWhileTheLibraryIsLoaded)
{
    const DataFolderSetting setting(folder_);
    LoadedLibrary library(kLibrary);
    const auto first = writer(1, false);
    EXPECT_EQ(first->wait(), 0);
    const auto second = writer(1, false);
    EXPECT_EQ(second->wait(), 0);
    EXPECT_THAT(lines(), testing::UnorderedElementsAre(testing::Pair(first->id(), 1), testing::Pair(second->id(), 1)));
    EXPECT_FALSE(fs::exists(earlier_));

    library.unload();
    const auto third = writer(1, false);
    EXPECT_EQ(third->wait(), 0);
    EXPECT_THAT(lines(), testing::ElementsAre(testing::Pair(third->id(), 1)));
    EXPECT_TRUE(fs::exists(earlier_));
}

TEST_F(LogProcessTest, HasEveryLineOfProcessesThatWriteAtOnce)
{
    constexpr int kLines = 200;
    const DataFolderSetting setting(folder_);
    const LoadedLibrary library(kLibrary);
    const auto one = writer(kLines, false);
    const auto two = writer(kLines, false);
    const auto three = writer(kLines, false);
    for (const auto& each : {one.get(), two.get(), three.get()}) EXPECT_EQ(each->wait(), 0);
    EXPECT_THAT(lines(),
                testing::UnorderedElementsAre(testing::Pair(one->id(), kLines), testing::Pair(two->id(), kLines),
                                              testing::Pair(three->id(), kLines)));
    EXPECT_FALSE(fs::exists(earlier_));
}

TEST_F(LogProcessTest, IsFreeOnceItsWriterHasCrashed)
{
    const DataFolderSetting setting(folder_);
    const auto other = writer(2, true);
    ASSERT_EQ(linesOf(other->id()), 2);
    const std::string written = bytesOf(file_);
    other->kill();
    loadAndUnload();
    EXPECT_EQ(bytesOf(file_), "");
    EXPECT_EQ(bytesOf(earlier_), written);
}

TEST_F(LogLoadTest, FollowsTheFolderOfTheTime)
{
    for (const char* name : {"one", "two"}) {
        const DataFolderSetting setting(folder_ / name);
        const LoadedLibrary library(kLibrary);
        ASSERT_TRUE(library);
        EXPECT_TRUE(fs::exists(folder_ / name / "Pravik" / "Log" / "pvwapi.txt")) << name;
    }
}

TEST_F(LogLoadTest, StandsInTheCurrentFolderWhereThereIsNoOther)
{
    const fs::path before = fs::current_path();
    fs::current_path(folder_);
    {
        const DataFolderSetting setting(std::nullopt);
        const LoadedLibrary library(kLibrary);
        EXPECT_TRUE(library);
        EXPECT_TRUE(fs::exists(folder_ / "pvwapi.txt"));
    }
    fs::current_path(before);
}

TEST_F(LogLoadTest, IsDoneWithoutWhereTheFileCannotBe)
{
    const DataFolderSetting setting(folder_);
    fs::create_directories(file_);  // a folder stands in the file's place
    const LoadedLibrary library(kLibrary);
    EXPECT_TRUE(library);
}

TEST_F(LogLoadTest, IsAppendedToWhereTheEarlierOneCannotBe)
{
    const DataFolderSetting setting(folder_);
    leave("old");
    fs::create_directories(earlier_ / "in it");
    loadAndUnload();
    EXPECT_EQ(bytesOf(file_), "old");
    EXPECT_TRUE(fs::exists(earlier_ / "in it"));
}
