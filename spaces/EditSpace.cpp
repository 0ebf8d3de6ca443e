// What changes or ends a user's relation to a workspace.
#include "client/Operation.h"
#include "spaces/Description.h"

using namespace wapi;

namespace {

// The name follows the description here, the other way round than in a new workspace; the description's block goes out
// even where nothing stands in it.
void writeDescription(FormBody& body, const std::vector<CWapiClient::WKSP_Field_Value>& fields)
{
    body.more("<ext><KZN><description>");
    for (const auto& [field, value] : fields)
        if (field == kDescriptionField) body.more("<text>", Cdata{value}, "</text>");
    body.more("</description></KZN></ext>");
}

}  // namespace

int CWapiClient::editExtWksp(const CStringT& cred, const CStringT& workspaceID, const CStringT& name, int changeName,
                             std::vector<WKSP_Field_Value>& fields)
{
    return operation("CWapiClient::editExtWksp", Timer::rearm, [&] {
        if (workspaceID.empty()) return 0;
        if (changeName == 0 && fields.empty()) return 0;

        FormBody body;
        body.encoded("cmd=", "set").encoded("&cred=", cred).encoded("&type=", "workspace").encoded("&id=", workspaceID);
        body.encoded("&xml=", "<workspace>");
        writeDescription(body, fields);
        if (changeName != 0) body.more("<workspaceName>", name, "</workspaceName>");
        body.more("</workspace>");

        CXMLWapiSetResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::deleteWksp(const CStringT& cred, const CStringT& workspaceID)
{
    return operation("CWapiClient::deleteWksp", Timer::rearm, [&] {
        if (workspaceID.empty()) return 0;

        FormBody body;
        body.encoded("cmd=", "execute").encoded("&task=", "DeleteWorkspace").encoded("&cred=", cred);
        body.encoded("&xml=", "<workspace><workspaceID>", workspaceID, "</workspaceID></workspace>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::leaveWorkspace(const CStringT& cred, const CStringT& workspaceID)
{
    return operation("CWapiClient::leaveWorkspace", Timer::rearm, [&] {
        if (cred.empty() || workspaceID.empty()) return 0;

        // The ID stands alone here, with no workspace around it.
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&task=", "LeaveSpace").encoded("&cred=", cred);
        body.encoded("&xml=", "<workspaceID>", workspaceID, "</workspaceID>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}
