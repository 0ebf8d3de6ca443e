// Text on its way to a reader: made harmless, and cut to the width of a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace logreader {

/// UTF-8 in which no terminal finds a command and no reader is deceived about the order of the letters: control
/// characters, line and paragraph separators and the characters that turn the direction of writing become \u and four
/// hexadecimal digits, bytes that are no UTF-8 become U+FFFD. Those named in `kept` stay.
std::string harmless(std::string_view text, std::string_view kept = {});

/// What of a harmless line fits into so many columns; where something is cut off, the last of them is "…".
std::string fitted(std::string line, std::size_t columns);

/// Lines that are broken at blanks where they do not fit into so many columns. What goes on stands below the text of
/// its line, which begins behind the last two blanks in a row.
std::string wrapped(std::string_view lines, std::size_t columns);

}  // namespace logreader
