#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/store/Which.h"

namespace service::store {

class Database;

struct Tab {
    std::string tabID;
    std::string workspaceID;
    std::string name;
    long long type = 0;
    long long order = 0;
};

void insertTab(Database& database, const Tab& tab);

// In the order in which they are shown.
std::vector<Tab> tabsOf(Database& database, const std::string& workspaceID);
ByWorkspace<Tab> tabsOf(Database& database, const Which& which);

// Every workspace has its own fixed tabs under the same names, so one name can stand for several tabs.
std::vector<Tab> tabsNamed(Database& database, const std::string& tabID);
void renameTab(Database& database, const Tab& tab, const std::string& name);

// Returns false where the workspace has no such tab.
bool moveTab(Database& database, const std::string& workspaceID, const std::string& tabID, long long order);
void deleteTab(Database& database, const Tab& tab);

}  // namespace service::store
