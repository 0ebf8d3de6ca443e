#include "service/store/Apps.h"

#include "service/store/Database.h"

namespace service::store {

namespace {

std::vector<AppTab> tabsOfApp(Database& database, const std::string& appID)
{
    Rows rows = database.select("SELECT name, type, tab_order FROM app_tab WHERE app_id = ? ORDER BY position", appID);
    std::vector<AppTab> tabs;
    while (rows.next()) tabs.push_back({rows.text(0), rows.number(1), rows.number(2)});
    return tabs;
}

}  // namespace

void insertApp(Database& database, const App& app)
{
    database.run(
        "INSERT INTO app (app_id, library_id, name, description, top_level, current_dir, status, package,"
        " app_type, identity_name, identity_description) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        app.appID, app.libraryID, app.name, app.description, app.topLevel, app.currentDir, app.status, app.package,
        app.appType, app.identityName, app.identityDescription);
    int position = 0;
    for (const AppTab& tab : app.tabs) {
        database.run("INSERT INTO app_tab (app_id, position, name, type, tab_order) VALUES (?, ?, ?, ?, ?)", app.appID,
                     position++, tab.name, tab.type, tab.order);
    }
}

std::vector<App> appsOf(Database& database, const std::string& libraryID)
{
    Rows rows = database.select(
        "SELECT app_id, library_id, name, description, top_level, current_dir, status, package,"
        " app_type, identity_name, identity_description FROM app WHERE library_id = ?"
        " ORDER BY number",
        libraryID);
    std::vector<App> apps;
    while (rows.next()) {
        apps.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.number(4) != 0, rows.text(5),
                        rows.text(6), rows.text(7), rows.text(8), rows.text(9), rows.text(10),
                        tabsOfApp(database, rows.text(0))});
    }
    return apps;
}

bool libraryHasApp(Database& database, const std::string& libraryID, const std::string& appID)
{
    return database.value("SELECT 1 FROM app WHERE library_id = ? AND app_id = ?", libraryID, appID).has_value();
}

void deleteApp(Database& database, const std::string& appID)
{
    database.run("DELETE FROM app WHERE app_id = ?", appID);
}

bool hasApp(Database& database, const std::string& libraryID, const std::string& name)
{
    return database.value("SELECT 1 FROM app WHERE library_id = ? AND name = ?", libraryID, name).has_value();
}

}  // namespace service::store
