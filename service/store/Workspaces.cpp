#include "service/store/Workspaces.h"

#include "service/store/Database.h"

namespace service::store {

namespace {

// The columns are those of workspaceOf; what follows says which workspaces.
constexpr const char* kRecords =
    "SELECT w.workspace_id, w.name, w.type, w.is_template, w.owner_id, u.user_name, w.org_id, o.namespace_id,"
    " o.namespace_name, w.group_id, w.description_icon, w.created, w.modified, coalesce(i.icon_name, '')"
    " FROM workspace w JOIN user u ON u.user_id = w.owner_id JOIN org o ON o.org_id = w.org_id"
    " LEFT JOIN workspace_icon i ON i.workspace_id = w.workspace_id";

Workspace workspaceOf(const Rows& rows)
{
    Workspace workspace;
    workspace.workspaceID = rows.text(0);
    workspace.name = rows.text(1);
    workspace.type = rows.number(2);
    workspace.isTemplate = rows.number(3) != 0;
    workspace.ownerID = rows.text(4);
    workspace.ownerName = rows.text(5);
    workspace.orgID = rows.text(6);
    workspace.namespaceID = rows.text(7);
    workspace.namespaceName = rows.text(8);
    workspace.groupID = rows.text(9);
    workspace.descriptionIcon = rows.text(10);
    workspace.created = rows.number(11);
    workspace.modified = rows.number(12);
    workspace.iconName = rows.text(13);
    return workspace;
}

}  // namespace

void insertWorkspace(Database& database, const Workspace& workspace)
{
    database.run(
        "INSERT INTO workspace (workspace_id, name, type, is_template, owner_id, org_id, group_id,"
        " description_icon, created, modified) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        workspace.workspaceID, workspace.name, workspace.type, workspace.isTemplate, workspace.ownerID, workspace.orgID,
        workspace.groupID, workspace.descriptionIcon, workspace.created, workspace.modified);
}

std::optional<Workspace> findWorkspace(Database& database, const std::string& workspaceID)
{
    static const std::string sql = std::string(kRecords) + " WHERE w.workspace_id = ?";
    Rows rows = database.select(sql, workspaceID);
    if (!rows.next()) return std::nullopt;
    return workspaceOf(rows);
}

std::vector<Workspace> workspacesOfMember(Database& database, const std::string& userID)
{
    static const std::string sql =
        std::string(kRecords) +
        " WHERE w.workspace_id IN (SELECT workspace_id FROM member WHERE user_id = ?) ORDER BY w.number";
    Rows rows = database.select(sql, userID);
    std::vector<Workspace> workspaces;
    while (rows.next()) workspaces.push_back(workspaceOf(rows));
    return workspaces;
}

void renameWorkspace(Database& database, const std::string& workspaceID, const std::string& name)
{
    database.run("UPDATE workspace SET name = ? WHERE workspace_id = ?", name, workspaceID);
}

void touchWorkspace(Database& database, const std::string& workspaceID, long long modified)
{
    database.run("UPDATE workspace SET modified = ? WHERE workspace_id = ?", modified, workspaceID);
}

void deleteWorkspace(Database& database, const std::string& workspaceID)
{
    database.run("DELETE FROM workspace WHERE workspace_id = ?", workspaceID);
}

std::vector<std::string> descriptionOf(Database& database, const std::string& workspaceID)
{
    Rows rows =
        database.select("SELECT text FROM workspace_text WHERE workspace_id = ? ORDER BY position", workspaceID);
    std::vector<std::string> texts;
    while (rows.next()) texts.push_back(rows.text(0));
    return texts;
}

void setDescription(Database& database, const std::string& workspaceID, const std::vector<std::string>& texts)
{
    database.run("DELETE FROM workspace_text WHERE workspace_id = ?", workspaceID);
    int position = 0;
    for (const std::string& text : texts) {
        database.run("INSERT INTO workspace_text (workspace_id, position, text) VALUES (?, ?, ?)", workspaceID,
                     position++, text);
    }
}

void insertChatRoom(Database& database, const ChatRoom& room)
{
    database.run("INSERT INTO chat_room (room_id, workspace_id, name) VALUES (?, ?, ?)", room.roomID, room.workspaceID,
                 room.name);
}

std::vector<ChatRoom> chatRoomsOf(Database& database, const std::string& workspaceID)
{
    Rows rows = database.select(
        "SELECT room_id, workspace_id, name FROM chat_room WHERE workspace_id = ? ORDER BY rowid", workspaceID);
    std::vector<ChatRoom> rooms;
    while (rows.next()) rooms.push_back({rows.text(0), rows.text(1), rows.text(2)});
    return rooms;
}

}  // namespace service::store
