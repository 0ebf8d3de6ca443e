#pragma once

#include <optional>
#include <string>
#include <vector>

namespace service::store {

class Database;

struct AppTab {
    std::string name;
    long long type = 0;
    long long order = 0;
};

// An application: what a new workspace is made after.
struct App {
    std::string appID;
    std::string libraryID;
    std::string name;
    std::string description;
    bool topLevel = false;
    std::string currentDir;
    std::string status;
    std::string package;
    std::string appType;
    std::string identityName;
    std::string identityDescription;
    std::vector<AppTab> tabs;
};

void insertApp(Database& database, const App& app);
std::vector<App> appsOf(Database& database, const std::string& libraryID);
bool libraryHasApp(Database& database, const std::string& libraryID, const std::string& appID);
void deleteApp(Database& database, const std::string& appID);

// Whether the library has an application of this name.
bool hasApp(Database& database, const std::string& libraryID, const std::string& name);

}  // namespace service::store
