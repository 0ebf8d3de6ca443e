// Reading rights across workspaces, and changing a member's role.
#include "access/AccessReply.h"
#include "access/AccessTests.h"
#include "access/SpaceListReply.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

class CXMLWapiGetRoleResponse : public CXMLWapiCommonResponse {
public:
    RoleItemPart tests{*this, kDirectReply};
};

}  // namespace

int CWapiClient::getRole(const CStringT& cred, std::vector<CStringT> workspaceIDs, std::vector<RoleItem>& roles)
{
    return operation("CWapiClient::getRole", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&task=", "ProbeAccess").encoded("&cred=", cred);
        body.encoded("&xml=", "<tests>");
        for (const CStringT& workspaceID : workspaceIDs) writeGetSetTests(body, workspaceID);
        body.more("</tests>");

        CXMLWapiGetRoleResponse reply;
        if (!post(body, reply)) return 0;
        roles = std::move(reply.tests.roles);
        return 1;
    });
}

int CWapiClient::ProbeAccessAllSpace(const CStringT& cred, const CStringT& otherUserID, const CStringT&,
                                     std::vector<RoleItem>& roles)
{
    return operation("CWapiClient::ProbeAccessAllSpace", Timer::rearm, [&] {
        // The service lists the workspaces that both users share and tests each of them.
        FormBody body;
        body.literal("cmd=execute&task=RunScript").encoded("&cred=", cred);
        body.encoded("&xml=", "<script><step><cmd>list</cmd><type>workspace</type><where><and>",
                     "<eq><path>members/member/userID</path><senv>userID</senv></eq>",
                     "<eq><path>members/member/userID</path><value>", otherUserID, "</value></eq></and></where>",
                     "<select>workspaceID</select><pageStart>1</pageStart><pageSize>10000</pageSize>",
                     R"(<set var="WKSPID" path="workspace/workspaceID"/></step>)");
        body.more(R"(<foreach var="WKSPID">)", "<step><cmd>execute</cmd><task>ProbeAccess</task><xml><tests>");
        writeGetSetTests(body, "$$loopVar$$");
        body.more("</tests></xml></step></foreach></script>");

        list_space_library_resp reply;
        if (!post(body, reply)) return 0;
        roles = std::move(reply.tests.roles);
        return 1;
    });
}

int CWapiClient::changeMemberRole(const CStringT& cred, const CStringT& workspaceID, const CStringT& memberID,
                                  WAPI_INVITEAS_TYPE role)
{
    return operation("CWapiClient::changeMemberRole", Timer::leave, [&] {
        const std::string_view roleID = role == WAPI_INVITEAS_ADMIN ? "KZN:SpaceAdmin" : "KZN:SpaceMember";

        FormBody body;
        body.encoded("cmd=", "execute").encoded("&task=", "ChangeRole").encoded("&cred=", cred);
        body.encoded("&xml=", "<code><workspaceID>", workspaceID, "</workspaceID><toRoleID>", roleID,
                     "</toRoleID><userID>", memberID, "</userID></code>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}
