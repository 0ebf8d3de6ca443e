#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/base/Text.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/FixedTabs.h"
#include "service/rules/Libraries.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/store/Apps.h"
#include "service/store/Libraries.h"
#include "service/store/Tabs.h"

namespace service::commands {

namespace {

constexpr long long kMostType = 15;
constexpr const char* kAppStatus = "active";

store::App appNamed(const Context& context, const std::string& name)
{
    for (const store::Library& library :
         store::librariesFor(context.database, context.session.userID, context.session.orgID)) {
        for (store::App& app : store::appsOf(context.database, library.libraryID)) {
            if (app.name == name) return std::move(app);
        }
    }
    throw Refusal(exceptionid::kNoSuchObject, "there is no application " + inQuotes(name) + " in your libraries");
}

// Without an application a workspace begins with what it would have had if it had been made empty.
std::vector<store::AppTab> blankTabs(const rules::NewSpace& space)
{
    if (space.chatRoomName.empty()) return {{"default", rules::kPlainTab, 1}};
    return {{"Discussions", rules::kDiscussionTab, 1}, {"Files", rules::kFilesTab, 2}};
}

}  // namespace

void createWorkspaceUsingApp(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "workspace");
    rules::NewSpace space;
    space.name = requiredName(xml, "workspaceName");
    space.type = numberField(xml, "type", 0, kMostType, 0);
    space.favourite = truthField(xml, "isFavourite");
    space.chatRoomName = xml.textAt("chatRoomName");
    space.description = descriptionTexts(xml);
    std::erase(space.description, std::string());

    const xml::Node* const appName = xml.child("appName");
    const std::vector<store::AppTab> tabs =
        appName == nullptr ? blankTabs(space) : appNamed(context, appName->text).tabs;
    const std::string workspaceID = rules::makeSpace(context, space);
    for (const store::AppTab& tab : tabs) rules::makeTab(context, workspaceID, tab.name, tab.type, tab.order);
    reply.payload.add("workspace").add("workspaceID", workspaceID);
}

void saveWorkspaceAsApp(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "workspace");
    const std::string workspaceID = requiredID(xml, "workspaceID");
    rules::requireAdministrator(context, workspaceID);
    const store::Library library = rules::requireWritable(context, requiredID(xml, "groupID"));

    store::App app;
    app.appID = newID("widget");
    app.libraryID = library.libraryID;
    app.name = requiredName(xml, "appName");
    app.description = xml.textAt("description");
    app.status = kAppStatus;
    if (store::hasApp(context.database, library.libraryID, app.name)) {
        throw Refusal(exceptionid::kConflict, "the library has an application " + inQuotes(app.name) + " already");
    }
    for (const store::Tab& tab : store::tabsOf(context.database, workspaceID)) {
        app.tabs.push_back({tab.name, tab.type, tab.order});
    }
    store::insertApp(context.database, app);
    reply.payload.add("widget").add("widgetID", app.appID);
}

}  // namespace service::commands
