// The records that commands show: what of the reply stands where, in tables and in JSON.
#include <nlohmann/json.hpp>

#include "tests/host/HostFixture.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class RecordsHostTest : public SessionHostTest {
protected:
    /// The service answers with `content`, and the command shows `text`.
    void expectShown(const Words& words, std::string_view content, const std::string& text)
    {
        succeed(content);
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        EXPECT_EQ(ended.out, text) << words.front();
        EXPECT_EQ(ended.err, "");
    }

    json shown(Words words, std::string_view content)
    {
        succeed(content);
        words.insert(words.end(), {"--format", "json"});
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        return json::parse(ended.out, nullptr, false);
    }
};

constexpr const char* kBatch =
    "<return><step><workspace><workspaceID>W1</workspaceID><workspaceName>Plan</workspaceName><type>2</type>"
    "<isTemplate>false</isTemplate><members><member><userID>U1</userID><userName>anna</userName><roles><role><roleID>"
    "KZN:Creator</roleID></role></roles></member></members><tabs><tab><tabID>T1</tabID><tabName>Ideen</tabName>"
    "<tabType>0</tabType><tabOrder>4</tabOrder></tab></tabs></workspace></step><step><spaceInvite><spaceInviteID>I1"
    "</spaceInviteID><workspaceID>W1</workspaceID><userDescriptor>ben</userDescriptor><status>pending</status>"
    "<inviteAs>2</inviteAs></spaceInvite></step><step><set-workspace><access>true</access></set-workspace></step>"
    "</return>";

TEST_F(RecordsHostTest, WorkspaceShowsItsThreeParts)
{
    const json whole = shown({"spaces", "show", "W1"}, kBatch);
    EXPECT_EQ(whole.at("space").at("workspaceName"), "Plan");
    EXPECT_EQ(whole.at("space").at("members").at(0).at("role"), 2);
    EXPECT_EQ(whole.at("space").at("tabs"), json::parse(R"([{"ID":"T1","name":"Ideen","type":"0","position":4}])"));
    EXPECT_EQ(whole.at("space").at("kind"), 2);
    EXPECT_EQ(whole.at("invitations").at(0).at("spaceInviteID"), "I1");
    EXPECT_EQ(whole.at("invitations").at(0).at("inviteAsType"), 2);
    EXPECT_EQ(whole.at("access").at("setWorkspaceAccess"), "true");

    succeed(kBatch);
    const std::string text = pvwapi({"spaces", "show", "W1"}).out;
    EXPECT_THAT(text, testing::StartsWith("space:\nworkspaceID       W1\nworkspaceName     Plan\n"));
    EXPECT_THAT(
        text,
        HasSubstr("\nmembers           1\ntabs              1\nkind              workspace of type 2\n\ninvitations:\n"
                  "userDescriptor  userName  status   inviteAsType   ownerName  expires\n"
                  "ben                       pending  administrator\n\naccess:\nsetWorkspaceAccess     true\n"));
}

TEST_F(RecordsHostTest, InvitationsOfTheUserAndOfAWorkspace)
{
    EXPECT_EQ(shown({"invitations", "list", "--workspace", "W1"}, kBatch).at(0).at("userDescriptor"), "ben");
    const json own = shown({"invitations", "list"},
                           "<return><step><spaceInvite><workspaceID>W2</workspaceID><inviteType>7</inviteType>"
                           "</spaceInvite></step></return>");
    EXPECT_EQ(own.at(0).at("workspaceID"), "W2");
    EXPECT_EQ(own.at(0).at("inviteType"), 7);
    EXPECT_EQ(own.at(0).at("inviteAsType"), 1);
}

