#include "service/rules/Invitations.h"

#include "service/base/Secret.h"
#include "service/rules/Roles.h"

namespace service::rules {

namespace {

constexpr long long kLife = 30LL * 24 * 60 * 60 * 1000;

}  // namespace

store::Invitation newInvitation(const Context& context, const std::string& workspaceID, const std::string& descriptor)
{
    store::Invitation invitation;
    invitation.invitationID = newID("invt");
    invitation.workspaceID = workspaceID;
    invitation.descriptor = descriptor;
    invitation.status = store::invitationstatus::kPending;
    invitation.inviteAs = kSpaceMember;
    invitation.ownerID = context.session.userID;
    invitation.created = context.now;
    invitation.modified = context.now;
    invitation.statusChanged = context.now;
    invitation.expires = context.now + kLife;
    return invitation;
}

}  // namespace service::rules
