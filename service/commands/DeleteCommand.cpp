#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Handlers.h"
#include "service/rules/FixedTabs.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/script/Query.h"
#include "service/store/Database.h"
#include "service/store/Invitations.h"
#include "service/store/Tabs.h"
#include "service/store/Things.h"

namespace service::commands {

namespace {

void deleteTab(Context& context, const std::string& tabID)
{
    if (rules::isFixedTab(tabID)) {
        throw Refusal(exceptionid::kAccessDenied, "the discussion tab and the files tab cannot be deleted");
    }
    const store::Tab tab = rules::requireTab(context, tabID);
    store::deleteTab(context.database, tab);
    store::touchWorkspace(context.database, tab.workspaceID, context.now);
}

// The objects that an id or a condition names, and that the caller can see; refused where there are none.
std::vector<xml::Node> namedObjects(const Context& context, const http::Form& form, const objects::ObjectType& type)
{
    script::Query query{type, form.text("id"), {}};
    if (form.has("where")) query.where = script::Condition::read(form.xml("where"), context, type.element);
    if (query.id.empty() && !query.where) throw Refusal(exceptionid::kBadRequest, "the request names no object");
    std::vector<xml::Node> nodes = script::answer(context, query);
    if (nodes.empty()) throw Refusal(exceptionid::kNoSuchObject, "there is no such " + std::string(type.element));
    return nodes;
}

// An invitation is withdrawn by who sent it, or by an administrator of its workspace.
void deleteInvitation(Context& context, const xml::Node& invitation)
{
    rules::requireSessionFor(context, invitation.textAt("workspaceID"));
    if (invitation.textAt("ownerID") != context.session.userID) {
        rules::requireAdministrator(context, invitation.textAt("workspaceID"));
    }
    if (invitation.textAt("status") == store::invitationstatus::kAccepted) {
        throw Refusal(exceptionid::kConflict, "the invitation was accepted: it cannot be withdrawn any more");
    }
    store::deleteInvitation(context.database, invitation.textAt("spaceInviteID"));
}

}  // namespace

void deleteObjects(Context& context, const http::Form& form, Reply& /*reply*/)
{
    const std::string typeName = form.required("type");
    if (typeName == "tab") return deleteTab(context, form.required("id"));
    const objects::ObjectType& type = objects::objectType(typeName);
    if (type.element == "spaceInvite") {
        for (const xml::Node& node : namedObjects(context, form, type)) deleteInvitation(context, node);
    } else if (type.element == "workspaceThing") {
        for (const xml::Node& node : namedObjects(context, form, type)) {
            store::deleteWorkspaceThing(context.database, node.textAt("thingID"));
        }
    } else {
        throw Refusal(exceptionid::kUnknownType, "objects of type " + quoted(typeName) + " cannot be deleted");
    }
}

}  // namespace service::commands
