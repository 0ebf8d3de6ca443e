#include "access/SpaceReply.h"

#include <utility>

#include "client/Text.h"

namespace wapi {

namespace {

constexpr int kTemplate = 16;

void keepKind(int& kind, const CStringT& type, const CStringT& isTemplate)
{
    if (type.empty() || isTemplate.empty()) return;
    const int flag = equals(isTemplate, "true") ? kTemplate : 0;
    if (equals(type, "0")) kind = flag;
    if (equals(type, "2")) kind = flag | 2;
    if (equals(type, "3")) kind = flag | 3;
}

}  // namespace

SpacePart::SpacePart(CXMLWapiCommonResponse& reply, PathPiece at) : members_(reply, at), tabs_(reply, at)
{
    reply.select(at, {{"workspace/workspaceID/", &space_.workspaceID},
                      {"workspace/workspaceName/", &space_.workspaceName},
                      {"workspace/type/", &space_.type},
                      {"workspace/isTemplate/", &space_.isTemplate},
                      {"workspace/userID/", &space_.userID},
                      {"workspace/userName/", &space_.userName},
                      {"workspace/namespaceID/", &space_.namespaceID},
                      {"workspace/namespaceName/", &space_.namespaceName},
                      {"workspace/createTime/", &space_.createTime},
                      {"workspace/lastModifiedTime/", &space_.lastModifiedTime},
                      {"workspace/groupName/", &space_.groupName},
                      {"workspace/groupID/", &space_.groupID},
                      {"workspace/ext/KZN/description/text/", &space_.descriptionText},
                      {"workspace/ext/KZN/description/icon/", &space_.descriptionIcon},
                      {"workspace/ext/KZN/discussionTab/", &space_.discussionTab},
                      {"workspace/ext/KZN/filesTab/", &space_.filesTab},
                      {"workspace/ext/KZN/spaceIcon/url/", &space_.spaceIconURL}});
}

void SpacePart::moveTo(space_t& space)
{
    space_.kind = space.kind;
    keepKind(space_.kind, space_.type, space_.isTemplate);
    space_.members = std::exchange(members_.members, {});
    space_.tabs = std::exchange(tabs_.tabs, {});
    space = std::exchange(space_, {});
}

}  // namespace wapi
