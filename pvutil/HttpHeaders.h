// The header lines that go out with a request, and what the transports read in those of a reply.
#pragma once

#include <cstdint>
#include <optional>
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

/// Where a reply's line declares the length of its body: false where that is no number, or another than `length`, which
/// an earlier line has declared. Takes the largest number for one that is larger still.
bool readLength(std::string_view line, std::optional<std::uint64_t>& length) noexcept;

/// Takes out what is meant for one server only and must not reach another.
void removeCredentials(HeaderLines& lines);

}  // namespace kzn::pvutil
