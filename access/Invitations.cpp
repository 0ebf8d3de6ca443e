// Inviting people, withdrawing an invitation and answering one.
#include <map>
#include <queue>
#include <utility>

#include "client/Operation.h"
#include "records/Members.h"

using namespace wapi;
using kzn::pvutil::stringex::CStringView;

namespace {

constexpr unsigned kInvite = 1;

class CXMLWapiSpaceInviteResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiSpaceInviteResponse()
    {
        listen(kInvite, kDirectReply, "invitationResults/invite/",
               {{"workspaceID/", &result_.workspaceID},
                {"user/", &result_.user},
                {"status/", &result_.status},
                {"inviteAs/", &inviteAs_},
                {"inviteMethod/", &result_.inviteMethod},
                {"isproviderID/", &result_.isproviderID},
                {"userID/", &result_.userID},
                {"userName/", &result_.userName},
                {"inviteType/", &result_.inviteType},
                {"emailSent/", &result_.emailSent},
                {"email/", &result_.email}});
    }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id != kInvite) return;
        results.push_back(std::exchange(result_, {}));
        inviteAs_.clear();
    }

    std::vector<SPACEINVT> results;

private:
    SPACEINVT result_;
    CStringT inviteAs_;  // what was asked for; the answer does not change it
};

void writeInvitation(FormBody& body, const SPACEINVT& invitation, const CStringT& message)
{
    body.more("<invite><workspaceID>", invitation.workspaceID, "</workspaceID><user>", Cdata{invitation.user},
              "</user>");
    body.more("<status>", invitation.status, "</status><inviteAs>", static_cast<int>(invitation.inviteAs),
              "</inviteAs>");
    body.more("<inviteMethod>", invitation.inviteMethod, "</inviteMethod>");
    body.more("<isproviderID>", invitation.isproviderID, "</isproviderID>");
    if (!message.empty() && equals(invitation.inviteMethod, "EMAIL"))
        body.more("<userDefinedMessage>", Cdata{message}, "</userDefinedMessage>");
    body.more("</invite>");
}

void keepResult(SPACEINVT& invitation, SPACEINVT& result) noexcept
{
    if (!result.status.empty()) invitation.status.swap(result.status);
    invitation.userID.swap(result.userID);
    invitation.userName.swap(result.userName);
    invitation.inviteType.swap(result.inviteType);
    invitation.emailSent.swap(result.emailSent);
    invitation.email.swap(result.email);
}

// Each result goes to the first invitation of its workspace and invitee that has none yet.
void keepResults(std::vector<SPACEINVT>& invitations, std::vector<SPACEINVT>& results)
{
    std::map<std::pair<CStringView, CStringView>, std::queue<SPACEINVT*>> waiting;
    for (SPACEINVT& invitation : invitations) waiting[{invitation.workspaceID, invitation.user}].push(&invitation);

    for (SPACEINVT& result : results) {
        const auto found = waiting.find({result.workspaceID, result.user});
        if (found == waiting.end() || found->second.empty()) continue;
        keepResult(*found->second.front(), result);
        found->second.pop();
    }
}

}  // namespace

int CWapiClient::inviteMembers(const CStringT& cred, std::vector<SPACEINVT>& invitations, CStringT message)
{
    return operation("CWapiClient::inviteMembers", Timer::leave, [&] {
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "BulkSpaceInvite");
        body.encoded("&xml=", "<invitations>");
        for (const SPACEINVT& invitation : invitations) writeInvitation(body, invitation, message);
        body.more("</invitations>");

        CXMLWapiSpaceInviteResponse reply;
        if (!post(body, reply)) return 0;
        keepResults(invitations, reply.results);
        return 1;
    });
}

int CWapiClient::delInvt(const CStringT& cred, const CStringT& workspaceID, const CStringT& userDescriptor)
{
    return operation("CWapiClient::delInvt", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "delete").encoded("&cred=", cred).encoded("&type=", "spaceInvite");
        body.encoded("&where=", "<and><eq><path>workspaceID</path><value>", workspaceID, "</value></eq>");
        body.more("<eq><path>userDescriptor</path><value>", Cdata{userDescriptor}, "</value></eq></and>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::responseInvitation(const CStringT& cred, const CStringT& workspaceID, int accept)
{
    return operation("CWapiClient::responseInvitation", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&task=", "JoinSpace").encoded("&cred=", cred);
        body.encoded("&xml=", "<invite><workspaceID>", workspaceID, "</workspaceID><action>",
                     accept != 0 ? "accept" : "reject", "</action></invite>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}
