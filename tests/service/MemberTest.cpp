#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Members : public DemoService {
protected:
    std::string invite(const std::string& user, const std::string& inviteAs, const std::string& method = "EMAIL")
    {
        return anna_.execute("BulkSpaceInvite",
                             "<invitations><invite><workspaceID>" + spaceID_ + "</workspaceID><user><![CDATA[" + user +
                                 "]]></user><status></status><inviteAs>" + inviteAs + "</inviteAs><inviteMethod>" +
                                 method +
                                 "</inviteMethod><isproviderID>isp-nordwind</isproviderID></invite></invitations>");
    }

    // The open invitations to this workspace that the user sees as addressed to them.
    std::vector<std::string> invitationsOf(User& user)
    {
        return textsAt(
            user.script(
                "<step><cmd>get</cmd><type>invt</type><select>*</select><where><and><eq><path>workspaceID</path>"
                "<value>" +
                spaceID_ +
                "</value></eq><or><eq><path>userDescriptor</path><senv>userID</senv></eq>"
                "<eq><path>userDescriptor</path><senv>userName</senv></eq></or></and></where></step>"),
            "/kznapi/return/step/spaceInvite/userDescriptor");
    }

    std::vector<std::string> accessOf(User& user)
    {
        return textsAt(user.execute("ProbeAccess", "<tests><set-workspace><id>" + spaceID_ +
                                                       "</id></set-workspace><delete-workspace><id>" + spaceID_ +
                                                       "</id></delete-workspace><get><cmd>get</cmd><id>" + spaceID_ +
                                                       "</id><type>workspace</type></get></tests>"),
                       "/kznapi/return/*/access");
    }

    std::string changeRole(User& user, const std::string& userID, const std::string& roleID)
    {
        return user.execute("ChangeRole", "<code><workspaceID>" + spaceID_ + "</workspaceID><toRoleID>" + roleID +
                                              "</toRoleID><userID>" + userID + "</userID></code>");
    }

    std::string removeMember(User& user, const std::string& userID)
    {
        return user.call("cmd=remove&type=workspace&id=" + spaceID_ +
                         "&select=" + encoded("workspace/members/member[userID='" + userID + "']"));
    }

    std::string favourite(const std::string& command)
    {
        const std::string where =
            "<and><eq><path>thingName</path><value>mine</value></eq><eq><path>workspaceID</path><value>" + spaceID_ +
            "</value></eq><eq><path>thingType</path><value>favouriteWorkspaces</value></eq></and>";
        const std::string xml = "<workspaceThing><thingName>mine</thingName><workspaceID>" + spaceID_ +
                                "</workspaceID><thingType>favouriteWorkspaces</thingType></workspaceThing>";
        return clara_.call(command == "create" ? "cmd=create&type=wtng&xml=" + encoded(xml)
                                               : "cmd=delete&type=wtng&where=" + encoded(where));
    }

    User anna_{port_, "anna"};
    User clara_{port_, "clara"};
    User ben_{port_, "ben"};
    std::string spaceID_ = anna_.makeSpace("Story");
};

TEST_F(Members, AreInvitedJoinArePromotedAndLeave)
{
    const std::string reply = invite("clara@nordwind.example", "1");
    EXPECT_SUCCESS(reply);
    const std::string result = "/kznapi/return/invitationResults/invite/";
    EXPECT_EQ(textAt(reply, result + "user"), "clara@nordwind.example");
    EXPECT_EQ(textAt(reply, result + "status"), "pending");
    EXPECT_EQ(textAt(reply, result + "userID"), "user-clara");
    EXPECT_EQ(textAt(reply, result + "userName"), "clara");
    EXPECT_EQ(textAt(reply, result + "emailSent"), "true");
    EXPECT_EQ(textAt(invite("user-clara", "1"), result + "status"), "alreadyInvited");

    // Invited by address, found by ID and name, shown as it was written.
    EXPECT_THAT(invitationsOf(clara_), ElementsAre("clara@nordwind.example"));
    EXPECT_THAT(accessOf(clara_), ElementsAre("false", "false", "false"));
    EXPECT_SUCCESS(clara_.answer(spaceID_, "accept"));
    EXPECT_THAT(invitationsOf(clara_), IsEmpty());
    EXPECT_FAILURE(clara_.answer(spaceID_, "accept"), "KZN:NoSuchObject");
    EXPECT_THAT(accessOf(clara_), ElementsAre("false", "false", "true"));
    EXPECT_EQ(textAt(invite("clara", "1"), result + "status"), "alreadyMember");

    EXPECT_FAILURE(changeRole(clara_, "user-clara", "KZN:SpaceAdmin"), "KZN:AccessDenied");
    EXPECT_SUCCESS(changeRole(anna_, "user-clara", "KZN:SpaceAdmin"));
    EXPECT_THAT(accessOf(clara_), ElementsAre("true", "true", "true"));

    EXPECT_SUCCESS(removeMember(anna_, "user-clara"));
    EXPECT_THAT(accessOf(clara_), ElementsAre("false", "false", "false"));
    EXPECT_FAILURE(removeMember(anna_, "user-clara"), "KZN:NoSuchObject");
}

