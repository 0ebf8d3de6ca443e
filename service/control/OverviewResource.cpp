#include "service/control/Handlers.h"
#include "service/store/Apps.h"
#include "service/store/Database.h"
#include "service/store/Libraries.h"
#include "service/store/Members.h"
#include "service/store/Tabs.h"

namespace service::control {

namespace {

constexpr int kMostOfAKind = 1000;  // of each kind: what people can look at

Json usersOf(store::Database& database)
{
    Json list = Json::array();
    store::Rows rows = database.select(
        "SELECT user_id, user_name, email, first_name, last_name, org.name FROM user JOIN org USING (org_id)"
        " ORDER BY user_name LIMIT ?",
        kMostOfAKind);
    while (rows.next()) {
        list.push_back(Json{{"id", rows.text(0)},
                            {"name", rows.text(1)},
                            {"email", rows.text(2)},
                            {"fullName", rows.text(3) + ' ' + rows.text(4)},
                            {"organisation", rows.text(5)}});
    }
    return list;
}

Json tabList(store::Database& database, const std::string& spaceID)
{
    Json list = Json::array();
    for (const store::Tab& tab : store::tabsOf(database, spaceID)) {
        list.push_back(Json{{"id", tab.tabID}, {"name", tab.name}, {"type", tab.type}, {"order", tab.order}});
    }
    return list;
}

Json memberList(store::Database& database, const std::string& spaceID)
{
    Json list = Json::array();
    for (const store::Member& member : store::membersOf(database, spaceID)) {
        list.push_back(Json{{"id", member.userID},
                            {"name", member.userName},
                            {"roles", store::rolesOf(database, spaceID, member.userID)}});
    }
    return list;
}

Json spacesOf(store::Database& database)
{
    Json list = Json::array();
    store::Rows rows = database.select(
        "SELECT workspace_id, name, is_template, user_name, created, modified FROM workspace"
        " JOIN user ON user_id = owner_id ORDER BY number LIMIT ?",
        kMostOfAKind);
    while (rows.next()) {
        list.push_back(Json{{"id", rows.text(0)},
                            {"name", rows.text(1)},
                            {"isTemplate", rows.number(2) != 0},
                            {"creator", rows.text(3)},
                            {"created", rows.number(4)},
                            {"modified", rows.number(5)},
                            {"tabs", tabList(database, rows.text(0))},
                            {"members", memberList(database, rows.text(0))}});
    }
    return list;
}

Json invitationsOf(store::Database& database, long long now)
{
    Json list = Json::array();
    store::Rows rows = database.select(
        "SELECT invitation_id, workspace.name, descriptor, user_name, CASE WHEN status = 'pending' AND expires <= ?"
        " THEN 'expired' ELSE status END, expires FROM invitation JOIN workspace USING (workspace_id)"
        " JOIN user ON user.user_id = invitation.owner_id ORDER BY invitation.number LIMIT ?",
        now, kMostOfAKind);
    while (rows.next()) {
        list.push_back(Json{{"id", rows.text(0)},
                            {"space", rows.text(1)},
                            {"invited", rows.text(2)},
                            {"by", rows.text(3)},
                            {"status", rows.text(4)},
                            {"expires", rows.number(5)}});
    }
    return list;
}

Json librariesOf(store::Database& database)
{
    Json list = Json::array();
    store::Rows rows = database.select(
        "SELECT library_id, name, type, owner_id FROM library ORDER BY library_id LIMIT ?", kMostOfAKind);
    while (rows.next()) {
        Json templates = Json::array();
        for (const store::Template& each : store::templatesOf(database, rows.text(0))) templates.push_back(each.name);
        Json applications = Json::array();
        for (const store::App& each : store::appsOf(database, rows.text(0))) applications.push_back(each.name);
        list.push_back(Json{{"id", rows.text(0)},
                            {"name", rows.text(1)},
                            {"ofOrganisation", rows.number(2) == store::kOrganisationLibrary},
                            {"owner", rows.text(3)},
                            {"templates", std::move(templates)},
                            {"applications", std::move(applications)}});
    }
    return list;
}

// A credential is as good as a password: which one it is stays out.
Json sessionsOf(store::Database& database, long long now)
{
    Json list = Json::array();
    store::Rows rows = database.select(
        "SELECT user_name, coalesce(workspace.name, ''), expires, duration FROM session JOIN user USING (user_id)"
        " LEFT JOIN workspace ON workspace.workspace_id = session.workspace_id ORDER BY expires DESC LIMIT ?",
        kMostOfAKind);
    while (rows.next()) {
        list.push_back(Json{{"user", rows.text(0)},
                            {"space", rows.text(1)},
                            {"expires", rows.number(2)},
                            {"remaining", rows.number(2) - now},
                            {"duration", rows.number(3)}});
    }
    return list;
}

}  // namespace

// What there is, for people to look at.
Json showOverview(Desk& desk, const Call& /*call*/)
{
    const long long now = desk.settings.clock.now();
    return Json{{"now", now},
                {"users", usersOf(desk.database)},
                {"spaces", spacesOf(desk.database)},
                {"invitations", invitationsOf(desk.database, now)},
                {"libraries", librariesOf(desk.database)},
                {"sessions", sessionsOf(desk.database, now)}};
}

}  // namespace service::control
