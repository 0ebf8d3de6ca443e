#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace service::store {

class Database;

struct Icon {
    std::string workspaceID;
    std::string content;
};

// A workspace has one icon; a new one takes the place of the old.
void putIcon(Database& database, const std::string& workspaceID, const std::string& iconName, std::string_view content);
std::optional<Icon> findIcon(Database& database, const std::string& iconName);

}  // namespace service::store
