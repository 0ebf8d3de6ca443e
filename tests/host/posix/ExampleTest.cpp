// The example that only a host without a Windows message loop needs.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/host/Program.h"

namespace {

TEST(KeepAliveExample, OutlivesTheSessionsDuration)
{
    const char* const url = std::getenv("TEST_SERVICE_URL");
    ASSERT_NE(url, nullptr);
    const Environment environment{
        {"PVWAPI_BASE_URL", url},
        {"PVWAPI_USER", "clara"},
        {"PVWAPI_PASSWORD", "clara-demo-1"},
        {"XDG_DATA_HOME", (std::filesystem::temp_directory_path() / "pvwapi-host-service-test").string()},
    };
    // Three refreshes, one every three seconds, in sessions of six.
    const Ended ended = runProgram(PVWAPI_EXAMPLE_KEEPALIVE, {"3"}, environment);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "refreshing every 3000 ms\n3 refreshes\nthe session is alive\n");
}

}  // namespace
