#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/Invitations.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/store/Members.h"
#include "service/store/Users.h"

namespace service::commands {

namespace {

constexpr std::size_t kMaxInvitations = 1000;
constexpr const char* kByMail = "EMAIL";
constexpr long long kInviteUser = 1;     // somebody whom the service knows
constexpr long long kInviteAddress = 2;  // nobody yet: an address

// A host sends the role as a number: 2 is an administrator.
std::string roleToInviteAs(const xml::Node& invite)
{
    constexpr long long kAdministrator = 2;
    return numberField(invite, "inviteAs", 0, INT32_MAX, 1) == kAdministrator ? rules::kSpaceAdmin
                                                                              : rules::kSpaceMember;
}

store::Invitation invitationOf(const Context& context, const xml::Node& invite)
{
    const std::string workspaceID = requiredID(invite, "workspaceID");
    store::Invitation invitation = rules::newInvitation(context, workspaceID, requiredID(invite, "user"));
    invitation.inviteAs = roleToInviteAs(invite);
    invitation.method = invite.textAt("inviteMethod");
    invitation.providerID = invite.textAt("isproviderID");
    invitation.message = invite.textAt("userDefinedMessage");
    return invitation;
}

// Fills in whom the descriptor means; refused for a name that is neither a user nor an address.
void findInvitee(const Context& context, store::Invitation& invitation)
{
    const std::optional<store::User> user = store::findUserByDescriptor(context.database, invitation.descriptor);
    invitation.inviteType = user ? kInviteUser : kInviteAddress;
    if (user) {
        invitation.userID = user->userID;
        invitation.userName = user->userName;
        invitation.userEmail = user->email;
    } else if (invitation.descriptor.find('@') != std::string::npos) {
        invitation.userEmail = invitation.descriptor;
    } else {
        throw Refusal(exceptionid::kNoSuchObject, "there is no user " + inQuotes(invitation.descriptor));
    }
}

// The state of one invitation in the answer: open from now on, or why there was no need for it, with the role that
// stands. What became of an earlier one is forgotten then.
std::string inviteOne(Context& context, store::Invitation& invitation)
{
    rules::requireAdministrator(context, invitation.workspaceID);
    findInvitee(context, invitation);
    if (!invitation.userID.empty() && store::isMember(context.database, invitation.workspaceID, invitation.userID)) {
        invitation.inviteAs = rules::strongestRole(context, invitation.workspaceID, invitation.userID);
        return "alreadyMember";
    }
    if (const auto open = store::openInvitation(context.database, invitation.workspaceID, invitation.descriptor,
                                                invitation.userID, context.now)) {
        invitation.inviteAs = open->inviteAs;
        invitation.method = open->method;
        invitation.providerID = open->providerID;
        return "alreadyInvited";
    }
    store::deleteInvitationsOf(context.database, invitation.workspaceID, invitation.descriptor, invitation.userID);
    store::insertInvitation(context.database, invitation);
    return invitation.status;
}

void addResult(const xml::Node& invite, const store::Invitation& invitation, const std::string& status,
               xml::Node& results)
{
    xml::Node& result = results.add("invite");
    result.add("workspaceID", invitation.workspaceID);
    result.add("user", invite.textAt("user"));
    result.add("status", status);
    result.add("inviteAs", invitation.inviteAs);
    result.add("inviteMethod", invitation.method);
    result.add("isproviderID", invitation.providerID);
    result.add("userID", invitation.userID);
    result.add("userName", invitation.userName);
    result.add("inviteType", std::to_string(invitation.inviteType));
    const bool sent = status == store::invitationstatus::kPending && invitation.method == kByMail;
    result.add("emailSent", truthText(sent));
    result.add("email", invitation.userEmail);
}

}  // namespace

void bulkSpaceInvite(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "invitations");
    rules::requirePolicy(context, "BulkSpaceInvite");
    if (xml.children.size() > kMaxInvitations) {
        throw Refusal(exceptionid::kLimitExceeded, "more than " + std::to_string(kMaxInvitations) + " invitations");
    }
    xml::Node& results = reply.payload.add("invitationResults");
    for (const xml::Node& invite : xml.children) {
        expectElement(invite, "invite");
        store::Invitation invitation = invitationOf(context, invite);
        const std::string status = inviteOne(context, invitation);
        addResult(invite, invitation, status, results);
    }
}

void joinSpace(Context& context, const xml::Node& xml, Reply& /*reply*/)
{
    expectElement(xml, "invite");
    const std::string workspaceID = requiredID(xml, "workspaceID");
    const std::string action = requiredID(xml, "action");
    if (action != "accept" && action != "reject") {
        throw Refusal(exceptionid::kBadRequest, "the action must be accept or reject, not " + inQuotes(action));
    }
    const std::optional<store::Invitation> invitation =
        store::pendingInvitation(context.database, workspaceID, context.session.userID, context.now);
    if (!invitation) {
        throw Refusal(exceptionid::kNoSuchObject, "there is no open invitation of yours to " + inQuotes(workspaceID));
    }
    rules::requireSessionFor(context, workspaceID);
    const bool accepted = action == "accept";
    if (accepted) {
        rules::requirePolicy(context, "JoinSpace");
        rules::letIn(context, workspaceID, context.session.userID, invitation->inviteAs);
    }
    store::setInvitationStatus(context.database, invitation->invitationID,
                               accepted ? store::invitationstatus::kAccepted : store::invitationstatus::kRejected,
                               context.now);
}

void leaveSpace(Context& context, const xml::Node& xml, Reply& /*reply*/)
{
    expectElement(xml, "workspaceID");
    const std::string workspaceID(trimmed(xml.text));
    rules::requireMember(context, workspaceID);
    rules::takeOut(context, workspaceID, context.session.userID);
}

void changeRole(Context& context, const xml::Node& xml, Reply& /*reply*/)
{
    expectElement(xml, "code");
    const std::string workspaceID = requiredID(xml, "workspaceID");
    const std::string roleID = requiredID(xml, "toRoleID");
    const std::string userID = requiredID(xml, "userID");
    rules::requireAdministrator(context, workspaceID);
    if (roleID != rules::kSpaceAdmin && roleID != rules::kSpaceMember) {
        throw Refusal(exceptionid::kBadRequest, "nobody can be given the role " + inQuotes(roleID));
    }
    if (!store::isMember(context.database, workspaceID, userID)) {
        throw Refusal(exceptionid::kNoSuchObject, "the workspace has no member " + inQuotes(userID));
    }
    const bool lastOne =
        rules::isAdministrator(context, workspaceID, userID) && rules::administratorCount(context, workspaceID) == 1;
    if (lastOne && !rules::isAdministratorRole(roleID)) {
        throw Refusal(exceptionid::kConflict, "the last administrator must stay one");
    }
    store::clearRoles(context.database, workspaceID, userID);
    rules::letIn(context, workspaceID, userID, roleID);
}

}  // namespace service::commands
