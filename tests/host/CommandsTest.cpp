// The arguments of each command on their way to the service, and what the library refuses by itself.
#include "tests/host/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

struct Case {
    Words words;
    std::string request;
};

constexpr const char* kCondition =
    "<and><eq><path>thingName</path><value>L</value></eq><eq><path>workspaceID</path><value>W1</value></eq><eq><path>"
    "thingType</path><value>favouriteWorkspaces</value></eq></and>";
constexpr const char* kJoin = "cmd=execute&task=JoinSpace&cred=C1&xml=<invite><workspaceID>W1</workspaceID><action>";
constexpr const char* kRole = "cmd=execute&task=ChangeRole&cred=C1&xml=<code><workspaceID>W1</workspaceID><toRoleID>";

std::vector<Case> silentSpaceCommands()
{
    return {
        {{"spaces", "edit", "W1", "--name", "Neu & alt", "--description", ""},
         "cmd=set&cred=C1&type=workspace&id=W1&xml=<workspace><ext><KZN><description><text><![CDATA[]]></text>"
         "</description></KZN></ext><workspaceName>Neu &amp; alt</workspaceName></workspace>"},
        {{"spaces", "edit", "W1", "--name", "N"},
         "cmd=set&cred=C1&type=workspace&id=W1&xml=<workspace><ext><KZN><description></description></KZN></ext>"
         "<workspaceName>N</workspaceName></workspace>"},
        {{"spaces", "delete", "W1"},
         "cmd=execute&task=DeleteWorkspace&cred=C1&xml=<workspace><workspaceID>W1</workspaceID></workspace>"},
        {{"spaces", "leave", "W1"}, "cmd=execute&task=LeaveSpace&cred=C1&xml=<workspaceID>W1</workspaceID>"},
        {{"tabs", "rename", "W1", "T1", "Überblick"},
         "cmd=set&cred=C1&type=tab&id=T1&xml=<tab><tabName><![CDATA[Überblick]]></tabName></tab>"},
        {{"tabs", "order", "W1", "T2", "T1"},
         "cmd=set&cred=C1&type=wksp&id=W1&xml=<workspace><tabs><tab><tabID>T2</tabID><tabOrder>1</tabOrder></tab><tab>"
         "<tabID>T1</tabID><tabOrder>2</tabOrder></tab></tabs></workspace>"},
        {{"tabs", "delete", "W1", "T1"}, "cmd=delete&cred=C1&type=tab&id=T1"},
    };
}

std::vector<Case> silentPeopleCommands()
{
    return {
        {{"members", "remove", "W1", "U1"},
         "cmd=remove&cred=C1&type=workspace&id=W1&select=workspace/members/member[userID='U1']"},
        {{"members", "role", "W1", "U1", "admin"},
         std::string(kRole) + "KZN:SpaceAdmin</toRoleID><userID>U1</userID></code>"},
        {{"members", "role", "W1", "U1", "member"},
         std::string(kRole) + "KZN:SpaceMember</toRoleID><userID>U1</userID></code>"},
        {{"invitations", "accept", "W1"}, std::string(kJoin) + "accept</action></invite>"},
        {{"invitations", "reject", "W1"}, std::string(kJoin) + "reject</action></invite>"},
        {{"invitations", "withdraw", "W1", "u@x.example"},
         "cmd=delete&cred=C1&type=spaceInvite&where=<and><eq><path>workspaceID</path><value>W1</value></eq><eq><path>"
         "userDescriptor</path><value><![CDATA[u@x.example]]></value></eq></and>"},
        {{"favourites", "add", "W1", "--list", "L"},
         "cred=C1&cmd=create&type=wtng&xml=<workspaceThing><thingName>L</thingName><workspaceID>W1</workspaceID>"
         "<thingType>favouriteWorkspaces</thingType></workspaceThing>"},
        {{"favourites", "remove", "W1", "--list", "L"},
         std::string("cred=C1&cmd=delete&type=wtng&where=") + kCondition},
    };
}