TEST_F(RecordsHostTest, NewThingsShowTheirIDs)
{
    constexpr const char* kSpace = "<return><workspace><workspaceID>W9</workspaceID></workspace></return>";
    expectShown(
        {"spaces", "clone", "Neu & alt", "W1", "--type", "3", "--template", "--favourite", "--description", "D"},
        kSpace, "workspaceID  W9\n");
    EXPECT_EQ(lastRequest(),
              "cmd=execute&cred=C1&task=CloneWorkspace&xml=<workspace><useWkspID>W1</useWkspID><workspaceName>Neu & alt"
              "</workspaceName><type>3</type><isTemplate>true</isTemplate><isFavourite>true</isFavourite><ext><KZN>"
              "<description><text><![CDATA[D]]></text></description></KZN></ext></workspace>");
    expectShown({"apps", "instantiate", "N", "A", "--type", "2", "--description", "D"}, kSpace, "workspaceID  W9\n");
    EXPECT_EQ(
        lastRequest(),
        "cmd=execute&task=CreateWorkspaceUsingApp&cred=C1&xml=<workspace><workspaceName>N</workspaceName><appName>A"
        "</appName><isFavourite>false</isFavourite><type>2</type><ext><KZN><description><text><![CDATA[D]]></text>"
        "</description></KZN></ext></workspace>");
    expectShown({"apps", "save", "W1", "A", "L1"}, "<return><widget><widgetID>G1</widgetID></widget></return>",
                "widgetID  G1\n");
    EXPECT_EQ(lastRequest(),
              "cmd=execute&task=SaveWorkspaceAsApp&cred=C1&xml=<workspace><workspaceID>W1</workspaceID><appName>A"
              "</appName><groupID>L1</groupID><description><![CDATA[]]></description></workspace>");
    expectShown({"tabs", "create", "W1", "Ideen", "--position", "-3"}, "<return><tab><tabID>T9</tabID></tab></return>",
                "tabID  T9\n");
    EXPECT_THAT(lastRequest(), HasSubstr("<tabName><![CDATA[Ideen]]></tabName><tabType>0</tabType><tabOrder>-3<"));
}

TEST_F(RecordsHostTest, Tabs)
{
    expectShown({"tabs", "list", "W1"},
                "<return><workspace><tabs><tab><tabID>commTab</tabID><tabName>Gespräche</tabName><tabType>1</tabType>"
                "<tabOrder>1</tabOrder></tab></tabs></workspace></return>",
                "ID       name       type        position\ncommTab  Gespräche  discussion  1\n");
}

TEST_F(RecordsHostTest, Access)
{
    constexpr const char* kReply =
        "<return><set-workspace><access>true</access></set-workspace><delete-workspace><access>false</access><reason>No"
        "</reason></delete-workspace><create-doc><access>yes</access></create-doc></return>";
    expectShown({"access", "space", "W1"}, kReply,
                "setWorkspaceAccess     true\ndeleteWorkspaceAccess  false\njoinSpaceAccess\nsetWorkspaceReason\n"
                "deleteWorkspaceReason  No\njoinSpaceReason\n");
    EXPECT_EQ(lastRequest(),
              "cmd=execute&task=ProbeAccess&cred=C1&xml=<tests><set-workspace><id>W1</id></set-workspace>"
              "<delete-workspace><id>W1</id></delete-workspace><JoinSpace/></tests>");
    EXPECT_EQ(shown({"access", "space", "W1", "--test", "join"}, kReply).size(), 12U);
    EXPECT_THAT(lastRequest(), testing::EndsWith("&xml=<tests><JoinSpace/></tests>"));
    EXPECT_EQ(shown({"access", "own"}, kReply).at("createDocAccess"), "yes");
    EXPECT_THAT(lastRequest(), HasSubstr("<BulkSpaceInvite/>"));
    EXPECT_EQ(shown({"access", "doc", "D1"}, "<return><set-doc><access>a</access></set-doc></return>"),
              json::parse(R"({"setDocAccess":"a","deleteDocAccess":"","setDocReason":"","deleteDocReason":""})"));
    EXPECT_THAT(lastRequest(), HasSubstr("<set-doc><id>D1</id></set-doc>"));
    expectShown({"access", "room", "R1"}, "<return><set-chatRoom><reason>b</reason></set-chatRoom></return>",
                "setChatRoomAccess\ndeleteChatRoomAccess\ncreateChatEntryAccess\nsetChatRoomReason      b\n"
                "deleteChatRoomReason\ncreateChatEntryReason\n");
    EXPECT_THAT(lastRequest(), HasSubstr("<set-chatRoom><id>R1</id></set-chatRoom>"));
}

