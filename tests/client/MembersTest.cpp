// Replies about members that are larger than any workspace has.
#include "tests/client/ClientFixture.h"

namespace {

using MembersTest = ClientFixture;

std::string role(const std::string& id)
{
    return "<role><roleID>" + id + "</roleID><roleName>any</roleName></role>";
}

std::string member(const std::string& id, const std::string& roles)
{
    return "<member><userID>" + id + "</userID><roles>" + roles + "</roles></member>";
}

}  // namespace

TEST_F(MembersTest, AThousandRolesOfOneMemberAreAllLookedAt)
{
    std::string roles;
    for (int i = 0; i < 999; ++i) roles += role("R" + std::to_string(i));
    reply(resultReply("SUCCESS", "<return><workspace><members>" + member("admin", roles + role("KZN:SpaceAdmin")) +
                                     member("plain", roles) + "</members></workspace></return>"));
    std::vector<CZelMember> members;
    ASSERT_EQ(client.getMembers("c"_w, "w"_w, members), 1);
    ASSERT_EQ(members.size(), 2U);
    EXPECT_EQ(members[0].role, 2);
    EXPECT_EQ(members[1].role, 1);
}

TEST_F(MembersTest, TenThousandMembersKeepTheirOrder)
{
    std::string all;
    for (int i = 0; i < 10'000; ++i) all += member(std::to_string(i), role(i % 2 == 0 ? "KZN:Creator" : "other"));
    reply(resultReply("SUCCESS", "<return><workspace><members>" + all + "</members></workspace></return>"));
    std::vector<CZelMember> members;
    ASSERT_EQ(client.getMembers("c"_w, "w"_w, members), 1);
    ASSERT_EQ(members.size(), 10'000U);
    for (std::size_t i = 0; i < members.size(); ++i) {
        ASSERT_EQ(narrow(members[i].userID), std::to_string(i));
        ASSERT_EQ(members[i].role, i % 2 == 0 ? 2 : 1) << i;
    }
}

// Results in any order, and results of nobody: looking each one up must not take time of its own for every invitation.
TEST_F(MembersTest, TenThousandInvitationsGetTheirResults)
{
    constexpr int kMany = 10'000;
    std::vector<SPACEINVT> invitations(kMany);
    std::string results;
    for (int i = 0; i < kMany; ++i) {
        const std::string user = std::to_string(i);
        invitations[static_cast<std::size_t>(i)].workspaceID = "w"_w;
        invitations[static_cast<std::size_t>(i)].user = wide(user);
        results.insert(0, "<invite><workspaceID>w</workspaceID><user>" + user + "</user><userID>u" + user +
                              "</userID></invite><invite><workspaceID>w</workspaceID><user>x</user></invite>");
    }
    reply(resultReply("SUCCESS", "<return><invitationResults>" + results + "</invitationResults></return>"));
    ASSERT_EQ(client.inviteMembers("c"_w, invitations, {}), 1);
    for (const SPACEINVT& invitation : invitations) ASSERT_EQ(invitation.userID, "u"_w + invitation.user);
}
