#pragma once

#include <nlohmann/json_fwd.hpp>

namespace service {

// Members stay in the order in which they were written.
using Json = nlohmann::ordered_json;

}  // namespace service
