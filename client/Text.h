// Small dealings with wide text: the library's own texts are ASCII and stand in the source as plain literals.
#pragma once

#include <algorithm>
#include <string_view>

#include "pvutil/StringEx.h"

namespace wapi {

inline void appendAscii(CStringT& text, std::string_view ascii)
{
    text.append(ascii.begin(), ascii.end());
}

inline CStringT wide(std::string_view ascii)
{
    return CStringT(ascii.begin(), ascii.end());
}

inline bool equals(const CStringT& text, std::string_view ascii) noexcept
{
    return std::equal(text.begin(), text.end(), ascii.begin(), ascii.end());
}

/// Without regard to the case of A to Z.
inline bool equalsIgnoringCase(const CStringT& text, std::string_view ascii) noexcept
{
    const auto lower = [](auto unit) { return unit >= 'A' && unit <= 'Z' ? unit + ('a' - 'A') : unit + 0; };
    return std::equal(text.begin(), text.end(), ascii.begin(), ascii.end(),
                      [lower](auto a, auto b) { return lower(a) == lower(b); });
}

/// A flag as the wire writes it.
constexpr std::string_view trueFalse(int flag) noexcept
{
    return flag != 0 ? "true" : "false";
}

/// Where `ascii` begins in `text`, looking from the back; npos where it does not stand.
inline std::size_t findLast(const CStringT& text, std::string_view ascii)
{
    return text.rfind(wide(ascii));
}

}  // namespace wapi
