#include "service/store/Invitations.h"

#include <csignal>

#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The demo organisation's invitation of clara to anna's "Messestand Köln".
class StoredInvitation : public testing::Test {
protected:
    StoredInvitation()
    {
        seed::fillDemo(database_);
        const auto open = store::invitationsVisibleTo(database_, "user-clara", Clock().now());
        EXPECT_EQ(open.size(), 1U);
        if (!open.empty()) invitation_ = open.front();
    }

    bool isListedFor(const std::string& userID, long long now)
    {
        bool listed = false;
        for (const store::Invitation& open : store::invitationsVisibleTo(database_, userID, now)) {
            EXPECT_EQ(open.status, "pending");
            listed = listed || open.invitationID == invitation_.invitationID;
        }
        return listed;
    }

    bool canJoin(long long now)
    {
        return store::pendingInvitation(database_, invitation_.workspaceID, "user-clara", now).has_value();
    }

    // What the user is told who asks for it by its ID; empty where that is nothing.
    std::string stateFor(const std::string& userID, long long now)
    {
        const auto seen = store::findInvitation(database_, invitation_.invitationID, userID, now);
        return seen ? since(seen->status, seen->statusChanged) : std::string();
    }

    static std::string since(const std::string& status, long long then)
    {
        return status + " since " + std::to_string(then);
    }

    TemporaryFolder folder_;
    store::Database database_{folder_.file("data")};
    store::Invitation invitation_;
};

