#pragma once

#include <string>
#include <vector>

namespace service::store {

class Database;

// A named thing that a user attaches to a workspace; the favourites are such things. It outlives its workspace.
struct WorkspaceThing {
    std::string thingID;
    std::string userID;
    std::string name;
    std::string type;
    std::string workspaceID;
};

inline constexpr const char* kFavouriteType = "favouriteWorkspaces";

// Returns false where the user has that very thing already.
bool insertWorkspaceThing(Database& database, const WorkspaceThing& thing);
std::vector<WorkspaceThing> workspaceThingsOf(Database& database, const std::string& userID);
void deleteWorkspaceThing(Database& database, const std::string& thingID);

// An object of no fixed shape: its extension is kept as the XML that it came as. It is seen by its owner and, where it
// belongs to a workspace, by the members of that.
struct Thing {
    std::string thingID;
    std::string userID;
    std::string workspaceID;
    std::string name;
    std::string extension;
    long long created = 0;
};

void insertThing(Database& database, const Thing& thing);

// Empty for a thing that belongs to none.
std::string workspaceOfThing(Database& database, const std::string& thingID);
void deleteThing(Database& database, const std::string& thingID);
std::vector<Thing> thingsVisibleTo(Database& database, const std::string& userID);

}  // namespace service::store
