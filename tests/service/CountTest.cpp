#include "service/store/Events.h"
#include "service/store/Members.h"
#include "tests/service/InnerService.h"

namespace service::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Counts : public InnerService {
protected:
    void send(const std::string& cred, const std::string& spaceID)
    {
        EXPECT_SUCCESS(execute(cred, "SendNotificationEvent",
                               "<eventData><eventNotification><eventType>REALTIME_COMMUNICATION_EVENT</eventType>"
                               "<eventName>START_MEETING</eventName><eventWorkspaceID>" +
                                   spaceID + "</eventWorkspaceID></eventNotification></eventData>"));
    }

    static std::string asking(const std::vector<std::string>& spaceIDs, const std::string& more = {})
    {
        std::string xml;
        for (const std::string& spaceID : spaceIDs) {
            xml += "<workspace><workspaceID>" + spaceID + "</workspaceID>" + more + "</workspace>";
        }
        return xml;
    }

    std::string count(const std::string& cred, const std::vector<std::string>& spaceIDs)
    {
        return execute(cred, "GetWorkspaceNotificationCount", "<getCount>" + asking(spaceIDs) + "</getCount>");
    }

    std::vector<std::string> counted(const std::string& cred, const std::vector<std::string>& spaceIDs)
    {
        return textsAt(count(cred, spaceIDs), "/kznapi/return/Results/workspace/notificationCount");
    }

    // Tells the service that many unread messages, and the activity that it answers.
    std::vector<std::string> report(const std::string& cred, const std::vector<std::string>& spaceIDs, int unread)
    {
        const std::string xml =
            "<getActivity>" +
            asking(spaceIDs, "<unreadMessageCount>" + std::to_string(unread) +
                                 "</unreadMessageCount><activeMembersCount>0</activeMembersCount>") +
            "</getActivity>";
        return textsAt(execute(cred, "GetWorkspaceNotificationCount", xml),
                       "/kznapi/return/Results/workspace/activityValue");
    }

    void join(const std::string& cred, const std::string& user, const std::string& spaceID)
    {
        EXPECT_SUCCESS(execute(anna_, "BulkSpaceInvite",
                               "<invitations><invite><workspaceID>" + spaceID + "</workspaceID><user>" + user +
                                   "</user></invite></invitations>"));
        EXPECT_SUCCESS(execute(cred, "JoinSpace",
                               "<invite><workspaceID>" + spaceID + "</workspaceID><action>accept</action></invite>"));
    }

    void leave(const std::string& cred, const std::string& spaceID)
    {
        EXPECT_SUCCESS(execute(cred, "LeaveSpace", "<workspaceID>" + spaceID + "</workspaceID>"));
    }

    std::string anna_ = credOf("anna");
    std::string ben_ = credOf("ben");
    std::string spaceID_ = makeSpace(anna_);
};