std::vector<Case> silentAccountCommands()
{
    return {
        {{"user", "edit", "--user", "U1", "--client-version", "1.2", "--build", "7", "--website", "W", "--host-name",
          "H"},
         "cmd=set&cred=C1&type=user&id=U1&xml=<user><ext><KZN><hostName>H</hostName><websiteURL>W</websiteURL><client>"
         "<build>7</build><version>1.2</version></client></KZN></ext></user>"},
        {{"av", "create", "--user", "U1"},
         "cmd=execute&cred=C1&task=CreateRDQAVAccounts&xml=<user><userID>U1</userID></user>"},
        {{"libraries", "add-template", "L1", "T1"},
         "cmd=add&type=grp&cred=C1&id=L1&xml=<group><templates><template><templateID>T1</templateID></template>"
         "</templates></group>"},
        {{"meeting", "record", "W1", "--site", "S", "--meeting", "M", "--host", "H", "--session", "X"},
         "cmd=create&type=thng&cred=C1&xml=<thing><thingName>MeetingRecording</thingName><ext><KZN><meetingRecording>"
         "<workspaceID>W1</workspaceID><siteName>S</siteName><meetingID>M</meetingID><hostQueltID>H</hostQueltID>"
         "<sessionName>X</sessionName><status>0</status></meetingRecording></KZN></ext></thing>"},
    };
}

/// The commands that show nothing when they are done.
std::vector<Case> silentCommands()
{
    std::vector<Case> all = silentSpaceCommands();
    for (const auto& topic : {silentPeopleCommands(), silentAccountCommands()}) {
        all.insert(all.end(), topic.begin(), topic.end());
    }
    return all;
}

TEST_F(SessionHostTest, ArgumentsOfSilentCommandsReachTheService)
{
    for (const auto& [words, request] : silentCommands()) {
        succeed();
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        EXPECT_EQ(ended.out, "") << request;
        ASSERT_FALSE(bodies().empty());
        EXPECT_EQ(lastRequest(), request);
    }
    EXPECT_EQ(bodies().size(), silentCommands().size());
}

TEST_F(SessionHostTest, RefusalOfTheServiceEndsEachOfThem)
{
    for (const auto& [words, request] : silentCommands()) {
        refuse("Not now", "Busy");
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 1) << request;
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "pvwapi: " + words.at(0) + " " + words.at(1) + ": Not now (Busy)\n");
    }
}

TEST_F(SessionHostTest, EventsAreWords)
{
    const std::vector<std::pair<std::string, std::string>> events{
        {"start-meeting", "Meeting Started</en_US></eventDisplayName><eventName>START_MEETING<"},
        {"start-voice", "Voice Started</en_US></eventDisplayName><eventName>START_VOICE<"},
        {"start-telephony", "Telephony Started</en_US></eventDisplayName><eventName>START_TELEPHONY<"},
        {"end-meeting", "Meeting Ended</en_US></eventDisplayName><eventName>END_MEETING<"},
        {"end-voice", "Voice Ended</en_US></eventDisplayName><eventName>END_VOICE<"},
        {"end-telephony", "Telephony Ended</en_US></eventDisplayName><eventName>END_TELEPHONY<"},
    };
    for (const auto& [word, names] : events) {
        succeed();
        const Ended ended = pvwapi(
            {"event", "send", "W1", word, "--workspace-name", "N", "--message", "M", "--tag", "T", "--sender", "anna"});
        EXPECT_EQ(ended.status, 0) << ended.err;
        EXPECT_EQ(lastRequest(),
                  "cmd=execute&task=SendNotificationEvent&cred=C1&xml=<eventData><eventNotification><eventType>"
                  "REALTIME_COMMUNICATION_EVENT</eventType><eventDisplayName><en_US>" +
                      names +
                      "/eventName><eventWorkspaceID>W1</eventWorkspaceID><eventWorkspaceName><![CDATA[N]]>"
                      "</eventWorkspaceName><eventMessage><en_US><![CDATA[M]]></en_US></eventMessage>"
                      "<eventExtendedData><mySpecificTag>T</mySpecificTag></eventExtendedData><eventSender><userName>"
                      "anna</userName></eventSender></eventNotification></eventData>");
    }
}

