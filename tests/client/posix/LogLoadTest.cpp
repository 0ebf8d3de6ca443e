// The log of a program that was started without its standard descriptors.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/ChildProcess.h"
#include "tests/support/FileBytes.h"

namespace fs = std::filesystem;

TEST(LogWithClosedDescriptors, HasNothingOfWhatTheProgramPrints)
{
    const fs::path folder = fs::current_path() / "closed descriptors test";
    for (const std::string closed : {">&-", "<&- >&-", "<&- >&- 2>&-", "2>&-"}) {
        fs::remove_all(folder);
        // The library's own load takes the log first, and the program prints before its first line.
        const std::string command = "XDG_DATA_HOME='" + folder.string() + "' exec '" PVWAPI_LOG_WRITER "' '" +
                                    folder.string() + "' 1 " + closed;
        EXPECT_EQ(ChildProcess("/bin/sh", {"-c", command}).wait(), 0) << closed;
        const std::string log = bytesOf(folder / "Pravik/Log/pvwapi.txt");
        EXPECT_NE(log.find("> Info:  0:;\n"), std::string::npos) << closed << log;
        EXPECT_EQ(log.find("prints"), std::string::npos) << closed << log;
    }
    fs::remove_all(folder);
}
