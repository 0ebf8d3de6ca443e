#pragma once

#include <optional>
#include <string>
#include <vector>

namespace service::store {

class Database;

inline constexpr long long kPersonalLibrary = 1;
inline constexpr long long kOrganisationLibrary = 2;

// A personal library is its owner's alone. One of the organisation is read by everybody in it and changed by its owner.
struct Library {
    std::string libraryID;
    std::string orgID;
    std::string ownerID;
    std::string name;
    long long type = kPersonalLibrary;
};

struct Template {
    std::string workspaceID;
    std::string name;
    long long type = 0;
};

void insertLibrary(Database& database, const Library& library);
std::optional<Library> findLibrary(Database& database, const std::string& libraryID);

// The libraries that the user can read.
std::vector<Library> librariesFor(Database& database, const std::string& userID, const std::string& orgID);

// Returns false where the library has the template already.
bool insertTemplate(Database& database, const std::string& libraryID, const std::string& workspaceID);

// Returns false where the library has no such template. The workspace stays.
bool deleteTemplate(Database& database, const std::string& libraryID, const std::string& workspaceID);
std::vector<Template> templatesOf(Database& database, const std::string& libraryID);

// True where a library that the user can read holds the workspace as a template.
bool isTemplateFor(Database& database, const std::string& workspaceID, const std::string& userID,
                   const std::string& orgID);

}  // namespace service::store
