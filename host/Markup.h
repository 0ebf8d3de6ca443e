// XML as a person reads it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Each element on a line of its own, further in than the one that it stands in. Nothing where the tags do not fit.
std::optional<std::string> indented(std::string_view xml);

}  // namespace host
