#include "service/store/Workspaces.h"

#include "service/store/Database.h"

namespace service::store {

namespace {

// The columns are those of read(); what stands between the two says where the workspaces come from.
constexpr const char* kColumns =
    "SELECT w.workspace_id, w.name, w.type, w.is_template, w.owner_id, w.org_id, w.group_id, w.description_icon,"
    " w.created, w.modified, coalesce(i.icon_name, ''), w.number FROM ";
constexpr const char* kIcon = " LEFT JOIN workspace_icon i ON i.workspace_id = w.workspace_id";

void readOwner(Database& database, Workspace& workspace)
{
    workspace.ownerName =
        database.value("SELECT user_name FROM user WHERE user_id = ?", workspace.ownerID).value_or(std::string());
}

void readOrganisation(Database& database, Workspace& workspace)
{
    Rows rows = database.select("SELECT namespace_id, namespace_name FROM org WHERE org_id = ?", workspace.orgID);
    if (!rows.next()) return;
    workspace.namespaceID = rows.view(0);
    workspace.namespaceName = rows.view(1);
}

// What was read before keeps its place in memory, and is not asked for again where it is the same: most of a user's
// workspaces are of one owner and one organisation.
void read(Database& database, const Rows& rows, Workspace& workspace)
{
    const bool sameOwner = workspace.ownerID == rows.view(4);
    const bool sameOrganisation = workspace.orgID == rows.view(5);
    workspace.workspaceID = rows.view(0);
    workspace.name = rows.view(1);
    workspace.type = rows.number(2);
    workspace.isTemplate = rows.number(3) != 0;
    workspace.ownerID = rows.view(4);
    workspace.orgID = rows.view(5);
    workspace.groupID = rows.view(6);
    workspace.descriptionIcon = rows.view(7);
    workspace.created = rows.number(8);
    workspace.modified = rows.number(9);
    workspace.iconName = rows.view(10);
    workspace.number = rows.number(11);
    if (!sameOwner) readOwner(database, workspace);
    if (!sameOrganisation) readOrganisation(database, workspace);
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
    static const std::string sql = std::string(kColumns) + "workspace w" + kIcon + " WHERE w.workspace_id = ?";
    Rows rows = database.select(sql, workspaceID);
    if (!rows.next()) return std::nullopt;
    Workspace workspace;
    read(database, rows, workspace);
    return workspace;
}

void visitWorkspacesOfMember(Database& database, const std::string& userID,
                             const std::function<void(const Workspace& workspace)>& visit)
{
    static const std::string sql = std::string(kColumns) +
                                   "member m CROSS JOIN workspace w ON w.workspace_id = m.workspace_id" + kIcon +
                                   " WHERE m.user_id = ?";
    Rows rows = database.select(sql, userID);
    Workspace workspace;
    while (rows.next()) {
        read(database, rows, workspace);
        visit(workspace);
    }
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

ByWorkspace<std::string> descriptionsOf(Database& database, const Which& which)
{
    Rows rows = database.select(
        which.sql("SELECT workspace_id, text FROM workspace_text WHERE workspace_id = ? ORDER BY position",
                  "SELECT workspace_id, text FROM member JOIN workspace_text USING (workspace_id) WHERE user_id = ?"
                  " ORDER BY workspace_id, position"),
        which.id());
    ByWorkspace<std::string> all;
    while (rows.next()) all[rows.text(0)].push_back(rows.text(1));
    return all;
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

ByWorkspace<ChatRoom> chatRoomsOf(Database& database, const Which& which)
{
    Rows rows = database.select(
        which.sql("SELECT room_id, workspace_id, name FROM chat_room WHERE workspace_id = ? ORDER BY rowid",
                  "SELECT room_id, workspace_id, name FROM member JOIN chat_room USING (workspace_id)"
                  " WHERE user_id = ? ORDER BY chat_room.rowid"),
        which.id());
    ByWorkspace<ChatRoom> all;
    while (rows.next()) all[rows.text(1)].push_back({rows.text(0), rows.text(1), rows.text(2)});
    return all;
}

}  // namespace service::store
