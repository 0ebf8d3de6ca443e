#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "service/tape/Template.h"

namespace service::tape {

// The pieces of a line as it stands on a tape. Throws TapeError, which names the line.
void appendUnescaped(Template& out, std::string_view text, std::size_t line);

// The shortest beginning of a text that stands together on a line: one character, or the escape of one byte.
struct Unit {
    std::array<char, 4> written{};
    std::size_t length = 0;  // of what is written
    std::size_t taken = 0;   // of the text

    std::string_view text() const { return {written.data(), length}; }
};

Unit unitAt(std::string_view text);

// All of a text as it is written.
std::string escaped(std::string_view text);

// A placeholder as it is written.
std::string placeholderText(const Piece& piece);

}  // namespace service::tape
