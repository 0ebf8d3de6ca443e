#include "access/SpaceListReply.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "access/RoleValue.h"
#include "client/Text.h"

namespace wapi {

namespace {

enum ListID : unsigned { kSpace = 1, kInvitation = 2, kRoleSpace = 15, kRole = 16 };

}  // namespace

SpaceListPart::SpaceListPart(CXMLWapiCommonResponse& reply, std::string_view at)
{
    reply.add(*this);
    reply.listen(kSpace, at, "workspace/",
                 {{"workspaceID/", &space_.workspaceID},
                  {"workspaceName/", &space_.workspaceName},
                  {"userID/", &space_.userID},
                  {"userName/", &space_.userName},
                  {"type/", &space_.type},
                  {"isTemplate/", &space_.isTemplate},
                  {"namespaceID/", &space_.namespaceID},
                  {"ext/KZN/description/text/", &space_.description},
                  {"ext/KZN/spaceIcon/url/", &space_.spaceIconURL}});
}

void SpaceListPart::onEnd(unsigned id)
{
    if (id != kSpace) return;
    space_.status =
        wide("accepted");  // the reply's own status is not asked: the user is a member of all that is listed
    spaces.push_back(std::exchange(space_, {}));
}

InvitationPart::InvitationPart(CXMLWapiCommonResponse& reply, std::string_view at)
{
    reply.add(*this);
    reply.listen(kInvitation, at, "spaceInvite/",
                 {{"spaceInviteID/", &invite_.spaceInviteID},
                  {"expires_d/", &invite_.expires},
                  {"lastModifiedTime/", &invite_.lastModifiedTime},
                  {"status/", &invite_.status},
                  {"workspaceID/", &invite_.workspaceID},
                  {"createTime/", &invite_.createTime},
                  {"statusChanged_d/", &invite_.statusChanged},
                  {"userDescriptor/", &invite_.userDescriptor},
                  {"userName/", &invite_.userName},
                  {"workspaceName/", &invite_.workspaceName},
                  {"ownerID/", &invite_.ownerID},
                  {"ownerName/", &invite_.ownerName},
                  {"inviteType/", &inviteType_},
                  {"inviteAs/", &inviteAs_}});
}

void InvitationPart::onEnd(unsigned id)
{
    if (id != kInvitation) return;
    invite_.SetInviteType(inviteType_);
    invite_.SetInviteAsType(inviteAs_);
    invitations.push_back(std::exchange(invite_, {}));
    inviteType_.clear();
    inviteAs_.clear();
}

SpaceRolePart::SpaceRolePart(CXMLWapiCommonResponse& reply, std::string_view at)
{
    reply.add(*this);
    reply.listen(kRoleSpace, at, "user/workspaces/workspace/", {{"workspaceID/", &workspaceID_}});
    reply.listen(kRole, at, "user/workspaces/workspace/roles/role/",
                 {{"roleID/", &role_.roleID}, {"roleName/", &role_.roleName}});
}

void SpaceRolePart::onEnd(unsigned id)
{
    if (id == kRole) pending_.push_back(std::exchange(role_, {}));
    if (id != kRoleSpace) return;
    roles_.push_back({std::exchange(workspaceID_, {}), roleValue(pending_)});
    pending_.clear();
}

// Sorted rather than hashed: a service that chooses its IDs cannot make them collide. Equal ones keep their order, so
// that the first of them is found.
void SpaceRolePart::assignTo(std::vector<SpaceForList>& spaces)
{
    std::ranges::stable_sort(roles_, {}, &SpaceRole::workspaceID);
    for (SpaceForList& space : spaces) {
        const auto found = std::ranges::lower_bound(roles_, space.workspaceID, {}, &SpaceRole::workspaceID);
        if (found != roles_.end() && found->workspaceID == space.workspaceID) space.role = found->role;
    }
}

void list_space_library_resp::moveInto(std::vector<SpaceForList>& listed, std::vector<CZelSpaceInvite>& invited)
{
    roles.assignTo(spaces.spaces);
    listed.insert(listed.end(), std::make_move_iterator(spaces.spaces.begin()),
                  std::make_move_iterator(spaces.spaces.end()));
    invited = std::move(invitations.invitations);
}

}  // namespace wapi
