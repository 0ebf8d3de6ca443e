#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace service {

// The bytes that a form value stands for ("+" is a blank); nothing where an escape is broken.
std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace service
