// The file that the log is written to.
#include "pvutil/LogFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <type_traits>

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

    static std::string contents(const fs::path& path)
    {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    fs::path folder;
    LogFile file;
};

TEST_F(LogFileTest, LinesStandInTheFileAtOnce)
{
    const auto path = folder / "log.txt";
    ASSERT_TRUE(file.open(text(path)));
    EXPECT_TRUE(file.isOpen());
    file.write("one\n");
    EXPECT_EQ(contents(path), "one\n");
    file.write(std::string("t\0o", 3));
    file.write("");
    EXPECT_EQ(contents(path), std::string("one\nt\0o", 7));
}

TEST_F(LogFileTest, EachOpeningBeginsAFreshFile)
{
    const auto path = folder / "log.txt";
    std::ofstream(path) << "from the last time, and longer";
    ASSERT_TRUE(file.open(text(path)));
    EXPECT_EQ(contents(path), "");
    file.write("new");
    EXPECT_EQ(contents(path), "new");
    ASSERT_TRUE(file.open(text(folder / "other.txt")));
    file.write("other");
    EXPECT_EQ(contents(path), "new");
    EXPECT_EQ(contents(folder / "other.txt"), "other");
}

TEST_F(LogFileTest, ClosedItTakesNothing)
{
    file.write("nowhere");
    const auto path = folder / "log.txt";
    ASSERT_TRUE(file.open(text(path)));
    file.write("kept");
    file.close();
    file.close();
    EXPECT_FALSE(file.isOpen());
    file.write("lost");
    EXPECT_EQ(contents(path), "kept");
    fs::remove(path);
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(LogFileTest, NameMayBeInAnyScript)
{
    const auto path = folder / u8"Größe-журнал-\u65E5\u8A8C-\U0001F600.txt";
    ASSERT_TRUE(file.open(text(path)));
    file.write("x");
    EXPECT_EQ(contents(path), "x");
}

TEST_F(LogFileTest, WhatCannotBeOpenedIsNotOpen)
{
    ASSERT_TRUE(file.open(text(folder / "log.txt")));
    EXPECT_FALSE(file.open(text(folder / "missing" / "log.txt")));
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(file.open(text(folder)));
    EXPECT_FALSE(file.open({}));
    file.write("nowhere");
    EXPECT_EQ(contents(folder / "log.txt"), "");
}

TEST_F(LogFileTest, ManyOpeningsLeaveNothingBehind)
{
    for (int times = 0; times < 3000; ++times) ASSERT_TRUE(file.open(text(folder / "log.txt"))) << times;
}

}  // namespace
}  // namespace kzn::test
