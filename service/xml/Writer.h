#pragma once

#include <string>
#include <string_view>

#include "service/xml/Node.h"

namespace service::xml {

// Character data with the markup escaped; what XML cannot carry goes out as U+FFFD.
void appendEscaped(std::string& out, std::string_view text);

void append(std::string& out, const Node& node);

}  // namespace service::xml