TEST_F(Counts, WhatWasThereBeforeTheUserIsNotCounted)
{
    store::Event event;
    event.workspaceID = spaceID_;
    event.senderID = "user-anna";
    event.created = 5'000;
    const auto add = [&](const std::string& eventID) {
        event.eventID = eventID;
        store::insertEvent(database_, event);
        return store::notificationCount(database_, spaceID_, "user-ben");
    };
    add("before");
    store::insertMember(database_, spaceID_, "user-ben", 5'000);
    EXPECT_EQ(store::notificationCount(database_, spaceID_, "user-ben"), 0);
    // The clock does not tell before from after.
    EXPECT_EQ(add("in the same moment"), 1);
    event.created = 4'999;
    EXPECT_EQ(add("after the clock was put back"), 2);
}

TEST_F(Counts, BeginAnewForWhoComesBack)
{
    join(ben_, "ben", spaceID_);
    send(anna_, spaceID_);
    leave(ben_, spaceID_);
    send(anna_, spaceID_);
    join(ben_, "ben", spaceID_);
    EXPECT_THAT(counted(ben_, {spaceID_}), ElementsAre("0"));
    send(anna_, spaceID_);
    EXPECT_THAT(counted(ben_, {spaceID_}), ElementsAre("1"));
}

TEST_F(Counts, BeginAnewOnceTheEventsWereShown)
{
    const std::string other = makeSpace(anna_);
    for (const std::string& spaceID : {spaceID_, other}) {
        join(ben_, "ben", spaceID);
        send(anna_, spaceID);
        send(anna_, spaceID);
    }
    EXPECT_THAT(counted(ben_, {spaceID_, other}), ElementsAre("2", "2"));
    EXPECT_THAT(counted(ben_, {spaceID_, other}), ElementsAre("2", "2"));
    const std::string events = "cmd=get&type=event&cred=" + ben_ +
                               "&where=" + encoded("<eq><path>workspaceID</path><value>" + spaceID_ + "</value></eq>") +
                               "&select=";
    EXPECT_EQ(textsAt(answer(events + "eventName"), "/kznapi/return/event/eventName").size(), 2U);
    EXPECT_THAT(counted(ben_, {spaceID_, other}), ElementsAre("0", "2"));
    send(anna_, spaceID_);
    EXPECT_THAT(counted(ben_, {spaceID_, other}), ElementsAre("1", "2"));
    // Somebody else's look is not ben's, and a refused request has shown nothing.
    answer("cmd=get&type=event&cred=" + anna_ +
           "&where=" + encoded("<eq><path>workspaceID</path><value>" + spaceID_ + "</value></eq>"));
    EXPECT_FAILURE(
        execute(ben_, "RunScript",
                "<script><step><cmd>list</cmd><type>event</type></step><step><cmd>fly</cmd></step></script>"),
        "KZN:UnknownCommand");
    EXPECT_THAT(counted(ben_, {spaceID_, other}), ElementsAre("1", "2"));
    EXPECT_SUCCESS(execute(ben_, "RunScript", "<script><step><cmd>list</cmd><type>event</type></step></script>"));
    EXPECT_THAT(counted(ben_, {spaceID_, other}), ElementsAre("0", "0"));
}

TEST_F(Counts, AreThoseOfTheEventsThatWereNotShownYet)
{
    join(ben_, "ben", spaceID_);
    for (int i = 0; i < 3; ++i) send(anna_, spaceID_);
    const auto page = [&](int number) {
        EXPECT_SUCCESS(execute(ben_, "RunScript",
                               "<script><step><cmd>list</cmd><type>event</type><select>eventID</select><page>" +
                                   std::to_string(number) + "</page><pageSize>1</pageSize></step></script>"));
    };
    page(2);
    EXPECT_THAT(counted(ben_, {spaceID_}), ElementsAre("1"));
    page(1);
    EXPECT_THAT(counted(ben_, {spaceID_}), ElementsAre("1"));
    page(3);
    EXPECT_THAT(counted(ben_, {spaceID_}), ElementsAre("0"));
}

TEST_F(Counts, ActivityIsThatOfTheMembers)
{
    join(ben_, "ben", spaceID_);
    EXPECT_THAT(report(ben_, {spaceID_}, 7), ElementsAre("7"));
    EXPECT_THAT(report(anna_, {spaceID_}, 1), ElementsAre("8"));
    leave(ben_, spaceID_);
    EXPECT_THAT(report(anna_, {spaceID_}, 1), ElementsAre("1"));
    join(ben_, "ben", spaceID_);
    EXPECT_THAT(report(anna_, {spaceID_}, 1), ElementsAre("1"));
}

TEST_F(Counts, AWorkspaceThatHasGoneIsLeftOut)
{
    const std::string gone = makeSpace(anna_);
    const std::string last = makeSpace(anna_);
    EXPECT_SUCCESS(execute(anna_, "DeleteWorkspace", "<workspace><workspaceID>" + gone + "</workspaceID></workspace>"));
    const std::string reply = count(anna_, {spaceID_, gone, last});
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(textsAt(reply, "/kznapi/return/Results/workspace/workspaceID"), ElementsAre(spaceID_, last));
    EXPECT_THAT(report(anna_, {gone, spaceID_, last}, 2), ElementsAre("2", "2"));
    // So is one that the user is not in, and nothing is kept of what is reported about it.
    EXPECT_THAT(counted(ben_, {spaceID_}), IsEmpty());
    EXPECT_THAT(report(ben_, {spaceID_}, 100), IsEmpty());
    EXPECT_THAT(report(anna_, {spaceID_}, 2), ElementsAre("2"));
    EXPECT_FAILURE(count(anna_, {spaceID_, ""}), "KZN:BadRequest");
}

}  // namespace

}  // namespace service::test
