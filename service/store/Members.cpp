#include "service/store/Members.h"

#include <algorithm>

#include "service/store/Database.h"

namespace service::store {

namespace {

constexpr std::string_view kMembersOfOne =
    "SELECT m.workspace_id, u.user_id, u.user_name, u.email, coalesce(r.role_id, '') FROM member m"
    " JOIN user u ON u.user_id = m.user_id"
    " LEFT JOIN member_role r ON r.workspace_id = m.workspace_id AND r.user_id = m.user_id"
    " WHERE m.workspace_id = ? ORDER BY m.joined, m.rowid, r.role_id";

constexpr std::string_view kMembersOfAll =
    "SELECT m.workspace_id, u.user_id, u.user_name, u.email, coalesce(r.role_id, '') FROM member m"
    " JOIN user u ON u.user_id = m.user_id"
    " LEFT JOIN member_role r ON r.workspace_id = m.workspace_id AND r.user_id = m.user_id"
    " WHERE m.workspace_id IN (SELECT workspace_id FROM member WHERE user_id = ?)"
    " ORDER BY m.workspace_id, m.joined, m.rowid, r.role_id";

}  // namespace

void insertMember(Database& database, const std::string& workspaceID, const std::string& userID, long long joined)
{
    database.run(
        "INSERT INTO member (workspace_id, user_id, joined, seen_event)"
        " VALUES (?1, ?2, ?3, (SELECT coalesce(max(number), 0) FROM event WHERE workspace_id = ?1))",
        workspaceID, userID, joined);
}

bool deleteMember(Database& database, const std::string& workspaceID, const std::string& userID)
{
    database.run("DELETE FROM activity WHERE workspace_id = ? AND user_id = ?", workspaceID, userID);
    return database.run("DELETE FROM member WHERE workspace_id = ? AND user_id = ?", workspaceID, userID) == 1;
}

bool isMember(Database& database, const std::string& workspaceID, const std::string& userID)
{
    return database.value("SELECT 1 FROM member WHERE workspace_id = ? AND user_id = ?", workspaceID, userID)
        .has_value();
}

std::vector<Member> membersOf(Database& database, const std::string& workspaceID)
{
    ByWorkspace<Member> all = membersOf(database, Which::one(workspaceID));
    return all.empty() ? std::vector<Member>() : std::move(all.begin()->second);
}

ByWorkspace<Member> membersOf(Database& database, const Which& which)
{
    Rows rows = database.select(which.sql(kMembersOfOne, kMembersOfAll), which.id());
    ByWorkspace<Member> all;
    while (rows.next()) {
        std::vector<Member>& members = all[rows.text(0)];
        if (members.empty() || members.back().userID != rows.view(1)) {
            members.push_back({rows.text(1), rows.text(2), rows.text(3), {}});
        }
        if (!rows.view(4).empty()) members.back().roleIDs.push_back(rows.text(4));
    }
    return all;
}

void addRole(Database& database, const std::string& workspaceID, const std::string& userID, const std::string& roleID)
{
    database.run("INSERT OR IGNORE INTO member_role (workspace_id, user_id, role_id) VALUES (?, ?, ?)", workspaceID,
                 userID, roleID);
}

void clearRoles(Database& database, const std::string& workspaceID, const std::string& userID)
{
    database.run("DELETE FROM member_role WHERE workspace_id = ? AND user_id = ?", workspaceID, userID);
}

std::vector<std::string> rolesOf(Database& database, const std::string& workspaceID, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT role_id FROM member_role WHERE workspace_id = ? AND user_id = ?"
        " ORDER BY role_id",
        workspaceID, userID);
    std::vector<std::string> roles;
    while (rows.next()) roles.push_back(rows.text(0));
    return roles;
}

// Sorted here, for to have it sorted there takes as long as to read it.
std::vector<Membership> membershipsOf(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT w.workspace_id, w.name, coalesce(r.role_id, ''), w.number FROM member m"
        " CROSS JOIN workspace w ON w.workspace_id = m.workspace_id"
        " LEFT JOIN member_role r ON r.workspace_id = m.workspace_id AND r.user_id = m.user_id"
        " WHERE m.user_id = ?",
        userID);
    std::vector<Membership> memberships;
    while (rows.next()) {
        if (memberships.empty() || memberships.back().workspaceID != rows.view(0)) {
            memberships.push_back({rows.text(0), rows.text(1), {}, rows.number(3)});
        }
        if (!rows.view(2).empty()) memberships.back().roleIDs.push_back(rows.text(2));
    }
    for (Membership& each : memberships) std::ranges::sort(each.roleIDs);
    std::ranges::sort(memberships, {}, &Membership::number);
    return memberships;
}

}  // namespace service::store
