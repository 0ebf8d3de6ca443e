// The example that ends calls to a service which does not answer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/host/Program.h"
#include "tests/support/CaptureServer.h"

namespace {

using kzn::test::CaptureServer;
using kzn::test::Script;

Ended cancelExample(const CaptureServer& server)
{
    const Environment environment{
        {"PVWAPI_BASE_URL", server.address("/kznconnect/op.do")},
        {"PVWAPI_USER", "anna"},
        {"PVWAPI_PASSWORD", "anna-demo-1"},
    };
    Ended ended = runProgram(PVWAPI_EXAMPLE_CANCEL, {}, environment);
    std::erase(ended.out, '\r');
    return ended;
}

TEST(CancelExample, EndsBothCallsToAServiceThatIsSilent)
{
    CaptureServer server;
    server.otherwise(Script().stall());
    const auto begin = std::chrono::steady_clock::now();
    const Ended ended = cancelExample(server);
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "with a deadline: the deadline passed\nwith a button: cancelled\n");
    EXPECT_THAT(ended.err, testing::HasSubstr("Network error. Unable to connect to" + server.address("/kznconnect")));
    // Two waits of two seconds, and what a busy machine needs to start a program.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST(CancelExample, LeavesCallsThatAreAnsweredInTime)
{
    CaptureServer server;
    server.otherwise(200, "text/xml", "<kznapi><response><result>SUCCESS</result></response><cred>C1</cred></kznapi>");
    const Ended ended = cancelExample(server);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "with a deadline: signed in\nwith a button: signed in\n");
    EXPECT_EQ(ended.err, "");
}

}  // namespace