TEST_F(RecordsHostTest, RolesOfNamedWorkspacesAndOfSharedOnes)
{
    constexpr const char* kReply = "<get><cmd>get</cmd><id>W1</id><access>true</access></get>";
    const std::string direct = std::string("<return>") + kReply + "</return>";
    const std::string step = std::string("<return><step>") + kReply + "</step></return>";
    const std::string table = "id  cmd  access\nW1  get  true\n";
    expectShown({"roles", "W1", "W2"}, direct, table);
    EXPECT_THAT(lastRequest(), HasSubstr("<id>W2</id>"));
    expectShown({"roles", "--with", "U2"}, step, table);
    EXPECT_THAT(lastRequest(), HasSubstr("<value>U2</value>"));

    const Ended both = pvwapi({"roles", "W1", "--with", "U2"});
    EXPECT_EQ(both.status, 2);
    EXPECT_EQ(both.err, "pvwapi: roles: name workspaces, or give --with\n");
}

TEST_F(RecordsHostTest, Members)
{
    expectShown({"members", "list", "W1"},
                "<return><workspace><members><member><userID>U1</userID><userName>anna</userName><email>a@x.example"
                "</email></member></members></workspace></return>",
                "userID  userName  role    email\nU1      anna      member  a@x.example\n");
}

TEST_F(RecordsHostTest, InvitationsShowWhatBecameOfThem)
{
    expectShown({"members", "invite", "W1", "--role", "admin", "--message", "Komm!", "u@x.example", "ben"},
                "<return><invitationResults><invite><workspaceID>W1</workspaceID><user>ben</user><status>pending"
                "</status><userID>U2</userID></invite></invitationResults></return>",
                "user         status   userID  userName  email  emailSent\nu@x.example\nben          pending  U2\n");
    const std::string rest =
        "</user><status></status><inviteAs>2</inviteAs><inviteMethod>EMAIL</inviteMethod><isproviderID></isproviderID>"
        "<userDefinedMessage><![CDATA[Komm!]]></userDefinedMessage></invite>";
    EXPECT_EQ(lastRequest(),
              "cmd=execute&cred=C1&task=BulkSpaceInvite&xml=<invitations><invite><workspaceID>W1</workspaceID><user>"
              "<![CDATA[u@x.example]]>" +
                  rest + "<invite><workspaceID>W1</workspaceID><user><![CDATA[ben]]>" + rest + "</invitations>");
}

TEST_F(RecordsHostTest, FavouritesAreKeptUnderTheOwnUserID)
{
    succeed("<return><user><userID>U7</userID></user></return>");
    expectShown({"favourites", "list"},
                "<return><step><workspace><workspaceID>W1</workspaceID><members><member><userID>U1</userID></member>"
                "</members></workspace></step></return>",
                "workspaceID  members\nW1           1\n");
    EXPECT_THAT(lastRequest(), HasSubstr("<path>thingName</path><value>U7</value>"));
}

