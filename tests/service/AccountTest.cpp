#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Account : public DemoService {
protected:
    std::string own(const std::string& select)
    {
        return anna_.call("cmd=get&type=user&id=current&select=" + encoded(select));
    }

    User anna_{port_, "anna"};
    User ben_{port_, "ben"};
};

constexpr const char* kUser = "/kznapi/return/user/";

TEST_F(Account, ShowsTheUsersConfiguration)
{
    const std::string reply =
        own("userID:email:userName:ext/KZN/rdqAV:ISProviders:ext/KZN/lastName:ext/KZN/firstName:"
            "ext/KZN/hostName:ext/KZN/websiteURL:namespaces/namespace");
    const std::string at = kUser;
    EXPECT_EQ(textAt(reply, at + "userID"), "user-anna");
    EXPECT_EQ(textAt(reply, at + "email"), "anna@nordwind.example");
    EXPECT_EQ(textAt(reply, at + "ext/KZN/firstName"), "Anna");
    EXPECT_EQ(textAt(reply, at + "ext/KZN/lastName"), "Lindqvist");
    EXPECT_EQ(textAt(reply, at + "ext/KZN/hostName"), "anna-desk");
    EXPECT_EQ(textAt(reply, at + "namespaces/namespace/namespaceID"), "ns-nordwind");
    EXPECT_EQ(textAt(reply, at + "ISProviders/ISProvider/ISProviderID"), "isp-nordwind");
    EXPECT_EQ(textAt(reply, at + "ISProviders/ISProvider/userName"), "anna");
    EXPECT_THAT(textsAt(reply, at + "ext/KZN/rdqAV"), IsEmpty());
    EXPECT_THAT(textsAt(reply, at + "workspaces"), IsEmpty());
}

TEST_F(Account, ConferencingIsMadeOnceAndSeenByItsOwnerOnly)
{
    const std::string xml = "<user><userID>user-anna</userID></user>";
    EXPECT_FAILURE(ben_.execute("CreateRDQAVAccounts", xml), "KZN:AccessDenied");
    EXPECT_FAILURE(anna_.execute("CreateRDQAVAccounts", "<user><userID></userID></user>"), "KZN:BadRequest");
    EXPECT_SUCCESS(anna_.execute("CreateRDQAVAccounts", xml));
    EXPECT_FAILURE(anna_.execute("CreateRDQAVAccounts", xml), "KZN:Conflict");
    const std::string av = std::string(kUser) + "ext/KZN/rdqAV/";
    for (const char* const field :
         {"QueltID", "Password", "QueltAVToken", "QueltDesktopShareURL", "QueltAudioOrVisualURL"}) {
        EXPECT_NE(textAt(own("ext/KZN/rdqAV"), av + field), "") << field;
    }
    EXPECT_THAT(textsAt(ben_.call("cmd=get&type=user&id=user-anna&select=*"), "//rdqAV"), IsEmpty());
}

TEST_F(Account, UsersEditThemselves)
{
    const std::string xml =
        encoded("<user><ext><KZN><hostName>new</hostName><client><version>2.0</version></client></KZN></ext></user>");
    EXPECT_SUCCESS(anna_.call("cmd=set&type=user&id=user-anna&xml=" + xml));
    EXPECT_EQ(textAt(own("*"), std::string(kUser) + "ext/KZN/hostName"), "new");
    EXPECT_EQ(textAt(own("*"), std::string(kUser) + "ext/KZN/client/version"), "2.0");
    EXPECT_EQ(textAt(own("*"), std::string(kUser) + "ext/KZN/websiteURL"), "http://people.nordwind.example/anna");
    EXPECT_FAILURE(ben_.call("cmd=set&type=user&id=user-anna&xml=" + xml), "KZN:AccessDenied");
}

TEST_F(Account, ProfilesOfKnownUsersComeBack)
{
    const std::string reply = anna_.execute("GetUserProfile",
                                            "<users><user><userID>user-clara</userID></user><user><userID>none"
                                            "</userID></user><user><userID>user-ben</userID></user></users>");
    EXPECT_THAT(textsAt(reply, std::string(kUser) + "ext/KZN/firstName"), ElementsAre("Clara", "Ben"));
    EXPECT_EQ(textAt(reply, std::string(kUser) + "ext/KZN/middleName"), "Sofie");
    EXPECT_SUCCESS(anna_.execute("GetUserProfile", "<users></users>"));
}

TEST_F(Account, TheOrganisationShowsItsAddressesAndDomains)
{
    const std::string reply = anna_.call("cmd=get&type=org&id=current&select=org");
    const std::string at = "/kznapi/return/org/";
    EXPECT_EQ(textAt(reply, at + "ext/KZN/domainWhiteList"), "nordwind.example");
    EXPECT_THAT(textsAt(reply, at + "domains/domain/domainName"),
                ElementsAre("nordwind.example", "studio.nordwind.example"));
    const std::string extension = anna_.call("cmd=get&type=org&id=current&select=" + encoded("ext/KZN"));
    EXPECT_EQ(textAt(extension, at + "ext/KZN/forgetPasswordURL"),
              "http://intranet.nordwind.example/password/forgotten");
    EXPECT_THAT(textsAt(extension, at + "domains"), IsEmpty());
    EXPECT_FAILURE(anna_.call("cmd=get&type=org&id=other"), "KZN:NoSuchObject");
}