TEST_F(SessionHostTest, RefusalsWithoutAMessageAreOneLineToo)
{
    const std::vector<std::pair<Words, std::string>> cases{
        {{"spaces", "clone", "", "W1"}, "spaces clone: nothing was sent: name is empty"},
        {{"spaces", "edit", "", "--name", "N"}, "spaces edit: nothing was sent: workspace is empty"},
        {{"spaces", "edit", "W1"}, "spaces edit: nothing was sent: neither --name nor --description is given"},
        {{"spaces", "delete", ""}, "spaces delete: nothing was sent: workspace is empty"},
        {{"spaces", "leave", ""}, "spaces leave: nothing was sent: workspace is empty"},
        {{"tabs", "create", "", "N"}, "tabs create: nothing was sent: workspace is empty"},
        {{"tabs", "create", "W1", ""}, "tabs create: nothing was sent: name is empty"},
        {{"tabs", "rename", "W1", "", "N"}, "tabs rename: nothing was sent: tab is empty"},
        {{"tabs", "order", "W1"}, "tabs order: nothing was sent: no tab is named"},
        {{"tabs", "delete", "W1", ""}, "tabs delete: nothing was sent: tab is empty"},
        {{"tabs", "delete", "W1", "commTab"},
         "tabs delete: nothing was sent: the discussion tab and the files tab stay"},
        {{"user", "edit", "--user", "U1"}, "user edit: nothing was sent: there is nothing to change"},
    };
    for (const auto& [words, line] : cases) {
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 1) << line;
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "pvwapi: " + line + "\n");
    }
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(SessionHostTest, NobodyIsInvitedWithoutBeingNamed)
{
    const Ended ended = pvwapi({"members", "invite", "W1", "--message", "Komm!"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: members invite: nobody is named; see pvwapi members invite --help\n");
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(SessionHostTest, FixedTabIsRenamedInASessionOfItsOwn)
{
    constexpr const char* kClone = "cmd=cloneSession&autocommit=true&cred=C1&workspace=W1";
    for (const char* const tab : {"commTab", "docTab"}) {
        signInAs("C2");
        succeed();
        succeed();
        EXPECT_EQ(pvwapi({"tabs", "rename", "W1", tab, "Talk"}).status, 0);
        const std::vector<std::string> sent = bodies();
        ASSERT_GE(sent.size(), 3U);
        EXPECT_THAT(sent.at(sent.size() - 3), testing::StartsWith(kClone));
        EXPECT_THAT(sent.at(sent.size() - 2), testing::StartsWith("cmd=set&cred=C2&type=tab&id=" + std::string(tab)));
        EXPECT_THAT(sent.back(), testing::AllOf(HasSubstr("cmd=logout"), HasSubstr("cred=C2")));
    }
    EXPECT_EQ(bodies().size(), 6U);

    // What was begun is ended, whatever comes of the name; where there is no session, nothing is renamed.
    signInAs("C2");
    refuse("Not now", "Busy");
    succeed();
    EXPECT_EQ(pvwapi({"tabs", "rename", "W1", "docTab", "Talk"}).err, "pvwapi: tabs rename: Not now (Busy)\n");
    EXPECT_THAT(bodies().back(), HasSubstr("cmd=logout"));
    refuse("No clone", "Busy");
    EXPECT_EQ(pvwapi({"tabs", "rename", "W1", "docTab", "Talk"}).err, "pvwapi: tabs rename: No clone (Busy)\n");
    EXPECT_THAT(bodies().back(), testing::StartsWith(kClone));
}

TEST_F(SessionHostTest, CommandThatDoesNothingSendsNothing)
{
    EXPECT_EQ(pvwapi({"spaces", "test"}).status, 0);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(SessionHostTest, OwnUserIDIsReadWhereNoneIsGiven)
{
    succeed("<return><user><userID>U7</userID></user></return>");
    succeed();
    EXPECT_EQ(pvwapi({"av", "create"}).status, 0);
    EXPECT_EQ(lastRequest(), "cmd=execute&cred=C1&task=CreateRDQAVAccounts&xml=<user><userID>U7</userID></user>");
}

}  // namespace
