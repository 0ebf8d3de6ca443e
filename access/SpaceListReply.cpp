#include "access/SpaceListReply.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "access/RoleValue.h"
#include "client/Text.h"

namespace wapi {

namespace {

enum ListID : unsigned { kSpace = 1, kInvitation = 2, kRoleSpace = 15, kRole = 16 };

}  // namespace

SpaceListPart::SpaceListPart(CXMLWapiCommonResponse& reply, PathPiece at)
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
    spaces.add(std::exchange(space_, {}));
}

InvitationPart::InvitationPart(CXMLWapiCommonResponse& reply, PathPiece at)
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

SpaceRolePart::SpaceRolePart(CXMLWapiCommonResponse& reply, PathPiece at)
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
    roles_.add({std::exchange(workspaceID_, {}), roleValue(pending_)});
    pending_.clear();
}

SpaceRolePart::Entry::Entry(const CStringT& workspaceID, int ofRole) noexcept : id(&workspaceID), role(ofRole)
{
    constexpr std::size_t kUnits = sizeof end / sizeof(CStringT::value_type);
    const std::size_t count = std::min(kUnits, workspaceID.size());
    std::memcpy(&end, workspaceID.data() + workspaceID.size() - count, count * sizeof(CStringT::value_type));
}

std::weak_ordering SpaceRolePart::Entry::operator<=>(const Entry& other) const noexcept
{
    return end != other.end ? end <=> other.end : *id <=> *other.id;
}

// Sorted rather than hashed: a service that chooses its IDs cannot make them collide. Equal ones keep their order, so
// that the first of them is found.
void SpaceRolePart::makeReady()
{
    entries_.reserve(roles_.size());
    roles_.forEach([this](const SpaceRole& told) { entries_.emplace_back(told.workspaceID, told.role); });
    std::ranges::stable_sort(entries_);
}

void SpaceRolePart::assignTo(std::span<SpaceForList> spaces) const noexcept
{
    for (SpaceForList& space : spaces) {
        const Entry wanted(space.workspaceID);
        const auto found = std::ranges::lower_bound(entries_, wanted);
        if (found != entries_.end() && *found == wanted) space.role = found->role;
    }
}

void list_space_library_resp::moveInto(std::vector<SpaceForList>& listed, std::vector<CZelSpaceInvite>& invited)
{
    const std::size_t before = listed.size();
    roles.makeReady();
    spaces.spaces.appendTo(listed);
    roles.assignTo(std::span(listed).subspan(before));
    invited = std::move(invitations.invitations);
}

}  // namespace wapi
