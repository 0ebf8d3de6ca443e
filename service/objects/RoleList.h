#pragma once

#include <string>
#include <vector>

#include "service/xml/Node.h"

namespace service::objects {

// Adds the list of these roles, each with the name that people read.
void addRoles(const std::vector<std::string>& roleIDs, xml::Node& holder);

}  // namespace service::objects