TEST_F(Members, AnInvitationAsAdministratorMakesOne)
{
    invite("user-clara", "2");
    EXPECT_SUCCESS(clara_.answer(spaceID_, "accept"));
    EXPECT_THAT(accessOf(clara_), ElementsAre("true", "true", "true"));
}

// The answer to an invitation is what stands, not what was asked for.
TEST_F(Members, ASecondInvitationTellsTheRoleThatStands)
{
    const std::string result = "/kznapi/return/invitationResults/invite/";
    const auto told = [&](const std::string& inviteAs, const std::string& method) {
        const std::string reply = invite("clara@nordwind.example", inviteAs, method);
        std::vector<std::string> texts;
        for (const char* const field : {"status", "inviteAs", "inviteMethod"}) {
            texts.push_back(textAt(reply, result + field));
        }
        EXPECT_EQ(textAt(reply, result + "user"), "clara@nordwind.example");
        EXPECT_EQ(textAt(reply, result + "email"), "clara@nordwind.example");
        return texts;
    };
    EXPECT_THAT(told("1", "IM"), ElementsAre("pending", "KZN:SpaceMember", "IM"));
    EXPECT_THAT(told("2", "EMAIL"), ElementsAre("alreadyInvited", "KZN:SpaceMember", "IM"));
    EXPECT_SUCCESS(clara_.answer(spaceID_, "accept"));
    EXPECT_THAT(told("2", "EMAIL"), ElementsAre("alreadyMember", "KZN:SpaceMember", "EMAIL"));
    EXPECT_SUCCESS(changeRole(anna_, "user-clara", "KZN:SpaceAdmin"));
    EXPECT_THAT(told("1", "EMAIL"), ElementsAre("alreadyMember", "KZN:SpaceAdmin", "EMAIL"));
    EXPECT_EQ(textAt(invite("anna", "1"), result + "inviteAs"), "KZN:Creator");
}

TEST_F(Members, InvitationsAreRejectedAndWithdrawn)
{
    invite("user-clara", "1");
    EXPECT_SUCCESS(clara_.answer(spaceID_, "reject"));
    EXPECT_THAT(invitationsOf(clara_), IsEmpty());
    EXPECT_THAT(accessOf(clara_), ElementsAre("false", "false", "false"));

    invite("user-clara", "1");
    const std::string where = encoded("<and><eq><path>workspaceID</path><value>" + spaceID_ +
                                      "</value></eq><eq><path>userDescriptor"
                                      "</path><value><![CDATA[user-clara]]></value></eq></and>");
    EXPECT_FAILURE(ben_.call("cmd=delete&type=spaceInvite&where=" + where), "KZN:NoSuchObject");
    EXPECT_FAILURE(clara_.call("cmd=delete&type=spaceInvite&where=" + where), "KZN:NoSuchObject");
    EXPECT_THAT(invitationsOf(clara_), ElementsAre("user-clara"));
    EXPECT_SUCCESS(anna_.call("cmd=delete&type=spaceInvite&where=" + where));
    EXPECT_THAT(invitationsOf(clara_), IsEmpty());
    EXPECT_FAILURE(anna_.call("cmd=delete&type=spaceInvite&where=" + where), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.call("cmd=delete&type=spaceInvite"), "KZN:BadRequest");
}

