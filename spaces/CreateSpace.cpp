// New workspaces.
#include "client/Operation.h"

using namespace wapi;

namespace {

class CXMLWapiCreateWkspResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiCreateWkspResponse() { select(kDirectReply, {{"workspace/workspaceID/", &workspaceID}}); }

    CStringT workspaceID;
};

constexpr int kDescription = 0;

constexpr std::string_view kRoomAndTabs =
    "<chatRoomName>Group Discussion</chatRoomName>"
    "<tabs><tab><tabName>Discussions</tabName><tabType>1</tabType><tabOrder>1</tabOrder></tab>"
    "<tab><tabName>Files</tabName><tabType>2</tabType><tabOrder>2</tabOrder></tab></tabs>";
constexpr std::string_view kPlainTab =
    "<tabs><tab><tabName>default</tabName><tabType>0</tabType><tabOrder>1</tabOrder></tab></tabs>";

// The wrapper goes out even where nothing stands in it.
void writeDescription(FormBody& body, const std::vector<CWapiClient::WKSP_Field_Value>& fields)
{
    body.literal("<ext><KZN><description>");
    for (const auto& [field, value] : fields)
        if (field == kDescription) body.encoded("<text><![CDATA[", value).literal("]]></text>");
    body.literal("</description></KZN></ext>");
}

}  // namespace

int CWapiClient::createSpace(const CStringT& cred, const CStringT& name, std::vector<WKSP_Field_Value>& fields,
                             CStringT& workspaceID, int type, int favourite)
{
    return operation("CWapiClient::createSpace", Timer::rearm, [&] {
        lastMessage.clear();
        if (name.empty()) {
            lastMessage.reason = wide("workspace name can't be empty.");
            return 0;
        }

        // Only the pieces that a host gives are encoded, not the XML around them.
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "AddTabs");
        body.encoded("&xml=<workspace><workspaceName>", name).literal("</workspaceName><isTemplate>false</isTemplate>");
        body.literal("<type>", type, "</type>", type == 0 ? kRoomAndTabs : kPlainTab);
        if (favourite != 0) body.literal("<isFavourite>true</isFavourite>");
        writeDescription(body, fields);
        body.literal("</workspace>");

        CXMLWapiCreateWkspResponse reply;
        if (!post(body, reply)) return 0;
        workspaceID = std::move(reply.workspaceID);
        return 1;
    });
}
