#include "service/store/Members.h"

#include "service/store/Database.h"

namespace service::store {

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
    Rows rows = database.select(
        "SELECT user_id, user_name, email FROM member JOIN user USING (user_id)"
        " WHERE workspace_id = ? ORDER BY joined, member.rowid",
        workspaceID);
    std::vector<Member> members;
    while (rows.next()) members.push_back({rows.text(0), rows.text(1), rows.text(2)});
    return members;
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

std::vector<Membership> membershipsOf(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT w.workspace_id, w.name, coalesce(r.role_id, '') FROM member m"
        " JOIN workspace w ON w.workspace_id = m.workspace_id"
        " LEFT JOIN member_role r ON r.workspace_id = m.workspace_id AND r.user_id = m.user_id"
        " WHERE m.user_id = ? ORDER BY w.number, r.role_id",
        userID);
    std::vector<Membership> memberships;
    while (rows.next()) {
        std::string workspaceID = rows.text(0);
        if (memberships.empty() || memberships.back().workspaceID != workspaceID) {
            memberships.push_back({std::move(workspaceID), rows.text(1), {}});
        }
        if (std::string role = rows.text(2); !role.empty()) memberships.back().roleIDs.push_back(std::move(role));
    }
    return memberships;
}

}  // namespace service::store
