#include <array>

#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Handlers.h"
#include "service/rules/FixedTabs.h"
#include "service/rules/Libraries.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/script/Query.h"
#include "service/store/Apps.h"
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

// A favourite or the like: a user sees no other's.
void deleteWorkspaceThing(Context& context, const xml::Node& thing)
{
    store::deleteWorkspaceThing(context.database, thing.textAt("thingID"));
}

// A thing is deleted by its owner, or by an administrator of the workspace that it belongs to.
void deleteThing(Context& context, const xml::Node& thing)
{
    const std::string& thingID = thing.textAt("thingID");
    const std::string workspaceID = store::workspaceOfThing(context.database, thingID);
    if (!workspaceID.empty()) rules::requireSessionFor(context, workspaceID);
    if (thing.textAt("userID") != context.session.userID) rules::requireAdministrator(context, workspaceID);
    store::deleteThing(context.database, thingID);
}

void deleteApp(Context& context, const std::string& appID)
{
    for (const store::Library& library :
         store::librariesFor(context.database, context.session.userID, context.session.orgID)) {
        if (!store::libraryHasApp(context.database, library.libraryID, appID)) continue;
        rules::requireWritable(context, library.libraryID);
        return store::deleteApp(context.database, appID);
    }
    throw Refusal(exceptionid::kNoSuchObject, "there is no application " + inQuotes(appID) + " in your libraries");
}

struct Deletion {
    std::string_view element;  // of the object's type
    void (*run)(Context& context, const xml::Node& object);
};

constexpr std::array kDeletions{
    Deletion{"spaceInvite", deleteInvitation},
    Deletion{"workspaceThing", deleteWorkspaceThing},
    Deletion{"thing", deleteThing},
};

}  // namespace

void deleteObjects(Context& context, const http::Form& form, Reply& /*reply*/)
{
    const std::string typeName = form.required("type");
    if (typeName == "tab") return deleteTab(context, form.required("id"));
    if (typeName == "widget") return deleteApp(context, form.required("id"));
    const objects::ObjectType& type = objects::objectType(typeName);
    for (const Deletion& deletion : kDeletions) {
        if (deletion.element != type.element) continue;
        for (const xml::Node& object : namedObjects(context, form, type)) deletion.run(context, object);
        return;
    }
    throw Refusal(exceptionid::kUnknownType, "objects of type " + inQuotes(typeName) + " cannot be deleted");
}

}  // namespace service::commands
