#include "service/seed/Filling.h"

#include <vector>

#include "service/base/Secret.h"
#include "service/rules/FixedTabs.h"
#include "service/rules/Invitations.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/store/Apps.h"
#include "service/store/Database.h"
#include "service/store/Libraries.h"
#include "service/store/Members.h"
#include "service/store/Organisations.h"
#include "service/store/Users.h"

namespace service::seed {

namespace {

// Reads the name first, so that whatever is wrong can be said of what it is wrong with.
std::string nameOf(JsonObject& object)
{
    std::string name = object.text("name");
    object.setName(object.name() + " \"" + name + '"');
    return name;
}

std::vector<std::string> textsOf(const Json& list, const std::string& where)
{
    std::vector<std::string> texts;
    for (const Json& each : list) {
        if (!each.is_string()) throw JsonError(where + " has to be a list of texts");
        texts.push_back(each.get<std::string>());
    }
    return texts;
}

long long tabType(const std::string& shows, const std::string& where)
{
    if (shows.empty()) return rules::kPlainTab;
    if (shows == "discussion") return rules::kDiscussionTab;
    if (shows == "files") return rules::kFilesTab;
    throw JsonError(where + R"(: "shows" is "discussion" or "files", or is not there)");
}

std::vector<store::AppTab> tabsOf(const Json& list)
{
    std::vector<store::AppTab> tabs;
    for (const Json& each : list) {
        JsonObject object(each, "the tab");
        const std::string name = nameOf(object);
        const long long type = tabType(object.text("shows", {}), object.name());
        object.end();
        tabs.push_back({name, type, static_cast<long long>(tabs.size() + 1)});
    }
    return tabs;
}

std::string userIDOf(store::Database& database, const std::string& name, const std::string& where)
{
    std::optional<std::string> userID = store::userIDByName(database, name);
    if (!userID) throw JsonError(where + ": there is no user \"" + name + '"');
    return *userID;
}

store::Organisation organisationOf(store::Database& database, const std::string& orgID, const std::string& where)
{
    std::optional<store::Organisation> organisation = store::findOrganisation(database, orgID);
    if (!organisation) throw JsonError(where + ": there is no organisation \"" + orgID + '"');
    return *organisation;
}

// What the data file refuses, most likely a name that is there already, is said of the part that it comes from.
template <class Work>
void inserted(const std::string& where, Work work)
{
    try {
        work();
    } catch (const JsonError&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw JsonError(where + ": " + error.what());
    }
}

}  // namespace

Context Filling::contextOf(const std::string& userName, const std::string& where) const
{
    Context context{database_, settings_, settings_.clock.now(), {}, nullptr};
    context.session.userID = userIDOf(database_, userName, where);
    context.session.userName = userName;
    context.session.orgID = store::findUser(database_, context.session.userID)->orgID;
    return context;
}

void Filling::organisation(const Json& json) const
{
    JsonObject object(json, "the organisation");
    const std::string name = nameOf(object);
    const std::string id = object.text("id");
    JsonObject space(object.object("namespace"), object.name() + ", \"namespace\"");
    const store::Organisation organisation{id,
                                           name,
                                           space.text("id", "ns-" + id),
                                           space.text("name", name),
                                           object.text("changePasswordURL", {}),
                                           object.text("forgottenPasswordURL", {}),
                                           object.text("siteURL", {}),
                                           object.text("helpURL", {}),
                                           object.text("whiteList", {})};
    space.end();
    inserted(object.name(), [&] {
        store::insertOrganisation(database_, organisation);
        for (const std::string& domain : textsOf(object.list("domains"), object.name() + ", \"domains\"")) {
            store::insertDomain(database_, id, domain);
        }
        const Json& switches = object.object("policy");
        JsonObject policy(switches, object.name() + ", \"policy\"");
        for (const auto& [feature, allowed] : switches.items()) {
            store::setPolicy(database_, id, feature, policy.truth(feature.c_str(), false));
        }
    });
    object.end();
}

void Filling::user(const Json& json) const
{
    JsonObject object(json, "the user");
    store::User user;
    user.userName = nameOf(object);
    user.userID = object.text("id", "user-" + user.userName);
    user.orgID = object.text("organisation");
    const store::Organisation organisation = organisationOf(database_, user.orgID, object.name());
    user.email = object.text("email");
    user.firstName = object.text("firstName", {});
    user.middleName = object.text("middleName", {});
    user.lastName = object.text("lastName", {});
    user.hostName = object.text("host", {});
    user.websiteURL = object.text("website", {});
    const std::string password = object.text("password");
    const std::string token = object.text("token", {});
    inserted(object.name(), [&] {
        // Who has no token cannot sign in with one: the hash is that of a secret that nobody knows.
        store::insertUser(database_, user,
                          {hashes_.of(password), token.empty() ? hashSecret(newCredential()) : hashes_.of(token)});
        for (const Json& each : object.list("providers")) {
            JsonObject provider(each, object.name() + ", a provider");
            const std::string id = provider.text("id");
            store::insertProvider(
                database_, user.userID,
                {id, provider.text("name", id), provider.text("user", user.userName), organisation.namespaceID});
            provider.end();
        }
    });
    object.end();
}

void Filling::library(const Json& json) const
{
    JsonObject object(json, "the library");
    store::Library library;
    library.name = nameOf(object);
    library.libraryID = object.text("id");
    const Context owner = contextOf(object.text("owner"), object.name());
    library.ownerID = owner.session.userID;
    library.orgID = owner.session.orgID;
    if (object.truth("ofOrganisation", false)) library.type = store::kOrganisationLibrary;
    inserted(object.name(), [&] { store::insertLibrary(database_, library); });
    for (const Json& each : object.list("applications")) application(library.libraryID, each);
    object.end();
}

void Filling::application(const std::string& libraryID, const Json& json) const
{
    JsonObject object(json, "the application");
    store::App app;
    app.name = nameOf(object);
    app.appID = object.text("id", newID("widget"));
    app.libraryID = libraryID;
    app.description = object.text("description", {});
    app.topLevel = object.truth("topLevel", false);
    app.currentDir = object.text("folder", "/apps/" + app.appID);
    app.status = object.text("status", "active");
    app.package = object.text("package", app.appID);
    app.appType = object.text("type", {});
    JsonObject identity(object.object("identity"), object.name() + ", \"identity\"");
    app.identityName = identity.text("name", {});
    app.identityDescription = identity.text("description", {});
    identity.end();
    app.tabs = tabsOf(object.list("tabs"));
    object.end();
    inserted(object.name(), [&] { store::insertApp(database_, app); });
}

void Filling::workspace(const Json& json) const
{
    JsonObject object(json, "the workspace");
    rules::NewSpace space;
    space.name = nameOf(object);
    Context creator = contextOf(object.text("creator"), object.name());
    const std::string libraryID = object.text("templateIn", {});
    space.isTemplate = !libraryID.empty();
    space.chatRoomName = object.text("chatRoom", {});
    const std::string description = object.text("description", {});
    if (!description.empty()) space.description = {description};
    inserted(object.name(), [&] {
        const std::string workspaceID = rules::makeSpace(creator, space);
        for (const store::AppTab& tab : tabsOf(object.list("tabs"))) {
            rules::makeTab(creator, workspaceID, tab.name, tab.type, tab.order);
        }
        members(creator, workspaceID, object);
        invitations(creator, workspaceID, object);
        if (space.isTemplate) store::insertTemplate(database_, libraryID, workspaceID);
    });
    object.end();
}

void Filling::members(Context& creator, const std::string& workspaceID, JsonObject& workspace) const
{
    for (const Json& each : workspace.list("members")) {
        JsonObject member(each, workspace.name() + ", a member");
        const std::string userID = userIDOf(database_, member.text("user"), workspace.name());
        const std::string role = member.text("role", "member");
        if (role != "member" && role != "administrator") {
            throw JsonError(member.name() + R"(: "role" is "member" or "administrator")");
        }
        member.end();
        store::insertMember(database_, workspaceID, userID, creator.now);
        store::addRole(database_, workspaceID, userID, role == "member" ? rules::kSpaceMember : rules::kSpaceAdmin);
    }
}

void Filling::invitations(Context& creator, const std::string& workspaceID, JsonObject& workspace) const
{
    for (const std::string& name : textsOf(workspace.list("invited"), workspace.name() + ", \"invited\"")) {
        const std::string userID = userIDOf(database_, name, workspace.name());
        store::Invitation invitation = rules::newInvitation(creator, workspaceID, userID);
        invitation.userID = userID;
        invitation.inviteType = 1;
        invitation.method = "IM";
        store::insertInvitation(database_, invitation);
    }
}

}  // namespace service::seed
