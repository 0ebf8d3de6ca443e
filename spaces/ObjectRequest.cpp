// The request that fetches one object whole.
#include "client/Operation.h"

using namespace wapi;

namespace {

struct ObjectRequest {
    std::string_view type;
    std::string_view select;
};

constexpr std::string_view kWorkspaceFields =
    "workspaceID:workspaceName:userID:userName:type:isTemplate:namespaceID:namespaceName:createTime:lastModifiedTime:"
    "groupName:groupID:ext/KZN/description:members/member:tabs/tab";

}  // namespace

CStringT CWapiClient::buildObjectRequest(const CStringT& cred, OBJ_TYPE type, CStringT id)
{
    const auto [word, select] = [type]() -> ObjectRequest {
        switch (type) {
        case OBJ_TYPE::user: return {"user", "user"};
        case OBJ_TYPE::workspace: return {"workspace", kWorkspaceFields};
        case OBJ_TYPE::group: return {"group", "group"};
        case OBJ_TYPE::thing: return {"thing", "thing"};
        case OBJ_TYPE::org: return {"org", "org"};
        case OBJ_TYPE::sessionInfo: return {"sessionInfo", "sessionInfo"};
        }
        return {};
    }();
    if (word.empty()) return {};

    FormBody body;
    return body.encoded("cmd=", "get")
        .encoded("&cred=", cred)
        .encoded("&type=", word)
        .encoded("&id=", id)
        .encoded("&select=", select)
        .taken();
}
