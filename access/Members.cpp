// The people of a workspace.
#include "access/MemberList.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

class CXMLWapiGetMembersResponse : public CXMLWapiCommonResponse {
public:
    MemberListPart list{*this, kDirectReply};
};

}  // namespace

int CWapiClient::getMembers(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelMember>& members)
{
    return operation("CWapiClient::getMembers", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "get").encoded("&cred=", cred).encoded("&type=", "workspace").encoded("&id=", workspaceID);
        body.literal("&select=members");

        CXMLWapiGetMembersResponse reply;
        if (!post(body, reply)) return 0;
        members = std::move(reply.list.members);
        return 1;
    });
}

int CWapiClient::removeSpaceMember(const CStringT& cred, const CStringT& workspaceID, const CStringT& memberID)
{
    return operation("CWapiClient::removeSpaceMember", Timer::rearm, [&] {
        // A quote in the ID goes between the quotes of the expression as it stands.
        FormBody body;
        body.encoded("cmd=", "remove").encoded("&cred=", cred).encoded("&type=", "workspace");
        body.encoded("&id=", workspaceID).encoded("&select=", "workspace/members/member[userID='", memberID, "']");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}
