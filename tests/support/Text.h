// Texts of the tests: written in UTF-8, handed over in the library's unit.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "pvutil/StringEx.h"

inline CStringT wide(std::string_view utf8)
{
    return kzn::pvutil::stringex::FromUtf8(utf8);
}
inline std::string narrow(const CStringT& text)
{
    return kzn::pvutil::stringex::ToUtf8(text);
}

inline CStringT operator""_w(const char* text, std::size_t length)
{
    return wide({text, length});
}