TEST_F(StoredInvitation, LivesThirtyDays)
{
    EXPECT_EQ(invitation_.expires - invitation_.created, 2'592'000'000LL);
    EXPECT_EQ(invitation_.statusChanged, invitation_.created);
}

TEST_F(StoredInvitation, IsOpenUntilItsLastMoment)
{
    const long long last = invitation_.expires - 1;
    EXPECT_TRUE(isListedFor("user-clara", last));
    EXPECT_TRUE(isListedFor("user-anna", last));
    EXPECT_FALSE(isListedFor("user-ben", last));
    EXPECT_TRUE(canJoin(last));
    EXPECT_EQ(stateFor("user-clara", last), since("pending", invitation_.created));
    EXPECT_EQ(stateFor("user-anna", last), since("pending", invitation_.created));
    EXPECT_EQ(stateFor("user-ben", last), "");
}

TEST_F(StoredInvitation, ExpiresThenForGood)
{
    for (const long long now : {invitation_.expires, invitation_.expires + 1, invitation_.expires + 2'592'000'000LL}) {
        EXPECT_FALSE(isListedFor("user-clara", now));
        EXPECT_FALSE(isListedFor("user-anna", now));
        EXPECT_FALSE(canJoin(now));
        EXPECT_EQ(stateFor("user-clara", now), "");
        EXPECT_EQ(stateFor("user-ben", now), "");
        EXPECT_EQ(stateFor("user-anna", now), since("expired", invitation_.expires));
    }
}

// What was answered in time does not run out.
TEST_F(StoredInvitation, KeepsItsAnswer)
{
    const long long answered = invitation_.created + 5;
    for (const std::string status : {"rejected", "accepted"}) {
        store::setInvitationStatus(database_, invitation_.invitationID, status, answered);
        for (const long long now : {answered, invitation_.expires}) {
            EXPECT_FALSE(isListedFor("user-anna", now));
            EXPECT_FALSE(canJoin(now));
            EXPECT_EQ(stateFor("user-anna", now), since(status, answered));
        }
    }
}

TEST_F(StoredInvitation, WithoutAnIDIsNone)
{
    EXPECT_FALSE(store::findInvitation(database_, "", "user-anna", invitation_.created));
}

class InvitationStates : public DemoService {
protected:
    // As a host asks for the invitations to one workspace.
    std::vector<std::string> listed(User& user)
    {
        return textsAt(user.script("<step><cmd>get</cmd><type>invt</type><where><eq><path>workspaceID</path><value>" +
                                   spaceID_ + "</value></eq></where><select>spaceInvite</select></step>"),
                       "/kznapi/return/step/spaceInvite/spaceInviteID");
    }

    std::string invited(const std::string& user)
    {
        EXPECT_EQ(textAt(anna_.invite(spaceID_, user), "/kznapi/return/invitationResults/invite/status"), "pending");
        const std::vector<std::string> open = listed(anna_);
        EXPECT_EQ(open.size(), 1U);
        return open.empty() ? std::string() : open.front();
    }

    static std::string shown(User& user, const std::string& invitationID)
    {
        return user.call("cmd=get&type=invt&id=" + invitationID);
    }

    static std::string stateOf(User& user, const std::string& invitationID)
    {
        return textAt(shown(user, invitationID), "/kznapi/return/spaceInvite/status");
    }

    static std::string withdraw(User& user, const std::string& invitationID)
    {
        return user.call("cmd=delete&type=spaceInvite&id=" + invitationID);
    }

    User anna_{port_, "anna"};
    User clara_{port_, "clara"};
    User ben_{port_, "ben"};
    std::string spaceID_ = anna_.makeSpace("States");
};

TEST_F(InvitationStates, RejectedIsToldToMembersWhoAskForIt)
{
    const std::string id = invited("clara");
    EXPECT_EQ(stateOf(anna_, id), "pending");
    EXPECT_EQ(stateOf(clara_, id), "pending");
    EXPECT_SUCCESS(clara_.answer(spaceID_, "reject"));

    EXPECT_EQ(stateOf(anna_, id), "rejected");
    EXPECT_FAILURE(shown(clara_, id), "KZN:NoSuchObject");
    EXPECT_FAILURE(shown(ben_, id), "KZN:NoSuchObject");
    EXPECT_THAT(listed(anna_), IsEmpty());
    EXPECT_THAT(listed(clara_), IsEmpty());
    EXPECT_FAILURE(clara_.answer(spaceID_, "accept"), "KZN:NoSuchObject");
}

TEST_F(InvitationStates, RejectedIsForgottenOnceWithdrawn)
{
    const std::string id = invited("clara");
    clara_.answer(spaceID_, "reject");
    EXPECT_FAILURE(withdraw(clara_, id), "KZN:NoSuchObject");
    EXPECT_FAILURE(withdraw(ben_, id), "KZN:NoSuchObject");
    EXPECT_EQ(stateOf(anna_, id), "rejected");
    EXPECT_SUCCESS(withdraw(anna_, id));
    EXPECT_FAILURE(shown(anna_, id), "KZN:NoSuchObject");
    EXPECT_FAILURE(withdraw(anna_, id), "KZN:NoSuchObject");
}

TEST_F(InvitationStates, RejectedIsReplacedWhenThePersonIsInvitedAgain)
{
    const std::string rejected = invited("clara");
    clara_.answer(spaceID_, "reject");
    const std::string elsewhere = anna_.makeSpace("Elsewhere");
    anna_.invite(elsewhere, "clara");

    // The same person by another name.
    const std::string open = invited("clara@nordwind.example");
    EXPECT_NE(open, rejected);
    EXPECT_FAILURE(shown(anna_, rejected), "KZN:NoSuchObject");
    EXPECT_EQ(stateOf(anna_, open), "pending");
    EXPECT_THAT(listed(clara_), ElementsAre(open));
    EXPECT_SUCCESS(clara_.answer(elsewhere, "accept"));
    EXPECT_SUCCESS(clara_.answer(spaceID_, "accept"));
}

TEST_F(InvitationStates, InvitingSomebodyElseLeavesTheRejectedOne)
{
    const std::string rejected = invited("clara");
    clara_.answer(spaceID_, "reject");
    invited("stranger@elsewhere.example");
    EXPECT_EQ(stateOf(anna_, rejected), "rejected");
}

TEST_F(InvitationStates, AcceptedIsNotListedAndStays)
{
    const std::string id = invited("clara");
    EXPECT_SUCCESS(clara_.answer(spaceID_, "accept"));
    EXPECT_THAT(listed(anna_), IsEmpty());
    EXPECT_THAT(listed(clara_), IsEmpty());
    EXPECT_EQ(stateOf(anna_, id), "accepted");
    EXPECT_FAILURE(withdraw(anna_, id), "KZN:Conflict");
    EXPECT_EQ(stateOf(anna_, id), "accepted");
    EXPECT_THAT(textsAt(anna_.fieldsOf(spaceID_), "/kznapi/return/workspace/members/member/userID"),
                ElementsAre("user-anna", "user-clara"));
}

TEST_F(InvitationStates, ExpiredIsToldToMembersAndCannotBeAccepted)
{
    const std::string id = invited("clara");
    process_.signal(SIGTERM);
    EXPECT_EQ(process_.wait(), 0);
    store::Database(folder_.file("data")).run("UPDATE invitation SET expires = ?", Clock().now());

    ServiceProcess later(ServiceProcess::on(folder_.file("data")));
    User anna(later.port(), "anna");
    User clara(later.port(), "clara");
    EXPECT_EQ(stateOf(anna, id), "expired");
    EXPECT_FAILURE(shown(clara, id), "KZN:NoSuchObject");
    EXPECT_THAT(listed(anna), IsEmpty());
    EXPECT_THAT(listed(clara), IsEmpty());
    EXPECT_FAILURE(clara.answer(spaceID_, "accept"), "KZN:NoSuchObject");
    EXPECT_EQ(textAt(anna.invite(spaceID_, "clara"), "/kznapi/return/invitationResults/invite/status"), "pending");
    EXPECT_FAILURE(shown(anna, id), "KZN:NoSuchObject");
    EXPECT_SUCCESS(clara.answer(spaceID_, "accept"));
}

}  // namespace

}  // namespace service::test