TEST_F(Members, WrongInvitationsAreRefusedWhole)
{
    EXPECT_FAILURE(invite("nobody", "1"), "KZN:NoSuchObject");
    EXPECT_FAILURE(invite("", "1"), "KZN:BadRequest");
    EXPECT_FAILURE(invite("user-clara", "many"), "KZN:BadRequest");
    EXPECT_SUCCESS(invite("stranger@elsewhere.example", "1"));
    EXPECT_SUCCESS(anna_.execute("BulkSpaceInvite", "<invitations></invitations>"));
    EXPECT_FAILURE(clara_.answer(spaceID_, "perhaps"), "KZN:BadRequest");
}

TEST_F(Members, ALastAdministratorRemains)
{
    EXPECT_FAILURE(changeRole(anna_, "user-anna", "KZN:SpaceMember"), "KZN:Conflict");
    EXPECT_FAILURE(removeMember(anna_, "user-anna"), "KZN:Conflict");
    EXPECT_FAILURE(changeRole(anna_, "user-anna", "KZN:Creator"), "KZN:BadRequest");
    EXPECT_FAILURE(changeRole(anna_, "user-ben", "KZN:SpaceMember"), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.call("cmd=remove&type=workspace&id=" + spaceID_ + "&select=workspace/members"),
                   "KZN:BadRequest");
}

TEST_F(Members, FavouritesComeAndGo)
{
    EXPECT_FAILURE(favourite("create"), "KZN:NoSuchObject");
    invite("user-clara", "1");
    clara_.answer(spaceID_, "accept");
    EXPECT_SUCCESS(favourite("create"));
    EXPECT_FAILURE(favourite("create"), "KZN:Conflict");
    const std::string script =
        "<step><cmd>get</cmd><type>wtng</type><where><and><eq><path>thingName</path><value>mine</value></eq>"
        "<eq><path>thingType</path><value>favouriteWorkspaces</value></eq></and></where><select>workspaceID"
        "</select><set var=\"WKSPID1\" path=\"workspaceThing/workspaceID\"/></step><foreach var=\"WKSPID1\">"
        "<step><cmd>get</cmd><type>workspace</type><id>$$loopVar$$</id><select>workspaceID:members</select>"
        "</step></foreach>";
    const std::string found = clara_.script(script);
    EXPECT_THAT(textsAt(found, "/kznapi/return/step/workspaceThing/workspaceID"), ElementsAre(spaceID_));
    EXPECT_THAT(textsAt(found, "/kznapi/return/step/workspace/members/member/userName"), ElementsAre("anna", "clara"));
    // A favourite whose workspace is out of reach is still listed as a thing, and the workspace is left out.
    removeMember(anna_, "user-clara");
    const std::string gone = clara_.script(script);
    EXPECT_SUCCESS(gone);
    EXPECT_THAT(textsAt(gone, "/kznapi/return/step/workspaceThing/workspaceID"), ElementsAre(spaceID_));
    EXPECT_THAT(textsAt(gone, "/kznapi/return/step/workspace"), IsEmpty());
    EXPECT_SUCCESS(favourite("delete"));
    EXPECT_FAILURE(favourite("delete"), "KZN:NoSuchObject");
}

TEST_F(Members, RightsOnAllSharedWorkspacesComeFromOneScript)
{
    const std::string reply = anna_.script(
        "<step><cmd>list</cmd><type>workspace</type><where><and><eq><path>members/member/userID</path><senv>userID</"
        "senv></eq>"
        "<eq><path>members/member/userID</path><value>user-ben</value></eq></and></where><select>workspaceID</"
        "select><pageStart>1"
        "</pageStart><pageSize>10000</pageSize><set var=\"WKSPID\" path=\"workspace/workspaceID\"/></step><foreach "
        "var=\"WKSPID\">"
        "<step><cmd>execute</cmd><task>ProbeAccess</task><xml><tests><get><cmd>get</cmd><id>$$loopVar$$</"
        "id><type>workspace</type>"
        "</get><set><cmd>set</cmd><id>$$loopVar$$</id><type>workspace</type></set></tests></xml></step></foreach>");
    EXPECT_SUCCESS(reply);
    const std::vector<std::string> ids = textsAt(reply, "/kznapi/return/step/workspace/workspaceID");
    ASSERT_EQ(ids.size(), 2U);
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/get/id"), testing::ElementsAreArray(ids));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/get/cmd"), ElementsAre("get", "get"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/get/access"), ElementsAre("true", "true"));
    // The creator of the autumn catalogue, a plain member of ben's archive.
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/set/access"), ElementsAre("true", "false"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/set/reason"),
                ElementsAre("", "only an administrator of the workspace may do this"));
}

