#include "service/store/Icons.h"

#include "service/store/Database.h"

namespace service::store {

void putIcon(Database& database, const std::string& workspaceID, const std::string& iconName, std::string_view content)
{
    database.run(
        "INSERT INTO workspace_icon (workspace_id, icon_name, content) VALUES (?, ?, ?)"
        " ON CONFLICT (workspace_id) DO UPDATE SET icon_name = excluded.icon_name, content = excluded.content",
        workspaceID, iconName, Bytes{content});
}

std::optional<Icon> findIcon(Database& database, const std::string& iconName)
{
    Rows rows = database.select("SELECT workspace_id, content FROM workspace_icon WHERE icon_name = ?", iconName);
    if (!rows.next()) return std::nullopt;
    return Icon{rows.text(0), rows.text(1)};
}

}  // namespace service::store
