// New workspaces.
#include "client/Operation.h"
#include "spaces/Description.h"

using namespace wapi;

namespace {

class CXMLWapiCreateWkspResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiCreateWkspResponse() { select(kDirectReply, {{"workspace/workspaceID/", &workspaceID}}); }

    CStringT workspaceID;
};

constexpr int kTypeBits = 0x0F;
constexpr int kTemplateBit = 0x10;

constexpr std::string_view kRoom = "<chatRoomName>Group Discussion</chatRoomName>";
constexpr std::string_view kFavourite = "<isFavourite>true</isFavourite>";
constexpr std::string_view kDiscussionTabs =
    "<tabs><tab><tabName>Discussions</tabName><tabType>1</tabType><tabOrder>1</tabOrder></tab>"
    "<tab><tabName>Files</tabName><tabType>2</tabType><tabOrder>2</tabOrder></tab></tabs>";
constexpr std::string_view kPlainTab =
    "<tabs><tab><tabName>default</tabName><tabType>0</tabType><tabOrder>1</tabOrder></tab></tabs>";

// The wrapper goes out even where nothing stands in it.
void writeDescription(FormBody& body, const std::vector<CWapiClient::WKSP_Field_Value>& fields)
{
    body.literal("<ext><KZN><description>");
    for (const auto& [field, value] : fields)
        if (field == kDescriptionField) body.encoded("<text><![CDATA[", value).literal("]]></text>");
    body.literal("</description></KZN></ext>");
}

}  // namespace

int CWapiClient::createSpace(const CStringT& cred, const CStringT& name, std::vector<WKSP_Field_Value>& fields,
                             CStringT& workspaceID, int type, int favourite)
{
    return operation("CWapiClient::createSpace", Timer::rearm, [&] {
        if (name.empty()) return refuse("workspace name can't be empty.");

        // Only the pieces that a host gives are encoded, not the XML around them.
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "AddTabs");
        body.encoded("&xml=<workspace><workspaceName>", name).literal("</workspaceName><isTemplate>false</isTemplate>");
        body.literal("<type>", type, "</type>");
        if (type == 0) body.literal(kRoom, kDiscussionTabs);
        else body.literal(kPlainTab);
        if (favourite != 0) body.literal(kFavourite);
        writeDescription(body, fields);
        body.literal("</workspace>");

        CXMLWapiCreateWkspResponse reply;
        if (!post(body, reply)) return 0;
        workspaceID = std::move(reply.workspaceID);
        return 1;
    });
}

int CWapiClient::cloneWksp(const CStringT& cred, const CStringT& name, CStringT sourceWorkspaceID, int typeAndFlags,
                           std::vector<WKSP_Field_Value>& fields, CStringT& workspaceID, int favourite)
{
    return operation("CWapiClient::cloneWksp", Timer::rearm, [&] {
        if (name.empty()) return 0;  // without a message, unlike a new workspace

        // The source goes out as it stands, and the tabs come from it. The room asks for no type and no flag at all.
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "CloneWorkspace");
        body.literal("&xml=<workspace><useWkspID>", sourceWorkspaceID, "</useWkspID>");
        body.encoded("<workspaceName>", name).literal("</workspaceName><type>", typeAndFlags & kTypeBits, "</type>");
        body.literal("<isTemplate>", trueFalse(typeAndFlags & kTemplateBit), "</isTemplate>");
        if (typeAndFlags == 0) body.literal(kRoom);
        if (favourite != 0) body.literal(kFavourite);
        writeDescription(body, fields);
        body.literal("</workspace>");

        CXMLWapiCreateWkspResponse reply;
        if (!post(body, reply)) return 0;
        workspaceID = std::move(reply.workspaceID);
        return 1;
    });
}
