// Credentials that come through a pipe.
#include <sys/stat.h>

#include <fstream>
#include <thread>

#include "tests/host/HostFixture.h"

namespace {

constexpr const char* kShell = "/bin/bash";

TEST_F(HostTest, StandardInputGivesTheCredentials)
{
    const Ended ended = runProgram(
        kShell, {"-c", "printf 'cred=C9\\n' | \"$0\" logout --credentials -", PVWAPI_HOST_PROGRAM}, environment);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(bodies(), testing::ElementsAre("cmd=logout&cred=C9"));
}

TEST_F(HostTest, SubstitutedProcessGivesTheCredentials)
{
    const Ended ended =
        runProgram(kShell,
                   {"-c", "\"$0\" logout --credentials <(sleep 0.2; printf 'cred='; sleep 0.2; printf 'C9\\n')",
                    PVWAPI_HOST_PROGRAM},
                   environment);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(bodies(), testing::ElementsAre("cmd=logout&cred=C9"));
}

TEST_F(HostTest, NamedPipeIsWaitedFor)
{
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(path("pipe")) << "cred=C9\n"; });
    const Ended ended = pvwapi({"logout", "--credentials", path("pipe")});
    writer.join();
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(bodies(), testing::ElementsAre("cmd=logout&cred=C9"));
}

TEST_F(HostTest, FileBehindStandardInputNeedsNoMoreThanToBeThere)
{
    writeFile(path("c"), "cred=\xFF\n", false);
    const Ended ended = runProgram(
        kShell, {"-c", "\"$0\" logout --credentials - < \"$1\"", PVWAPI_HOST_PROGRAM, path("c")}, environment);
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.err, "pvwapi: logout: standard input:1: not UTF-8\n");
}

}  // namespace
