// The log file comes and goes with the library; this program loads it by itself.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tests/support/TestSystem.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibrary = PVWAPI_LIBRARY;

std::string content(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

class LogLoadTest : public testing::Test {
protected:
    LogLoadTest()
    {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }

    ~LogLoadTest() override { fs::remove_all(folder_); }

    const fs::path folder_ = fs::current_path() / "log load test é";
    const fs::path file_ = folder_ / "Pravik" / "Log" / "pvwapi.txt";
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

TEST_F(LogLoadTest, BeginsAnewEachTime)
{
    const DataFolderSetting setting(folder_);
    for (int i = 0; i < 3; ++i) {
        LoadedLibrary library(kLibrary);
        ASSERT_TRUE(library);
        EXPECT_EQ(content(file_), "");
        library.unload();
        std::ofstream(file_, std::ios::binary) << "left over from before";
    }
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