TEST_F(RecordsHostTest, PasswordOfTheAccountIsForProgramsAlone)
{
    constexpr const char* kUser =
        "<return><user><userID>U1</userID><ISProviders><ISProvider><ISProviderID>P1</ISProviderID></ISProvider>"
        "</ISProviders><ext><KZN><rdqAV><QueltID>Q1</QueltID><Password>secret</Password></rdqAV></KZN></ext></user>"
        "</return>";
    const json user = shown({"user", "show"}, kUser);
    EXPECT_EQ(user.at("Password"), "secret");
    EXPECT_EQ(user.at("ISProviders").at(0).at("ISProviderID"), "P1");
    succeed(kUser);
    EXPECT_THAT(pvwapi({"user", "show"}).out,
                testing::AllOf(HasSubstr("QueltID                Q1\n"), HasSubstr("ISProviders            1\n"),
                               Not(HasSubstr("secret"))));
}

TEST_F(RecordsHostTest, Profiles)
{
    expectShown({"user", "profile", "U1", "U2"},
                "<return><user><userID>U1</userID><ext><KZN><firstName>Anna</firstName><lastName>Lindqvist</lastName>"
                "</KZN></ext></user></return>",
                "userID  firstName  middleName  lastName\nU1      Anna                   Lindqvist\n");
    EXPECT_THAT(lastRequest(), HasSubstr("<user><userID>U2</userID></user></users>"));
}

TEST_F(RecordsHostTest, Organisation)
{
    constexpr const char* kOrganisation =
        "<return><org><domains><domain><domainName>a.example</domainName></domain></domains><ext><KZN>"
        "<changePasswordURL>http://c</changePasswordURL><domainWhiteList>w.example</domainWhiteList></KZN></ext></org>"
        "</return>";
    expectShown({"org", "show"}, kOrganisation,
                "changePasswordURL  http://c\nforgetPasswordURL\nsiteInfoURL\nconnectSupportURL\n");
    expectShown({"org", "domains"}, kOrganisation, "w.example,a.example,\n");
    const json policy = shown({"org", "policy"}, "<return><VideoInt><access>TRUE</access></VideoInt></return>");
    EXPECT_EQ(policy.size(), 21U);
    EXPECT_EQ(policy.at("VideoInt"), 1);
    EXPECT_EQ(policy.at("VideoExt"), 0);
}

TEST_F(RecordsHostTest, Libraries)
{
    expectShown({"libraries", "list", "--templates"},
                "<return><libraries><library><libraryName>Ours</libraryName><libraryID>L1</libraryID><librayType>2"
                "</librayType><template><templateName>T</templateName></template></library></libraries></return>",
                "ID  name  type  templates\nL1  Ours  2     1\n");
    EXPECT_THAT(lastRequest(), HasSubstr("<widget>false</widget><template>true</template></with><readonly>false<"));
    const json libraries = shown({"libraries", "apps", "--read-only", "--top-level"},
                                 "<return><libraries><library><libraryID>L1</libraryID><topLevelApp><widgetName>Hours"
                                 "</widgetName></topLevelApp></library></libraries></return>");
    EXPECT_EQ(libraries.at(0).at("apps").at(0).at("name"), "Hours");
    EXPECT_EQ(libraries.at(0).at("apps").at(0).at("topLevel"), true);
    EXPECT_THAT(lastRequest(), HasSubstr("<readonly>true</readonly> <with><widget>false</widget><topLevelApp>true<"));
}

TEST_F(RecordsHostTest, Counters)
{
    expectShown({"notify", "W1", "W2"},
                "<return><Results><workspace><workspaceID>W1</workspaceID><notificationCount>3</notificationCount>"
                "</workspace></Results></return>",
                "workspaceID  count\nW1           3\n");
    EXPECT_THAT(lastRequest(), HasSubstr("<workspaceID>W2</workspaceID></workspace></getCount>"));
    expectShown({"activity", "W1", "--unread", "4", "--active", "5"},
                "<return><Results><workspace><workspaceID>W1</workspaceID><activityValue>9</activityValue></workspace>"
                "</Results></return>",
                "workspaceID  count\nW1           9\n");
    EXPECT_THAT(lastRequest(), HasSubstr("<unreadMessageCount>4</unreadMessageCount><activeMembersCount>5<"));
}

}  // namespace
