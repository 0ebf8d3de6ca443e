// Workspaces on the command line, and what a service may answer.
#include "tests/host/HostFixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kTwoSpaces =
    "<return><step>"
    "<workspace><workspaceID>w1</workspaceID><workspaceName>Käse 日本</workspaceName><userID>u1</userID>"
    "<userName>anna</userName><type>0</type><isTemplate>false</isTemplate><namespaceID>n1</namespaceID>"
    "<ext><KZN><description><text>a&#9;b&#x202E;&#x61C;</text></description></KZN></ext></workspace>"
    "<workspace><workspaceID>w22</workspaceID><workspaceName>Plan</workspaceName><type>3</type></workspace>"
    "</step><step><user><workspaces><workspace><workspaceID>w1</workspaceID><roles><role>"
    "<roleID>KZN:SpaceAdmin</roleID></role></roles></workspace></workspaces></user></step></return>";

using SpacesHostTest = SessionHostTest;

TEST_F(SpacesHostTest, TableIsAlignedByWhatATerminalShows)
{
    succeed(kTwoSpaces);
    const Ended ended = pvwapi({"spaces", "list"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "workspaceID  workspaceName  type  role           userName  description\n"
              "w1           Käse 日本      0     administrator  anna      a\\u0009b\\u202e\\u061c\n"
              "w22          Plan           3     unknown\n");
}

TEST_F(SpacesHostTest, JsonHasEveryMemberOfTheRecord)
{
    succeed(kTwoSpaces);
    const Ended ended = pvwapi({"--format", "json", "spaces", "list"});
    EXPECT_EQ(ended.out, R"([
  {
    "workspaceID": "w1",
    "workspaceName": "Käse 日本",
    "status": "accepted",
    "userID": "u1",
    "userName": "anna",
    "type": "0",
    "isTemplate": "false",
    "namespaceID": "n1",
    "description": "a\tb\u202e\u061c",
    "spaceIconURL": "",
    "role": 2
  },
  {
    "workspaceID": "w22",
    "workspaceName": "Plan",
    "status": "accepted",
    "userID": "",
    "userName": "",
    "type": "3",
    "isTemplate": "",
    "namespaceID": "",
    "description": "",
    "spaceIconURL": "",
    "role": 0
  }
]
)");
}

TEST_F(SpacesHostTest, NothingToListIsNoFailure)
{
    succeed();
    EXPECT_EQ(pvwapi({"spaces", "list"}).out, "workspaceID  workspaceName  type  role  userName  description\n");
    succeed();
    EXPECT_EQ(pvwapi({"spaces", "list", "--format", "json"}).out, "[]\n");
}

TEST_F(SpacesHostTest, ArgumentsReachTheServiceInUtf8)
{
    succeed("<return><workspace><workspaceID>w9</workspaceID></workspace></return>");
    const Ended ended = pvwapi(
        {"spaces", "create", "Grüße \U0001F600", "--type", "3", "--description", "\"a\" \\ [b,c]", "--favourite"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "workspaceID  w9\n");
    EXPECT_THAT(
        bodies(),
        ElementsAre("cmd=execute&cred=C1&task=AddTabs&xml=<workspace><workspaceName>Gr%C3%BC%C3%9Fe%20%F0%9F%98%80"
                    "</workspaceName><isTemplate>false</isTemplate><type>3</type><tabs><tab><tabName>default"
                    "</tabName><tabType>0</tabType><tabOrder>1</tabOrder></tab></tabs>"
                    "<isFavourite>true</isFavourite><ext><KZN><description><text><![CDATA[%22a%22%20%5C%20%5Bb"
                    "%2Cc%5D]]></text></description></KZN></ext></workspace>"));
}

TEST_F(SpacesHostTest, NamesThatLookLikeSomethingElseAreNames)
{
    for (const char* const name : {"list", "session", "[a]", "/x", "a=b"}) {
        succeed("<return><workspace><workspaceID>w9</workspaceID></workspace></return>");
        EXPECT_EQ(pvwapi({"spaces", "create", name}).out, "workspaceID  w9\n") << name;
    }
    succeed("<return><workspace><workspaceID>w9</workspaceID></workspace></return>");
    EXPECT_EQ(pvwapi({"spaces", "create", "--", "--name"}).out, "workspaceID  w9\n");
    EXPECT_THAT(bodies().back(), HasSubstr("<workspaceName>--name</workspaceName>"));
}

TEST_F(SpacesHostTest, EmptyNameIsRefusedByTheLibrary)
{
    const Ended ended = pvwapi({"spaces", "create", ""});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "pvwapi: spaces create: workspace name can't be empty.\n");
    EXPECT_TRUE(bodies().empty());
}

TEST_F(SpacesHostTest, ReasonOfTheServiceIsMadeHarmless)
{
    refuse("No&#10;way &#x9B;&#x202E;é", "E&#9;1");
    const Ended ended = pvwapi({"spaces", "list"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: spaces list: No\\u000away \\u009b\\u202eé (E\\u00091)\n");
}

TEST_F(SpacesHostTest, WrongBaseUrlIsAFailedRequest)
{
    for (const std::string url : {"nonsense", "://", "http://", "file:///etc/hosts"}) {
        const Ended ended = pvwapi({"--base-url", url, "spaces", "list"});
        EXPECT_EQ(ended.status, 3) << url;
        EXPECT_EQ(ended.err,
                  "pvwapi: spaces list: no connection: Reading the address: neither an http nor an https address: " +
                      url + "\n");
    }
}

TEST_F(SpacesHostTest, ReplyBeyondALimitIsTold)
{
    std::string deep;
    for (int level = 0; level < 100'000; ++level) deep += "<a>";
    server.reply(200, "text/xml", deep);
    const Ended ended = pvwapi({"spaces", "list"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: spaces list: The reply is nested too deeply.\n");
}

TEST_F(SpacesHostTest, HostileRepliesEndInOneLine)
{
    const std::vector<std::string> replies{
        "",
        "not XML",
        "<kznapi><response><result>SUCC",
        "<!DOCTYPE a [<!ENTITY e \"x\">]><kznapi><response><result>SUCCESS</result></response></kznapi>",
        "\xff\xfe\xfd",
        std::string(100, '\0'),
    };
    for (const std::string& reply : replies) {
        server.reply(200, "text/xml", reply);
        const Ended ended = pvwapi({"spaces", "list"});
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.out, "");
        const bool hasResult = reply.find("</result>") != std::string::npos;
        EXPECT_EQ(ended.err, hasResult ? "pvwapi: spaces list: failed without a reason\n"
                                       : "pvwapi: spaces list: the reply is no answer of the service (HTTP 200)\n");
    }
}

TEST_F(SpacesHostTest, ReplyCutOffIsNoConnection)
{
    server.script(kzn::test::Script().send("HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n<kznapi>").close());
    const Ended ended = pvwapi({"spaces", "list"});
    EXPECT_EQ(ended.status, 3);
    EXPECT_THAT(ended.err, testing::StartsWith("pvwapi: spaces list: no connection: Receiving from 127.0.0.1:"));
}

}  // namespace
