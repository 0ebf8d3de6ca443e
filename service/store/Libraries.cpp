#include "service/store/Libraries.h"

#include "service/store/Database.h"

namespace service::store {

namespace {

std::vector<Library> allLibraries(Rows& rows)
{
    std::vector<Library> libraries;
    while (rows.next()) {
        libraries.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.number(4)});
    }
    return libraries;
}

}  // namespace

void insertLibrary(Database& database, const Library& library)
{
    database.run("INSERT INTO library (library_id, org_id, owner_id, name, type) VALUES (?, ?, ?, ?, ?)",
                 library.libraryID, library.orgID, library.ownerID, library.name, library.type);
}

std::optional<Library> findLibrary(Database& database, const std::string& libraryID)
{
    Rows rows =
        database.select("SELECT library_id, org_id, owner_id, name, type FROM library WHERE library_id = ?", libraryID);
    std::vector<Library> found = allLibraries(rows);
    if (found.empty()) return std::nullopt;
    return std::move(found.front());
}

std::vector<Library> librariesFor(Database& database, const std::string& userID, const std::string& orgID)
{
    Rows rows = database.select(
        "SELECT library_id, org_id, owner_id, name, type FROM library"
        " WHERE owner_id = ? OR (type = ? AND org_id = ?) ORDER BY type, rowid",
        userID, kOrganisationLibrary, orgID);
    return allLibraries(rows);
}

bool insertTemplate(Database& database, const std::string& libraryID, const std::string& workspaceID)
{
    return database.run("INSERT OR IGNORE INTO library_template (library_id, workspace_id) VALUES (?, ?)", libraryID,
                        workspaceID) == 1;
}

bool deleteTemplate(Database& database, const std::string& libraryID, const std::string& workspaceID)
{
    return database.run("DELETE FROM library_template WHERE library_id = ? AND workspace_id = ?", libraryID,
                        workspaceID) == 1;
}

std::vector<Template> templatesOf(Database& database, const std::string& libraryID)
{
    Rows rows = database.select(
        "SELECT workspace_id, name, type FROM library_template JOIN workspace"
        " USING (workspace_id) WHERE library_id = ? ORDER BY library_template.rowid",
        libraryID);
    std::vector<Template> templates;
    while (rows.next()) templates.push_back({rows.text(0), rows.text(1), rows.number(2)});
    return templates;
}

bool isTemplateFor(Database& database, const std::string& workspaceID, const std::string& userID,
                   const std::string& orgID)
{
    return database
        .value(
            "SELECT 1 FROM library_template JOIN library USING (library_id)"
            " WHERE workspace_id = ? AND (owner_id = ? OR (type = ? AND org_id = ?))",
            workspaceID, userID, kOrganisationLibrary, orgID)
        .has_value();
}

}  // namespace service::store
