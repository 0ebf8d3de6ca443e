#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "service/tape/Template.h"

namespace service::tape {

// The pieces of a line as it stands on a tape. Throws TapeError, which names the line.
void appendUnescaped(Template& out, std::string_view text, std::size_t line);

// The shortest beginning of `text` that stands together on a line, as it is written there: one character, or the
// escape of one byte. Cuts it off.
std::string takeEscaped(std::string_view& text);

// The same for all of it.
std::string escaped(std::string_view text);

// A placeholder as it is written.
std::string placeholderText(const Piece& piece);

}  // namespace service::tape
