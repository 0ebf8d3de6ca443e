// The list of the user's workspaces.
#include "access/SpaceListReply.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

// Sent as it stands: it holds nothing that needs encoding.
constexpr std::string_view kListScript =
    "<script>"
    "<step><cmd>list</cmd><type>workspace</type>"
    "<where><eq><path>members/member/userID</path><senv>userID</senv></eq></where>"
    "<select>workspaceID:workspaceName:userID:userName:type:isTemplate:namespaceID:"
    "ext/KZN/description/text:ext/KZN/spaceIcon/url</select>"
    "<page>1</page><pageSize>10000</pageSize></step>"
    "<step><cmd>get</cmd><type>invt</type><select>*</select>"
    "<where><or><eq><path>userDescriptor</path><senv>userID</senv></eq>"
    "<eq><path>userDescriptor</path><senv>userName</senv></eq></or></where></step>"
    "<step><cmd>get</cmd><type>user</type><id>current</id>"
    "<select>workspaces/workspace/roles/role/roleID:workspaces/workspace/roles/role/roleName:"
    "workspaces/workspace/workspaceID</select></step>"
    "</script>";

}  // namespace

int CWapiClient::GetWkspList(const CStringT& cred, const CStringT&, const CStringT&, std::vector<SpaceForList>& spaces,
                             std::vector<CZelSpaceInvite>& invitations)
{
    return operation("CWapiClient::GetWkspList", Timer::rearm, [&] {
        FormBody body;
        body.literal("cmd=execute&task=RunScript").encoded("&cred=", cred).literal("&xml=", kListScript);

        list_space_library_resp reply;
        if (!post(body, reply)) return 0;

        reply.moveInto(spaces, invitations);
        return 1;
    });
}

int CWapiClient::GetSpacesTest(const CStringT&, const CStringT&)
{
    return 1;
}
