#include "service/store/Things.h"

#include "service/store/Database.h"

namespace service::store {

bool insertWorkspaceThing(Database& database, const WorkspaceThing& thing)
{
    return database.run(
               "INSERT OR IGNORE INTO workspace_thing (thing_id, user_id, name, type, workspace_id)"
               " VALUES (?, ?, ?, ?, ?)",
               thing.thingID, thing.userID, thing.name, thing.type, thing.workspaceID) == 1;
}

std::vector<WorkspaceThing> workspaceThingsOf(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT thing_id, user_id, name, type, workspace_id FROM workspace_thing"
        " WHERE user_id = ? ORDER BY number",
        userID);
    std::vector<WorkspaceThing> things;
    while (rows.next()) {
        things.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4)});
    }
    return things;
}

void deleteWorkspaceThing(Database& database, const std::string& thingID)
{
    database.run("DELETE FROM workspace_thing WHERE thing_id = ?", thingID);
}

void insertThing(Database& database, const Thing& thing)
{
    database.run(
        "INSERT INTO thing (thing_id, user_id, workspace_id, name, extension, created) VALUES (?, ?, ?, ?, ?, ?)",
        thing.thingID, thing.userID, thing.workspaceID, thing.name, thing.extension, thing.created);
}

std::string workspaceOfThing(Database& database, const std::string& thingID)
{
    return database.value("SELECT workspace_id FROM thing WHERE thing_id = ?", thingID).value_or(std::string());
}

void deleteThing(Database& database, const std::string& thingID)
{
    database.run("DELETE FROM thing WHERE thing_id = ?", thingID);
}

std::vector<Thing> thingsVisibleTo(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT thing_id, user_id, workspace_id, name, extension, created FROM thing"
        " WHERE user_id = ?1 OR EXISTS (SELECT 1 FROM member m"
        " WHERE m.workspace_id = thing.workspace_id AND m.user_id = ?1) ORDER BY number",
        userID);
    std::vector<Thing> things;
    while (rows.next()) {
        things.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4), rows.number(5)});
    }
    return things;
}

}  // namespace service::store