class Probes : public Members {
protected:
    std::vector<std::string> probed(User& user, const std::string& tests, const std::string& element = "access")
    {
        return textsAt(user.execute("ProbeAccess", "<tests>" + tests + "</tests>"), "/kznapi/return/*/" + element);
    }
};

TEST_F(Probes, FeaturesAreWhatTheOrganisationAllows)
{
    EXPECT_THAT(
        probed(anna_, "<BulkSpaceInvite/><JoinSpace/><VoIPExt/><create-workspace/><create-chatRoom/><NoSuchFeature/>"),
        ElementsAre("true", "true", "false", "true", "true", "false"));
    EXPECT_SUCCESS(anna_.execute("ProbeAccess", "<tests></tests>"));
}

// Nobody may do what cannot be done here.
TEST_F(Probes, NobodyMayDoWhatNoCommandDoes)
{
    const std::string room = textAt(anna_.call("cmd=get&type=workspace&select=chatRooms&id=" + spaceID_),
                                    "/kznapi/return/workspace/chatRooms/chatRoom/chatRoomID");
    ASSERT_NE(room, "");
    const std::string tests = "<set-chatRoom><id>" + room + "</id></set-chatRoom><delete-chatRoom><id>" + room +
                              "</id></delete-chatRoom><create-chatEntry><id>" + room +
                              "</id></create-chatEntry><set-doc><id>none</id></set-doc><delete-doc><id>none</id>"
                              "</delete-doc><create-doc/><get><cmd>create</cmd><type>doc</type></get>";
    EXPECT_THAT(probed(anna_, tests), testing::AllOf(testing::SizeIs(7), testing::Each("false")));
    EXPECT_THAT(probed(anna_, tests, "reason"),
                testing::AllOf(testing::SizeIs(7), testing::Each("this service has no command for it")));
}

TEST_F(Probes, ATestAsksAboutItsCommandAndItsType)
{
    invite("user-clara", "1");
    clara_.answer(spaceID_, "accept");
    const auto asked = [&](const std::string& name, const std::string& cmd, const std::string& type) {
        return probed(clara_, "<" + name + ">" + (cmd.empty() ? "" : "<cmd>" + cmd + "</cmd>") + "<id>" + spaceID_ +
                                  "</id>" + (type.empty() ? "" : "<type>" + type + "</type>") + "</" + name + ">");
    };
    EXPECT_THAT(asked("get", "get", "workspace"), ElementsAre("true"));
    EXPECT_THAT(asked("get", "get", "wksp"), ElementsAre("true"));
    EXPECT_THAT(asked("get", "get", ""), ElementsAre("true"));
    EXPECT_THAT(asked("get", "", "workspace"), ElementsAre("true"));
    EXPECT_THAT(asked("get", "", ""), ElementsAre("true"));
    EXPECT_THAT(asked("set-workspace", "get", ""), ElementsAre("true"));
    EXPECT_THAT(asked("get", "set", "workspace"), ElementsAre("false"));
    EXPECT_THAT(asked("get", "set", ""), ElementsAre("false"));
    EXPECT_THAT(asked("get", "delete", "workspace"), ElementsAre("false"));
    EXPECT_THAT(asked("get", "", "doc"), ElementsAre("false"));
    EXPECT_THAT(asked("get", "fly", "workspace"), ElementsAre("false"));
    EXPECT_THAT(asked("get", "get", "planet"), ElementsAre("false"));
    EXPECT_THAT(asked("anything", "get", "workspace"), ElementsAre("true"));
    EXPECT_THAT(asked("anything", "create", "workspace"), ElementsAre("true"));
    EXPECT_SUCCESS(changeRole(anna_, "user-clara", "KZN:SpaceAdmin"));
    EXPECT_THAT(asked("get", "set", "workspace"), ElementsAre("true"));
    EXPECT_THAT(asked("get", "delete", "wksp"), ElementsAre("true"));
}

}  // namespace

}  // namespace service::test
