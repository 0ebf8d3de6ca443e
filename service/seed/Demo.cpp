#include "service/seed/Demo.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "service/base/Clock.h"
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

constexpr const char* kOrg = "org-nordwind";
constexpr const char* kNamespace = "ns-nordwind";

struct Person {
    const char* name;
    const char* firstName;
    const char* middleName;
    const char* lastName;
};

constexpr std::array kPeople{
    Person{"anna", "Anna", "Maria", "Lindqvist"},
    Person{"ben", "Ben", "", "Okafor"},
    Person{"clara", "Clara", "Sofie", "Brandt"},
    Person{"dmitri", "Dmitri", "", "Volkov"},
};

// What the organisation lets its people do. Voice and video with strangers is off, so that a refusal can be seen.
constexpr std::array kAllowed{"AutomaticUpdates",
                              "PremiumServices",
                              "SecureCollaboration",
                              "IMInt",
                              "IMExt",
                              "LocalArchive",
                              "VoIPInt",
                              "VideoInt",
                              "DesktopShareInt",
                              "DesktopShareExt",
                              "RemoteControlInt",
                              "FileTransferInt",
                              "FileTransferExt",
                              "FileXferVirusScan",
                              "HasSpaces",
                              "create-workspace",
                              "BulkSpaceInvite",
                              "create-chatRoom",
                              "create-doc",
                              "JoinSpace"};
constexpr std::array kForbidden{"DisableIMCatchInt", "DisableIMCatchExt", "VoIPExt", "VideoExt", "RemoteControlExt"};

std::string userID(const std::string& name)
{
    return "user-" + name;
}

void addOrganisation(store::Database& database)
{
    store::insertOrganisation(
        database, {kOrg, "Nordwind Design", kNamespace, "nordwind", "http://intranet.nordwind.example/password/change",
                   "http://intranet.nordwind.example/password/forgotten", "http://intranet.nordwind.example/site",
                   "http://intranet.nordwind.example/help", "nordwind.example"});
    store::insertDomain(database, kOrg, "nordwind.example");
    store::insertDomain(database, kOrg, "studio.nordwind.example");
    for (const char* const feature : kAllowed) store::setPolicy(database, kOrg, feature, true);
    for (const char* const feature : kForbidden) store::setPolicy(database, kOrg, feature, false);
}

void addPerson(store::Database& database, const Person& person)
{
    const std::string name = person.name;
    store::User user;
    user.userID = userID(name);
    user.orgID = kOrg;
    user.userName = name;
    user.email = name + "@nordwind.example";
    user.firstName = person.firstName;
    user.middleName = person.middleName;
    user.lastName = person.lastName;
    user.hostName = name + "-desk";
    user.websiteURL = "http://people.nordwind.example/" + name;
    store::insertUser(database, user, {hashSecret(name + "-demo-1"), hashSecret(name + "-token-1")});
    store::insertProvider(database, user.userID, {"isp-nordwind", "Nordwind Messenger", name, kNamespace});
}

// Acts as one of the people, through the same rules as a request.
Context contextOf(store::Database& database, const Settings& settings, const std::string& name)
{
    Context context{database, settings, nowMs(), {}, nullptr};
    context.session.userID = userID(name);
    context.session.userName = name;
    context.session.orgID = kOrg;
    return context;
}

std::string addSpace(Context& context, const std::string& name, const std::string& description)
{
    rules::NewSpace space;
    space.name = name;
    space.chatRoomName = "Group Discussion";
    space.description = {description};
    std::string workspaceID = rules::makeSpace(context, space);
    rules::makeTab(context, workspaceID, "Discussions", rules::kDiscussionTab, 1);
    rules::makeTab(context, workspaceID, "Files", rules::kFilesTab, 2);
    return workspaceID;
}

void addMember(Context& context, const std::string& workspaceID, const std::string& name, const char* roleID)
{
    store::insertMember(context.database, workspaceID, userID(name), context.now);
    store::addRole(context.database, workspaceID, userID(name), roleID);
}

void addInvitation(Context& context, const std::string& workspaceID, const std::string& name)
{
    store::Invitation invitation = rules::newInvitation(context, workspaceID, userID(name));
    invitation.userID = userID(name);
    invitation.inviteType = 1;
    invitation.method = "IM";
    store::insertInvitation(context.database, invitation);
}

void addApp(store::Database& database, const std::string& libraryID, const std::string& name, bool topLevel,
            std::vector<store::AppTab> tabs)
{
    store::App app;
    app.appID = newID("widget");
    app.libraryID = libraryID;
    app.name = name;
    app.description = name + " as Nordwind uses it";
    app.topLevel = topLevel;
    app.currentDir = "/apps/" + app.appID;
    app.status = "active";
    app.package = "nordwind." + app.appID;
    app.appType = topLevel ? "standalone" : "";
    app.identityName = topLevel ? name : "";
    app.identityDescription = topLevel ? "Runs beside the workspaces" : "";
    app.tabs = std::move(tabs);
    store::insertApp(database, app);
}

// The office's library belongs to anna; everybody has one of their own.
void addLibraries(Context& anna)
{
    store::insertLibrary(anna.database,
                         {"lib-nordwind", kOrg, userID("anna"), "Nordwind library", store::kOrganisationLibrary});
    for (const Person& person : kPeople) {
        const std::string name = person.name;
        store::insertLibrary(anna.database, {"lib-" + name, kOrg, userID(name),
                                             std::string(person.firstName) + "'s library", store::kPersonalLibrary});
    }
    addApp(
        anna.database, "lib-nordwind", "Project", false,
        {{"Discussions", rules::kDiscussionTab, 1}, {"Files", rules::kFilesTab, 2}, {"Schedule", rules::kPlainTab, 3}});
    addApp(anna.database, "lib-nordwind", "Time sheet", true, {{"Hours", rules::kPlainTab, 1}});
}

void addTemplate(Context& context)
{
    rules::NewSpace space;
    space.name = "Client project";
    space.isTemplate = true;
    space.description = {"What every project for a client begins with"};
    const std::string workspaceID = rules::makeSpace(context, space);
    rules::makeTab(context, workspaceID, "Brief", rules::kPlainTab, 1);
    store::insertTemplate(context.database, "lib-nordwind", workspaceID);
}

}  // namespace

void fillDemo(store::Database& database)
{
    addOrganisation(database);
    for (const Person& person : kPeople) addPerson(database, person);

    const Settings settings;
    Context anna = contextOf(database, settings, "anna");
    const std::string autumn = addSpace(anna, "Autumn catalogue", "Layout and texts of the autumn catalogue");
    addMember(anna, autumn, "ben", rules::kSpaceAdmin);
    addMember(anna, autumn, "clara", rules::kSpaceMember);
    const std::string stand = addSpace(anna, "Messestand Köln", "Plans and suppliers for the stand in Cologne");
    addMember(anna, stand, "dmitri", rules::kSpaceMember);
    addInvitation(anna, stand, "clara");

    Context ben = contextOf(database, settings, "ben");
    const std::string archive = addSpace(ben, "Photo archive", "All pictures since 2015");
    addMember(ben, archive, "anna", rules::kSpaceMember);
    addInvitation(ben, archive, "dmitri");
    addLibraries(anna);
    Context dmitri = contextOf(database, settings, "dmitri");
    addTemplate(dmitri);
}

}  // namespace service::seed
