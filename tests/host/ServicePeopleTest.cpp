// People and workspaces: what one user does, seen by the other.
#include "tests/host/ServiceFixture.h"

namespace {

using nlohmann::json;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

class ServicePeopleTest : public ServiceHostTest {
protected:
    ServicePeopleTest() { workspace = shown({"spaces", "create", "Umzug & Kisten"}).at("workspaceID"); }
    ~ServicePeopleTest() override
    {
        actAs("anna");
        done({"spaces", "delete", workspace});
    }

    std::string workspace;
};

TEST_F(ServicePeopleTest, MemberFromInvitationToRemoval)
{
    const json invited = shown({"members", "invite", workspace, "user-ben", "--message", "Komm dazu"});
    EXPECT_EQ(invited.at(0).at("status"), "pending");
    EXPECT_EQ(invited.at(0).at("userName"), "ben");
    EXPECT_EQ(invited.at(0).at("emailSent"), "true");
    EXPECT_EQ(valuesOf(shown({"spaces", "show", workspace}).at("invitations"), "userDescriptor"),
              std::vector<std::string>{"user-ben"});

    actAs("ben");
    EXPECT_EQ(shown({"access", "space", workspace}).at("setWorkspaceAccess"), "false");
    const json open = recordWith(shown({"invitations", "list"}), "workspaceID", workspace);
    ASSERT_FALSE(open.is_null());
    EXPECT_EQ(open.at("workspaceName"), "Umzug & Kisten");
    EXPECT_EQ(open.at("ownerName"), "anna");
    done({"invitations", "accept", workspace});
    EXPECT_EQ(recordWith(shown({"invitations", "list"}), "workspaceID", workspace), json());
    EXPECT_EQ(recordWith(shown({"spaces", "list"}), "workspaceID", workspace).at("role"), 1);
    refused({"members", "role", workspace, "user-ben", "admin"}, "AccessDenied");

    actAs("anna");
    done({"members", "role", workspace, "user-ben", "admin"});
    EXPECT_EQ(recordWith(shown({"members", "list", workspace}), "userID", "user-ben").at("role"), 2);

    actAs("ben");
    EXPECT_EQ(shown({"access", "space", workspace}).at("setWorkspaceAccess"), "true");
    done({"favourites", "add", workspace});
    EXPECT_THAT(valuesOf(shown({"favourites", "list"}), "workspaceID"), Contains(workspace));

    actAs("anna");
    done({"members", "remove", workspace, "user-ben"});
    actAs("ben");
    EXPECT_EQ(recordWith(shown({"spaces", "list"}), "workspaceID", workspace), json());
    EXPECT_EQ(shown({"access", "space", workspace}).at("setWorkspaceAccess"), "false");
    // Whoever is out does not see the workspace among the favourites, but can still take it off them.
    EXPECT_THAT(valuesOf(shown({"favourites", "list"}), "workspaceID"), Not(Contains(workspace)));
    done({"favourites", "remove", workspace});
    refused({"favourites", "remove", workspace}, "NoSuchObject");
}

TEST_F(ServicePeopleTest, FavouritesComeAndGo)
{
    done({"favourites", "add", workspace});
    refused({"favourites", "add", workspace}, "Conflict");
    EXPECT_THAT(valuesOf(shown({"favourites", "list"}), "workspaceID"), Contains(workspace));
    done({"favourites", "remove", workspace});
    EXPECT_THAT(valuesOf(shown({"favourites", "list"}), "workspaceID"), Not(Contains(workspace)));
}

TEST_F(ServicePeopleTest, RightsInNamedAndInSharedWorkspaces)
{
    const auto accessTo = [](const json& roles, const std::string& id, const std::string& cmd) {
        for (const json& role : roles) {
            if (role.at("id") == id && role.at("cmd") == cmd) return role.at("access").get<std::string>();
        }
        return std::string("not answered");
    };
    shown({"members", "invite", workspace, "clara", "--role", "member"});
    actAs("clara");
    done({"invitations", "accept", workspace});
    const json own = shown({"roles", workspace, "no-such-workspace"});
    EXPECT_EQ(own.size(), 4U);
    EXPECT_EQ(accessTo(own, workspace, "get"), "true");
    EXPECT_EQ(accessTo(own, workspace, "set"), "false");
    EXPECT_EQ(accessTo(own, "no-such-workspace", "get"), "false");

    const json shared = shown({"roles", "--with", "user-anna"});
    EXPECT_EQ(accessTo(shared, workspace, "get"), "true");
    EXPECT_EQ(accessTo(shared, workspace, "set"), "false");
    done({"spaces", "leave", workspace});
    EXPECT_EQ(accessTo(shown({"roles", "--with", "user-anna"}), workspace, "get"), "not answered");
}

TEST_F(ServicePeopleTest, InvitationsRefusedAndWithdrawn)
{
    shown({"members", "invite", workspace, "dmitri", "gast@x.example", "--role", "admin"});
    const json open = shown({"invitations", "list", "--workspace", workspace});
    EXPECT_THAT(valuesOf(open, "userDescriptor"), testing::UnorderedElementsAre("dmitri", "gast@x.example"));
    EXPECT_EQ(open.at(0).at("inviteAsType"), 2);
    done({"invitations", "withdraw", workspace, "gast@x.example"});
    refused({"invitations", "withdraw", workspace, "gast@x.example"}, "NoSuchObject");

    actAs("dmitri");
    done({"invitations", "reject", workspace});
    refused({"invitations", "accept", workspace}, "NoSuchObject");
    actAs("anna");
    EXPECT_THAT(shown({"invitations", "list", "--workspace", workspace}), IsEmpty());
}

TEST_F(ServicePeopleTest, RightsOnRoomsDocumentsAndInGeneral)
{
    const std::string reply = run({"proxy", "cmd=get&type=workspace&id=" + workspace + "&select=chatRooms"}).out;
    const std::string opening = "<chatRoomID>";
    const std::size_t begin = reply.find(opening);
    ASSERT_NE(begin, std::string::npos) << reply;
    const std::string room = reply.substr(begin + opening.size(), reply.find('<', begin + 1) - begin - opening.size());

    // The service has rooms, and no command that works on one.
    const json rights = shown({"access", "room", room});
    EXPECT_EQ(rights.at("setChatRoomAccess"), "false");
    EXPECT_NE(rights.at("setChatRoomReason"), "");
    const json own = shown({"access", "own"});
    EXPECT_EQ(own.at("createChatRoomAccess"), "true");
    EXPECT_EQ(own.at("createDocAccess"), "false");
    const json document = shown({"access", "doc", "no-such-document"});
    EXPECT_EQ(document.at("setDocAccess"), "false");
    EXPECT_NE(document.at("setDocReason"), "");
    actAs("ben");
    EXPECT_EQ(shown({"access", "room", room}).at("createChatEntryAccess"), "false");
}

}  // namespace
