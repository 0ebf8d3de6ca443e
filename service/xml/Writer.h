#pragma once

#include <string>
#include <string_view>

#include "service/xml/Node.h"

namespace service::xml {

// Writes the element, and what stands behind it, into room that is made once: a listing can be many megabytes. What
// XML cannot carry goes out as U+FFFD. Throws std::logic_error for an element with a name that XML does not have: its
// reader could read nothing of the rest.
void append(std::string& out, const Node& node, std::string_view behind = {});

}  // namespace service::xml
