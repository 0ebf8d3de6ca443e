#include "service/store/Tabs.h"

#include "service/store/Database.h"

namespace service::store {

namespace {

std::vector<Tab> allTabs(Rows& rows)
{
    std::vector<Tab> tabs;
    while (rows.next()) tabs.push_back({rows.text(0), rows.text(1), rows.text(2), rows.number(3), rows.number(4)});
    return tabs;
}

}  // namespace

void insertTab(Database& database, const Tab& tab)
{
    database.run("INSERT INTO tab (tab_id, workspace_id, name, type, tab_order) VALUES (?, ?, ?, ?, ?)", tab.tabID,
                 tab.workspaceID, tab.name, tab.type, tab.order);
}

std::vector<Tab> tabsOf(Database& database, const std::string& workspaceID)
{
    Rows rows = database.select(
        "SELECT tab_id, workspace_id, name, type, tab_order FROM tab WHERE workspace_id = ?"
        " ORDER BY tab_order, rowid",
        workspaceID);
    return allTabs(rows);
}

ByWorkspace<Tab> tabsOf(Database& database, const Which& which)
{
    Rows rows = database.select(
        which.sql("SELECT tab_id, workspace_id, name, type, tab_order FROM tab WHERE workspace_id = ?"
                  " ORDER BY tab_order, rowid",
                  "SELECT tab_id, workspace_id, name, type, tab_order FROM member JOIN tab USING (workspace_id)"
                  " WHERE user_id = ? ORDER BY workspace_id, tab_order, tab.rowid"),
        which.id());
    ByWorkspace<Tab> all;
    while (rows.next()) {
        all[rows.text(1)].push_back({rows.text(0), rows.text(1), rows.text(2), rows.number(3), rows.number(4)});
    }
    return all;
}

std::vector<Tab> tabsNamed(Database& database, const std::string& tabID)
{
    Rows rows = database.select("SELECT tab_id, workspace_id, name, type, tab_order FROM tab WHERE tab_id = ?", tabID);
    return allTabs(rows);
}

void renameTab(Database& database, const Tab& tab, const std::string& name)
{
    database.run("UPDATE tab SET name = ? WHERE workspace_id = ? AND tab_id = ?", name, tab.workspaceID, tab.tabID);
}

bool moveTab(Database& database, const std::string& workspaceID, const std::string& tabID, long long order)
{
    return database.run("UPDATE tab SET tab_order = ? WHERE workspace_id = ? AND tab_id = ?", order, workspaceID,
                        tabID) == 1;
}

void deleteTab(Database& database, const Tab& tab)
{
    database.run("DELETE FROM tab WHERE workspace_id = ? AND tab_id = ?", tab.workspaceID, tab.tabID);
}

}  // namespace service::store
