#pragma once

#include <string>
#include <string_view>

#include "service/http/Message.h"

namespace service::tape {

// In ASCII, as names of headers and fields are.
std::string lower(std::string_view text);

bool isSameName(std::string_view a, std::string_view b);

// The value of the first header of that name, in whatever case; empty where there is none.
std::string headerOf(const http::HeaderLines& headers, std::string_view name);

}  // namespace service::tape
