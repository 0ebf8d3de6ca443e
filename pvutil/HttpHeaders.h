// The header lines that go out with a request.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kzn::pvutil {

using HeaderLines = std::vector<std::string>;  // "Name: value" each

/// The lines of a caller's text, parted by CR LF or LF. Left out are the empty ones, those that are no header (no name,
/// no colon, a control character), and those by which the transport itself says where a request ends.
HeaderLines callerHeaders(std::string_view utf8);

bool hasHeader(const HeaderLines& lines, std::string_view name) noexcept;

/// Adds a line unless the name stands there already.
void addHeader(HeaderLines& lines, std::string_view name, std::string_view value);

/// Takes out what is meant for one server only and must not reach another.
void removeCredentials(HeaderLines& lines);

}  // namespace kzn::pvutil
