// The log file while a reader follows it.
#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "pvutil/LogFile.h"
#include "tests/support/FileBytes.h"

namespace {

namespace fs = std::filesystem;
using kzn::pvutil::LogFile;

class LogReader : public testing::Test {
protected:
    LogReader()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        std::ofstream(path, std::ios::binary) << "old ";
    }

    ~LogReader() override
    {
        file.close();
        close();
        fs::remove_all(folder);
    }

    void readWith(DWORD share)
    {
        reader = CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
        ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    }

    std::string read() const
    {
        std::string bytes(100, '\0');
        DWORD count = 0;
        EXPECT_TRUE(ReadFile(reader, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr));
        return bytes.substr(0, count);
    }

    void close()
    {
        if (reader != INVALID_HANDLE_VALUE) CloseHandle(reader);
        reader = INVALID_HANDLE_VALUE;
    }

    bool open() { return file.open(path.wstring(), earlier.wstring()); }

    const fs::path folder = fs::temp_directory_path() / "pvwapi-log-reader";
    const fs::path path = folder / "log.txt";
    const fs::path earlier = folder / "log.1.txt";
    HANDLE reader = INVALID_HANDLE_VALUE;
    LogFile file;
};

}  // namespace

TEST_F(LogReader, ThatAllowsARenameKeepsTheEarlierFile)
{
    readWith(FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    ASSERT_TRUE(open());
    file.write("new");
    EXPECT_EQ(bytesOf(path), "new");
    EXPECT_EQ(read(), "old ");
}

TEST_F(LogReader, ThatAllowsNoRenameIsAppendedTo)
{
    readWith(FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(open());
    file.write("new");
    EXPECT_EQ(read(), "old new");
    EXPECT_FALSE(fs::exists(earlier));

    close();
    ASSERT_TRUE(open());
    EXPECT_EQ(bytesOf(path), "");
    EXPECT_EQ(bytesOf(earlier), "old new");
}

TEST_F(LogReader, OfTheEarlierFileIsNotPushedAside)
{
    ASSERT_TRUE(open());
    file.write("new ");
    const HANDLE other =
        CreateFileW(earlier.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(open());
    file.write("newer");
    CloseHandle(other);
    EXPECT_EQ(bytesOf(path), "new newer");
    EXPECT_EQ(bytesOf(earlier), "old ");
}

TEST_F(LogReader, FollowsTheFileWhileItIsWritten)
{
    ASSERT_TRUE(open());
    readWith(FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    for (const std::string line : {"one", "two", "three"}) {
        file.write(line);
        EXPECT_EQ(read(), line);
    }
}
