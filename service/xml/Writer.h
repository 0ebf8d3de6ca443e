#pragma once

#include <string>
#include <string_view>

#include "service/xml/Node.h"

namespace service::xml {

// Character data with the markup escaped; what XML cannot carry goes out as U+FFFD.
void appendEscaped(std::string& out, std::string_view text);

// Throws std::logic_error for an element with a name that XML does not have: its reader could read nothing of the rest.
void append(std::string& out, const Node& node);

}  // namespace service::xml
