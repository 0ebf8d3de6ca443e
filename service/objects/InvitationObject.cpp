#include "service/base/Clock.h"
#include "service/objects/ObjectTypes.h"
#include "service/store/Invitations.h"

namespace service::objects {

namespace {

xml::Node invitationNode(const store::Invitation& item)
{
    xml::Node invitation("spaceInvite");
    invitation.add("spaceInviteID", item.invitationID);
    invitation.add("expires_d", timeText(item.expires));
    invitation.add("lastModifiedTime", timeText(item.modified));
    invitation.add("status", item.status);
    invitation.add("workspaceID", item.workspaceID);
    invitation.add("workspaceName", item.workspaceName);
    invitation.add("createTime", timeText(item.created));
    invitation.add("statusChanged_d", timeText(item.statusChanged));
    invitation.add("userDescriptor", item.descriptor);
    invitation.add("userID", item.userID);
    invitation.add("userName", item.userName);
    invitation.add("ownerID", item.ownerID);
    invitation.add("ownerName", item.ownerName);
    invitation.add("inviteType", std::to_string(item.inviteType));
    invitation.add("inviteAs", item.inviteAs);
    invitation.add("inviteMethod", item.method);
    invitation.add("userDefinedMessage", item.message);
    // An invitation sent to an address is found by the invitee's ID and name too.
    for (const std::string* alias : {&item.userID, &item.userName, &item.userEmail}) {
        if (!alias->empty()) invitation.addAlias("userDescriptor", *alias);
    }
    return invitation;
}

std::vector<xml::Node> listInvitations(const Context& context, const script::Selection& /*wanted*/)
{
    std::vector<xml::Node> nodes;
    for (const store::Invitation& item :
         store::invitationsVisibleTo(context.database, context.session.userID, context.now)) {
        nodes.push_back(invitationNode(item));
    }
    return nodes;
}

// Asked for by its ID, an invitation tells what became of it.
std::optional<xml::Node> findInvitation(const Context& context, const std::string& id,
                                        const script::Selection& /*wanted*/)
{
    const std::optional<store::Invitation> item =
        store::findInvitation(context.database, id, context.session.userID, context.now);
    if (!item) return std::nullopt;
    return invitationNode(*item);
}

}  // namespace

ObjectType invitationType()
{
    return {"spaceInvite", {"invt", "spaceInvite"}, listInvitations, findInvitation};
}

}  // namespace service::objects
