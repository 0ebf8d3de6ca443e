#pragma once

#include <string>

namespace service {
struct Settings;
}

namespace service::http {

// One line of JSON: that the service serves, what it is and where. With a token it also says where it is controlled.
std::string readyText(const Settings& settings, const std::string& token = {});

}  // namespace service::http