class Events : public Account {
protected:
    std::string event(User& user, const std::string& name)
    {
        return user.execute(
            "SendNotificationEvent",
            "<eventData><eventNotification><eventType>REALTIME_COMMUNICATION_EVENT</eventType><eventDisplayName>"
            "<en_US>Meeting Started</en_US></eventDisplayName><eventName>" +
                name + "</eventName><eventWorkspaceID>" + spaceID_ +
                "</eventWorkspaceID><eventWorkspaceName><![CDATA[Your <bank> & "
                "more]]></eventWorkspaceName><eventMessage>"
                "<en_US><![CDATA[come & "
                "see]]></en_US></eventMessage><eventExtendedData><mySpecificTag>t</mySpecificTag>"
                "</eventExtendedData><eventSender><userName>anna</userName></eventSender></eventNotification></"
                "eventData>");
    }

    std::string count(User& user, const std::string& xml) { return user.execute("GetWorkspaceNotificationCount", xml); }

    std::string spaceID_ = ben_.spaceNamed("Autumn catalogue");
};

constexpr const char* kResults = "/kznapi/return/Results/workspace/";

TEST_F(Events, AreSeenAndCountedByTheOtherMembers)
{
    const std::string ask = "<getCount><workspace><workspaceID>" + spaceID_ + "</workspaceID></workspace></getCount>";
    EXPECT_EQ(textAt(count(ben_, ask), std::string(kResults) + "notificationCount"), "0");
    EXPECT_SUCCESS(event(anna_, "START_MEETING"));
    EXPECT_SUCCESS(event(anna_, "END_MEETING"));
    EXPECT_EQ(textAt(count(ben_, ask), std::string(kResults) + "workspaceID"), spaceID_);
    EXPECT_EQ(textAt(count(ben_, ask), std::string(kResults) + "notificationCount"), "2");
    EXPECT_EQ(textAt(count(anna_, ask), std::string(kResults) + "notificationCount"), "0");
    const std::string seen = ben_.script("<step><cmd>list</cmd><type>event</type></step>");
    EXPECT_THAT(textsAt(seen, "/kznapi/return/step/event/eventName"), ElementsAre("START_MEETING", "END_MEETING"));
    EXPECT_EQ(textAt(seen, "/kznapi/return/step/event/eventMessage"), "come & see");
    // What the sender calls the workspace is not believed.
    EXPECT_THAT(textsAt(seen, "/kznapi/return/step/event/workspaceName"),
                ElementsAre("Autumn catalogue", "Autumn catalogue"));
    EXPECT_THAT(seen, Not(HasSubstr("bank")));

    User dmitri(port_, "dmitri");
    EXPECT_FAILURE(event(dmitri, "START_MEETING"), "KZN:NoSuchObject");
    EXPECT_THAT(textsAt(count(dmitri, ask), "//Results/workspace"), IsEmpty());
    EXPECT_THAT(textsAt(dmitri.script("<step><cmd>list</cmd><type>event</type></step>"), "//event"), IsEmpty());
    EXPECT_FAILURE(event(anna_, "START_PARTY"), "KZN:BadRequest");
    EXPECT_SUCCESS(count(anna_, "<getCount></getCount>"));
}

TEST_F(Events, ActivityFollowsWhatTheMembersReport)
{
    const auto report = [&](User& user, int unread, int active) {
        return textAt(
            count(user, "<getActivity><workspace><workspaceID>" + spaceID_ + "</workspaceID><unreadMessageCount>" +
                            std::to_string(unread) + "</unreadMessageCount><activeMembersCount>" +
                            std::to_string(active) + "</activeMembersCount></workspace></getActivity>"),
            std::string(kResults) + "activityValue");
    };
    EXPECT_EQ(report(anna_, 3, 2), "5");
    EXPECT_EQ(report(ben_, 1, 1), "7");
    EXPECT_EQ(report(anna_, 0, 0), "2");
    EXPECT_EQ(report(anna_, -1, 0), "");
}

TEST_F(Events, MeetingRecordsAreThingsOfTheWorkspace)
{
    const auto record = [&](const std::string& spaceID) {
        return anna_.call(
            "cmd=create&type=thng&xml=" +
            encoded("<thing><thingName>MeetingRecording</thingName><ext><KZN><meetingRecording><workspaceID>" +
                    spaceID +
                    "</workspaceID><siteName>s "
                    "&lt;1&gt;</siteName><status>0</status></meetingRecording></KZN></ext></thing>"));
    };
    EXPECT_SUCCESS(record(spaceID_));
    EXPECT_FAILURE(record("none"), "KZN:NoSuchObject");
    EXPECT_FAILURE(record(""), "KZN:BadRequest");
    EXPECT_FAILURE(record(" "), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call("cmd=create&type=thng&xml=<thing><thingName>MeetingRecording</thingName></thing>"),
                   "KZN:BadRequest");
    EXPECT_SUCCESS(anna_.call("cmd=create&type=thng&xml=<thing><thingName>Note</thingName></thing>"));
    const std::string ask =
        "<step><cmd>get</cmd><type>thng</type><where><eq><path>ext/KZN/meetingRecording/workspaceID</path><value>" +
        spaceID_ + "</value></eq></where></step>";
    EXPECT_THAT(textsAt(ben_.script(ask), "/kznapi/return/step/thing/ext/KZN/meetingRecording/siteName"),
                ElementsAre("s <1>"));
    User dmitri(port_, "dmitri");
    EXPECT_THAT(textsAt(dmitri.script(ask), "//thing"), IsEmpty());
}

}  // namespace

}  // namespace service::test
