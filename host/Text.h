// Text on its way to a reader: made harmless, and measured in columns of a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "client/WapiClient.h"

namespace host {

using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

/// UTF-8 of the text, in which no terminal finds a command and no reader is deceived about the order of the letters:
/// control characters, line and paragraph separators and the characters that turn the direction of writing become
/// \u and four hexadecimal digits. Those named in `kept` stay.
std::string harmless(const CStringT& text, std::string_view kept = {});

/// The same for a text that came from outside and may be ill-formed UTF-8.
std::string harmless(std::string_view utf8, std::string_view kept = {});

/// How many columns the text takes: none for a combining mark, two for the wide letters of East Asia and the pictures,
/// one for anything else.
std::size_t displayWidth(std::string_view utf8);

/// The text, or as much of it as fits these columns with "…" behind it, which takes one. What a reader takes for one
/// letter is never cut.
std::string shortened(std::string_view utf8, std::size_t width);

}  // namespace host
