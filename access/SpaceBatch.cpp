// One workspace, its open invitations and the user's rights on it, in one request.
#include "access/AccessReply.h"
#include "access/SpaceListReply.h"
#include "access/SpaceReply.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

class open_space_resp : public CXMLWapiCommonResponse {
public:
    SpacePart space{*this, kScriptReply};
    InvitationPart invitations{*this, kScriptReply};
    SpaceAccessPart rights{*this, kScriptReply};
};

constexpr unsigned long kAllTests = 0xFFFFFFFF;

}  // namespace

int CWapiClient::getSpaceBatch(const CStringT& cred, const CStringT& workspaceID, space_t& space,
                               std::vector<CZelSpaceInvite>& invitations, SPACE_ACCESS& access, CStringT&)
{
    return operation("CWapiClient::getSpaceBatch", Timer::rearm, [&] {
        FormBody body;
        body.literal("cmd=execute&task=RunScript").encoded("&cred=", cred);
        body.encoded("&xml=", "<script><step><cmd>get</cmd><type>workspace</type><id>", workspaceID,
                     "</id><select>workspace</select></step>");
        body.more("<step><cmd>get</cmd><type>invt</type><where><eq><path>workspaceID</path><value>", workspaceID,
                  "</value></eq></where><select>spaceInvite</select></step>");
        body.more("<step><cmd>execute</cmd><task>ProbeAccess</task><xml>",
                  buildProbeSpaceAccessRequest(workspaceID, kAllTests), "</xml></step></script>");

        open_space_resp reply;
        if (!post(body, reply)) return 0;
        reply.space.moveTo(space);
        invitations = std::move(reply.invitations.invitations);
        access = std::move(reply.rights.access);
        return 1;
    });
}
