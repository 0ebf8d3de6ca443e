// Two users and one workspace: what the one does, seen by the other.
#include "tests/e2e/EndToEndFixture.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

using Fields = std::vector<CWapiClient::WKSP_Field_Value>;

/// Anna has made a workspace; Clara is signed in too.
class PeopleTest : public EndToEndFixture {
protected:
    void SetUp() override
    {
        EndToEndFixture::SetUp();
        ASSERT_EQ(signIn(clara, "clara"), 1);
        theirs = clara.getRootCred();
        Fields none;
        expectDone(client.createSpace(cred, "Chor & Band"_w, none, workspaceID, 0, 0), client);
    }

    void TearDown() override { expectDone(client.deleteWksp(cred, workspaceID), client); }

    /// What the reply wrote into the invitation.
    SPACEINVT invite(const CStringT& user)
    {
        std::vector<SPACEINVT> invitations(1);
        invitations.front().workspaceID = workspaceID;
        invitations.front().user = user;
        invitations.front().inviteMethod = "EMAIL"_w;
        invitations.front().inviteAs = WAPI_INVITEAS_MEMBER;
        expectDone(client.inviteMembers(cred, invitations, "Komm & <sing> mit"_w), client);
        return invitations.front();
    }

    /// Clara's invitations to the workspace.
    std::vector<CZelSpaceInvite> pending()
    {
        std::vector<CZelSpaceInvite> invitations = Listing(clara).invitations;
        std::erase_if(invitations, [&](const CZelSpaceInvite& item) { return item.workspaceID != workspaceID; });
        return invitations;
    }

    /// Clara's right to change the workspace.
    std::string mayChange()
    {
        SPACE_ACCESS access;
        expectDone(clara.probeSpaceAccess(theirs, workspaceID, access, 0x03), clara);
        EXPECT_EQ(access.setWorkspaceReason.empty(), access.setWorkspaceAccess == "true"_w);
        return narrow(access.setWorkspaceAccess);
    }

    CWapiClient clara{serviceUrl()};
    CStringT theirs;
    CStringT workspaceID;
};

}  // namespace

TEST_F(PeopleTest, FromTheInvitationToTheRemoval)
{
    EXPECT_EQ(mayChange(), "false");
    const SPACEINVT sent = invite("clara@nordwind.example"_w);
    EXPECT_EQ(narrow(sent.status), "pending");
    EXPECT_EQ(narrow(sent.userID), "user-clara");
    EXPECT_EQ(narrow(sent.emailSent), "true");

    ASSERT_EQ(pending().size(), 1U);
    EXPECT_EQ(narrow(pending().front().workspaceName), "Chor & Band");
    EXPECT_EQ(narrow(pending().front().ownerName), "anna");
    EXPECT_EQ(mayChange(), "false");
    expectDone(clara.responseInvitation(theirs, workspaceID, 1), clara);
    EXPECT_THAT(pending(), IsEmpty());
    EXPECT_EQ(mayChange(), "false");

    expectRefused(clara.changeMemberRole(theirs, workspaceID, "user-clara"_w, WAPI_INVITEAS_ADMIN), clara,
                  "KZN:AccessDenied");
    expectDone(client.changeMemberRole(cred, workspaceID, "user-clara"_w, WAPI_INVITEAS_ADMIN), client);
    EXPECT_EQ(mayChange(), "true");
    const Listing promoted(clara);
    ASSERT_NE(promoted.find(workspaceID), nullptr);
    EXPECT_EQ(promoted.find(workspaceID)->role, 2);

    expectDone(clara.createFavoriteSpace(theirs, "user-clara"_w, workspaceID), clara);
    EXPECT_THAT(favouritesOf(clara, "user-clara"), Contains(workspaceID));

    expectDone(client.removeSpaceMember(cred, workspaceID, "user-clara"_w), client);
    EXPECT_EQ(mayChange(), "false");
    EXPECT_EQ(Listing(clara).find(workspaceID), nullptr);
    EXPECT_THAT(favouritesOf(clara, "user-clara"), Not(Contains(workspaceID)));
    expectDone(clara.deleteFavoriteSpace(theirs, "user-clara"_w, workspaceID), clara);
    expectRefused(clara.deleteFavoriteSpace(theirs, "user-clara"_w, workspaceID), clara, "KZN:NoSuchObject");
}

TEST_F(PeopleTest, MembersAndTheirRightsAreSeenByBoth)
{
    invite("user-clara"_w);
    expectDone(clara.responseInvitation(theirs, workspaceID, 1), clara);

    std::vector<CZelMember> members;
    expectDone(clara.getMembers(theirs, workspaceID, members), clara);
    ASSERT_EQ(members.size(), 2U);
    EXPECT_EQ(narrow(members[0].userID), "user-anna");
    EXPECT_EQ(members[0].role, 2);
    EXPECT_EQ(narrow(members[1].userID), "user-clara");
    EXPECT_EQ(members[1].role, 1);

    const auto rights = [&](const std::vector<RoleItem>& roles) {
        std::vector<std::string> answers;
        for (const RoleItem& role : roles)
            if (role.id == workspaceID) answers.push_back(narrow(role.cmd) + " " + narrow(role.access));
        return answers;
    };
    std::vector<RoleItem> roles;
    expectDone(clara.getRole(theirs, {workspaceID}, roles), clara);
    EXPECT_THAT(rights(roles), testing::UnorderedElementsAre("get true", "set false"));
    expectDone(clara.ProbeAccessAllSpace(theirs, "user-anna"_w, {}, roles), clara);
    EXPECT_THAT(rights(roles), testing::UnorderedElementsAre("get true", "set false"));
    expectDone(client.ProbeAccessAllSpace(cred, "user-clara"_w, {}, roles), client);
    EXPECT_THAT(rights(roles), testing::UnorderedElementsAre("get true", "set true"));
}

TEST_F(PeopleTest, AnInvitationIsRefusedOrWithdrawn)
{
    invite("user-clara"_w);
    expectDone(clara.responseInvitation(theirs, workspaceID, 0), clara);
    EXPECT_THAT(pending(), IsEmpty());
    expectRefused(clara.responseInvitation(theirs, workspaceID, 1), clara, "KZN:NoSuchObject");

    invite("user-clara"_w);
    ASSERT_EQ(pending().size(), 1U);
    expectDone(client.delInvt(cred, workspaceID, "user-clara"_w), client);
    EXPECT_THAT(pending(), IsEmpty());
    expectRefused(client.delInvt(cred, workspaceID, "user-clara"_w), client, "KZN:NoSuchObject");
    EXPECT_EQ(Listing(clara).find(workspaceID), nullptr);
}
