// A user's favourite workspaces.
#include "access/SpaceReply.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

constexpr unsigned kSpace = 3;

class list_favorite_resp : public CXMLWapiCommonResponse {
public:
    list_favorite_resp() { listen(kSpace, kScriptReply, "workspace/", {}); }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id == kSpace) space_.moveTo(spaces.emplace_back());
    }

    std::vector<space_t> spaces;  // those that came back: a favourite whose workspace is gone is none

private:
    SpacePart space_{*this, kScriptReply};
};

// The two bodies that begin with the credential carry it as it stands.
FormBody thingBody(const CStringT& cred, std::string_view rest)
{
    FormBody body;
    body.literal("cred=", cred, rest);
    return body;
}

}  // namespace

int CWapiClient::GetFavoriteSpaceList(const CStringT& cred, const CStringT& thingName, std::vector<space_t>& spaces)
{
    return operation("CWapiClient::GetFavoriteSpaceList", Timer::rearm, [&] {
        FormBody body;
        body.literal("cmd=execute&task=RunScript").encoded("&cred=", cred);
        body.encoded(
            "&xml=", "<script><step><cmd>get</cmd><type>wtng</type><where><and><eq><path>thingName</path><value>",
            thingName, "</value></eq>",
            "<eq><path>thingType</path><value>favouriteWorkspaces</value></eq></and></where>",
            R"(<select>workspaceID</select><set var="WKSPID1" path="workspaceThing/workspaceID"/></step>)");
        body.more(R"(<foreach var="WKSPID1">)", "<step><cmd>get</cmd><type>workspace</type><id>$$loopVar$$</id>",
                  "<select>workspaceID:members</select></step></foreach></script>");

        list_favorite_resp reply;
        if (!post(body, reply)) return 0;
        spaces = std::move(reply.spaces);
        return 1;
    });
}

int CWapiClient::createFavoriteSpace(const CStringT& cred, const CStringT& thingName, const CStringT& workspaceID)
{
    return operation("CWapiClient::createFavoriteSpace", Timer::rearm, [&] {
        FormBody body = thingBody(cred, "&cmd=create&type=wtng&xml=");
        body.more("<workspaceThing><thingName>", thingName, "</thingName><workspaceID>", workspaceID,
                  "</workspaceID><thingType>favouriteWorkspaces</thingType></workspaceThing>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::deleteFavoriteSpace(const CStringT& cred, const CStringT& thingName, const CStringT& workspaceID)
{
    return operation("CWapiClient::deleteFavoriteSpace", Timer::rearm, [&] {
        FormBody body = thingBody(cred, "&cmd=delete&type=wtng&where=");
        body.more("<and><eq><path>thingName</path><value>", thingName, "</value></eq>");
        body.more("<eq><path>workspaceID</path><value>", workspaceID, "</value></eq>");
        body.more("<eq><path>thingType</path><value>favouriteWorkspaces</value></eq></and>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}
