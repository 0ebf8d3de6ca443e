// The command-line program and the examples against the stand-in service with its demo organisation.
#include <chrono>
#include <thread>

#include "tests/host/ServiceFixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// The examples write text as their system does, with its ends of lines.
Ended example(const std::string& program, const Environment& environment)
{
    Ended ended = runProgram(program, {}, environment);
    std::erase(ended.out, '\r');
    return ended;
}

/// A reason behind the command's name, and nothing behind the first end of a line.
MATCHER_P(isOneLineOf, command, "")
{
    const std::string prefix = std::string("pvwapi: ") + command + ": ";
    return arg.starts_with(prefix) && arg.find('\n') == arg.size() - 1 && arg.size() > prefix.size() + 1;
}

TEST_F(ServiceHostTest, WorkspaceThatWasMadeIsListed)
{
    const std::string name = "Grüße aus 東京 \U0001F600 <&>";
    const json made = shown({"spaces", "create", name, "--type", "3", "--description", "a ]]> b", "--favourite"});
    const std::string id = made.at("workspaceID");
    EXPECT_NE(id, "");

    const json spaces = shown({"spaces", "list"});
    ASSERT_THAT(valuesOf(spaces, "workspaceName"), Contains(name));
    for (const json& space : spaces) {
        if (space.at("workspaceID") != id) continue;
        EXPECT_EQ(space.at("workspaceName"), name);
        EXPECT_EQ(space.at("type"), "3");
        EXPECT_EQ(space.at("role"), 2);
        EXPECT_EQ(space.at("userName"), "anna");
    }
}

TEST_F(ServiceHostTest, EachUserSeesTheirOwnWorkspaces)
{
    EXPECT_THAT(valuesOf(shown({"spaces", "list"}), "workspaceName"), Contains("Messestand Köln"));
    actAs("ben");
    EXPECT_THAT(valuesOf(shown({"spaces", "list"}), "workspaceName"),
                testing::UnorderedElementsAre("Autumn catalogue", "Photo archive"));
}

TEST_F(ServiceHostTest, WrongPasswordIsRefusedWithTheReasonOfTheService)
{
    environment["PVWAPI_PASSWORD"] = "wrong";
    const Ended ended = run({"spaces", "list"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, AllOf(isOneLineOf("spaces list"), HasSubstr(" ("), EndsWith(")\n")));
}

TEST_F(ServiceHostTest, TokenServesInThePlaceOfThePassword)
{
    environment["PVWAPI_PASSWORD"] = "wrong";
    environment["PVWAPI_TOKEN"] = "anna-token-1";
    EXPECT_EQ(run({"session"}).status, 0);
}

TEST_F(ServiceHostTest, SessionLivesBetweenCommandsUntilItIsEnded)
{
    environment["PVWAPI_CRED"] = shown({"login"}).at("cred");
    EXPECT_EQ(shown({"session"}).at("refreshInterval"), 3000);
    EXPECT_EQ(run({"logout"}).status, 0);
    const Ended after = run({"session"});
    EXPECT_EQ(after.status, 1);
    EXPECT_THAT(after.err, isOneLineOf("session"));
}

TEST_F(ServiceHostTest, SessionThatNobodyUsesExpires)
{
    environment["PVWAPI_CRED"] = shown({"login"}).at("cred");
    std::this_thread::sleep_for(std::chrono::milliseconds(6500));
    EXPECT_EQ(run({"session"}).status, 1);
    environment["PVWAPI_CRED"] = shown({"session", "renew"}).at("cred");
    EXPECT_EQ(run({"session"}).status, 0);
}

TEST_F(ServiceHostTest, ProxyShowsTheReplyOfTheService)
{
    const Ended ended = run({"proxy", "cmd=get&type=sessionInfo&id=current"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("<sessionDuration>6000</sessionDuration>"));
    const Ended refused = run({"call", "cmd=noSuchCommand"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, Not(HasSubstr("failed without a reason")));
}

TEST_F(ServiceHostTest, ListWorkspacesExample)
{
    actAs("dmitri");
    const Ended ended = example(PVWAPI_EXAMPLE_LIST, environment);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "Messestand Köln (member)\nClient project (administrator)\n2 workspaces\n");
}

TEST_F(ServiceHostTest, TraceLinesExample)
{
    const Ended ended = example(PVWAPI_EXAMPLE_TRACE, environment);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "CWapiClient::login\nCWapiClient::getSessionInfo\nCWapiClient::getSessionInfo\n"
              "CWapiClient::logout\n");
}

}  // namespace
