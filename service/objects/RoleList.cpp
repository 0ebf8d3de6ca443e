#include "service/objects/RoleList.h"

#include "service/rules/Roles.h"

namespace service::objects {

void addRoles(const std::vector<std::string>& roleIDs, xml::Node& holder)
{
    xml::Node& roles = holder.add("roles");
    for (const std::string& roleID : roleIDs) {
        xml::Node& role = roles.add("role");
        role.add("roleID", roleID);
        role.add("roleName", rules::roleName(roleID));
    }
}

}  // namespace service::objects
