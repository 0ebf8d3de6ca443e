#pragma once

#include <functional>
#include <string>

namespace service::store {

// Opens a file by `open`, a data file above all, so that nobody but its owner can read it or the log beside it. Throws
// std::runtime_error where the system cannot see to that.
void openPrivately(const std::string& path, const std::function<void()>& open);

}  // namespace service::store
