// Workspaces made from applications, and applications saved from workspaces.
#include "client/Operation.h"

using namespace wapi;

namespace {

// A reply whose payload is one text.
class return_str_resp : public CXMLWapiCommonResponse {
public:
    explicit return_str_resp(PathPiece path) { select("", {{path, &text}}); }

    CStringT text;
};

}  // namespace

int CWapiClient::createSpaceUsingApp(const CStringT& cred, const CStringT& name, const CStringT& appName,
                                     CStringT& workspaceID, const CStringT& description, int favourite, int type)
{
    return operation("CWapiClient::createSpaceUsingApp", Timer::rearm, [&] {
        // The discussion room precedes the type here and the favourite is always said, unlike in a plain new workspace.
        FormBody body;
        body.literal("cmd=execute&task=CreateWorkspaceUsingApp").encoded("&cred=", cred);
        body.encoded("&xml=", "<workspace><workspaceName>", name, "</workspaceName>");
        if (!equals(appName, "Blank")) body.more("<appName>", appName, "</appName>");
        body.more("<isFavourite>", trueFalse(favourite), "</isFavourite>");
        if (type == 0) body.more("<chatRoomName>Group Discussion</chatRoomName>");
        body.more("<type>", type, "</type><ext><KZN><description><text>", Cdata{description},
                  "</text></description></KZN></ext></workspace>");

        return_str_resp reply("/kznapi/return/workspace/workspaceID/");
        if (!post(body, reply)) return 0;
        workspaceID = std::move(reply.text);
        return 1;
    });
}

int CWapiClient::saveWorkspaceAsApp(const CStringT& cred, const CStringT& workspaceID, const CStringT& appName,
                                    const CStringT& groupID, CStringT& widgetID, const CStringT& description)
{
    return operation("CWapiClient::saveWorkspaceAsApp", Timer::rearm, [&] {
        FormBody body;
        body.literal("cmd=execute&task=SaveWorkspaceAsApp").encoded("&cred=", cred);
        body.encoded("&xml=", "<workspace><workspaceID>", workspaceID, "</workspaceID><appName>", appName,
                     "</appName><groupID>", groupID, "</groupID><description>", Cdata{description},
                     "</description></workspace>");

        return_str_resp reply("/kznapi/return/widget/widgetID/");
        if (!post(body, reply)) return 0;
        widgetID = std::move(reply.text);
        return 1;
    });
}
