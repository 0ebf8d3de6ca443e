// The example that only a host without a Windows message loop needs.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/host/Program.h"

namespace {

Environment claraAtTheService()
{
    const char* const url = std::getenv("TEST_SERVICE_URL");
    if (url == nullptr) ADD_FAILURE() << "TEST_SERVICE_URL is not set";
    return {
        {"PVWAPI_BASE_URL", url != nullptr ? url : ""},
        {"PVWAPI_USER", "clara"},
        {"PVWAPI_PASSWORD", "clara-demo-1"},
        {"XDG_DATA_HOME", (std::filesystem::temp_directory_path() / "pvwapi-host-service-test").string()},
    };
}

TEST(KeepAliveExample, OutlivesTheSessionsDuration)
{
    // One refresh at once and three more, one every three seconds, in sessions of six.
    const Ended ended = runProgram(PVWAPI_EXAMPLE_KEEPALIVE, {"4"}, claraAtTheService());
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "refreshing every 3000 ms\n4 refreshes\nthe session is alive\n");
}

// As after a machine's sleep: the program stands still until its session is over.
TEST(KeepAliveExample, SignsInAgainWhereTheSessionIsLost)
{
    const std::string script = "\"$0\" 2 & sleep 1; kill -STOP $!; sleep 7; kill -CONT $!; wait $!";
    const Ended ended = runProgram("/bin/sh", {"-c", script, PVWAPI_EXAMPLE_KEEPALIVE}, claraAtTheService());
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "refreshing every 3000 ms\nnot refreshed: the session has expired\nsigned in again: yes\n"
              "2 refreshes\nthe session is alive\n");
}

}  // namespace
