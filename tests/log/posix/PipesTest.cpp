// Standard input, the library's own log, and an output that takes nothing.
#include <filesystem>

#include "tests/log/LogText.h"
#include "tests/log/ProgramFixture.h"

namespace {

using namespace logtest;
using testing::HasSubstr;

TEST_F(LogProgramTest, StandardInputIsRead)
{
    write("log.txt", call("cmd=logout&cred=c", kSuccess));
    const std::string program = PVWAPI_LOG_PROGRAM;
    const Ended piped = runProgram("/bin/sh", {"-c", "cat '" + path("log.txt") + "' | " + program + " -"}, {});
    EXPECT_EQ(piped.status, 0);
    EXPECT_THAT(piped.out, HasSubstr("logout"));
    const Ended followed = runProgram("/bin/sh", {"-c", program + " -f - < '" + path("log.txt") + "'"}, {});
    EXPECT_EQ(followed.status, 0);
    EXPECT_THAT(followed.out, HasSubstr("logout"));
}

TEST_F(LogProgramTest, LibrarysOwnLogIsTheDefault)
{
    std::filesystem::create_directories(path("Pravik/Log"));
    write("Pravik/Log/pvwapi.txt", call("cmd=logout&cred=c", kSuccess));
    const std::string program = PVWAPI_LOG_PROGRAM;
    const Ended ended = runProgram("/bin/sh", {"-c", "XDG_DATA_HOME='" + path("") + "' " + program}, {});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("logout"));
    const Ended missing = runProgram("/bin/sh", {"-c", "XDG_DATA_HOME=/nowhere/at/all " + program}, {});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.err, HasSubstr("/nowhere/at/all/Pravik/Log/pvwapi.txt: "));
}

TEST_F(LogProgramTest, OutputThatCannotBeWrittenIsAProblem)
{
    write("log.txt", call("cmd=logout&cred=c", kSuccess));
    const std::string program = PVWAPI_LOG_PROGRAM;
    const Ended ended = runProgram("/bin/sh", {"-c", program + " '" + path("log.txt") + "' > /dev/full"}, {});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.err, "pvwapi-log: the output cannot be written\n");
}

}  // namespace
