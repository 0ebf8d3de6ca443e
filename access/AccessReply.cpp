#include "access/AccessReply.h"

#include <utility>

namespace wapi {

namespace {

enum ListID : unsigned { kSet = 12, kGet = 13 };

}  // namespace

SpaceAccessPart::SpaceAccessPart(CXMLWapiCommonResponse& reply, PathPiece at)
{
    reply.select(at, {{"set-workspace/access/", &access.setWorkspaceAccess},
                      {"set-workspace/reason/", &access.setWorkspaceReason},
                      {"delete-workspace/access/", &access.deleteWorkspaceAccess},
                      {"delete-workspace/reason/", &access.deleteWorkspaceReason},
                      {"BulkSpaceInvite/access/", &access.bulkSpaceInviteAccess},
                      {"BulkSpaceInvite/reason/", &access.bulkSpaceInviteReason},
                      {"create-chatRoom/access/", &access.createChatRoomAccess},
                      {"create-chatRoom/reason/", &access.createChatRoomReason},
                      {"create-doc/access/", &access.createDocAccess},
                      {"create-doc/reason/", &access.createDocReason},
                      {"JoinSpace/access/", &access.joinSpaceAccess},
                      {"JoinSpace/reason/", &access.joinSpaceReason}});
}

RoleItemPart::RoleItemPart(CXMLWapiCommonResponse& reply, PathPiece at)
{
    reply.add(*this);
    struct List {
        unsigned id;
        PathPiece path;
    };
    for (const auto& [id, list] : {List{kSet, "set/"}, List{kGet, "get/"}})
        reply.listen(id, at, list,
                     {{"cmd/", &item_.cmd},
                      {"id/", &item_.id},
                      {"type/", &type_},
                      {"access/", &item_.access},
                      {"reason/", &reason_}});
}

void RoleItemPart::onEnd(unsigned id)
{
    if (id != kSet && id != kGet) return;
    roles.push_back(std::exchange(item_, {}));
    type_.clear();
    reason_.clear();
}

}  // namespace wapi
