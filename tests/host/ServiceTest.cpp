// The command-line program and the examples against the stand-in service with its demo organisation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <thread>

#include "tests/host/Program.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class ServiceHostTest : public testing::Test {
protected:
    ServiceHostTest()
    {
        const char* const url = std::getenv("TEST_SERVICE_URL");
        environment = {
            {"PVWAPI_BASE_URL", url != nullptr ? url : ""},
            {"PVWAPI_USER", "anna"},
            {"PVWAPI_PASSWORD", "anna-demo-1"},
            {"XDG_DATA_HOME", (std::filesystem::temp_directory_path() / "pvwapi-host-service-test").string()},
        };
        // The built-in address is somebody else's service.
        if (url == nullptr) ADD_FAILURE() << "TEST_SERVICE_URL is not set";
    }

    Ended run(const std::vector<std::string>& words) { return runProgram(PVWAPI_HOST_PROGRAM, words, environment); }

    /// The examples write text as their system does, with its ends of lines.
    Ended example(const std::string& program)
    {
        Ended ended = runProgram(program, {}, environment);
        std::erase(ended.out, '\r');
        return ended;
    }

    /// Runs a command that must succeed and returns what it shows.
    json shown(std::vector<std::string> words)
    {
        words.insert(words.end(), {"--format", "json"});
        const Ended ended = run(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        return json::parse(ended.out, nullptr, false);
    }

    Environment environment;
};

std::vector<std::string> namesOf(const json& spaces)
{
    std::vector<std::string> names;
    for (const json& space : spaces) names.push_back(space.at("workspaceName"));
    return names;
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
    ASSERT_THAT(namesOf(spaces), Contains(name));
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
    EXPECT_THAT(namesOf(shown({"spaces", "list"})), Contains("Messestand Köln"));
    environment["PVWAPI_USER"] = "ben";
    environment["PVWAPI_PASSWORD"] = "ben-demo-1";
    EXPECT_THAT(namesOf(shown({"spaces", "list"})), testing::UnorderedElementsAre("Autumn catalogue", "Photo archive"));
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
    EXPECT_EQ(shown({"session"}).at("refreshInterval"), 1000);
    EXPECT_EQ(run({"logout"}).status, 0);
    const Ended after = run({"session"});
    EXPECT_EQ(after.status, 1);
    EXPECT_THAT(after.err, isOneLineOf("session"));
}

TEST_F(ServiceHostTest, SessionThatNobodyUsesExpires)
{
    environment["PVWAPI_CRED"] = shown({"login"}).at("cred");
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    EXPECT_EQ(run({"session"}).status, 1);
    environment["PVWAPI_CRED"] = shown({"session", "renew"}).at("cred");
    EXPECT_EQ(run({"session"}).status, 0);
}

TEST_F(ServiceHostTest, ProxyShowsTheReplyOfTheService)
{
    const Ended ended = run({"proxy", "cmd=get&type=sessionInfo&id=current"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("<sessionDuration>2000</sessionDuration>"));
    const Ended refused = run({"call", "cmd=noSuchCommand"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, Not(HasSubstr("failed without a reason")));
}

TEST_F(ServiceHostTest, ListWorkspacesExample)
{
    environment["PVWAPI_USER"] = "dmitri";
    environment["PVWAPI_PASSWORD"] = "dmitri-demo-1";
    const Ended ended = example(PVWAPI_EXAMPLE_LIST);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "Messestand Köln (member)\nClient project (administrator)\n2 workspaces\n");
}

TEST_F(ServiceHostTest, TraceLinesExample)
{
    const Ended ended = example(PVWAPI_EXAMPLE_TRACE);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "CWapiClient::login\nCWapiClient::getSessionInfo\nCWapiClient::getSessionInfo\n"
              "CWapiClient::logout\n");
}

}  // namespace
