// The number in a text, as every record and reply reads it.
#pragma once

#include <algorithm>
#include <limits>

#include "pvutil/StringEx.h"

namespace pvnumber {

constexpr bool isBlank(unsigned unit) noexcept
{
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

constexpr bool isDigit(unsigned unit) noexcept
{
    return unit >= '0' && unit <= '9';
}

}  // namespace pvnumber

/// Blanks and a sign, then the leading digits, base 10: "7x" is 7. 0 where there are none; beyond 32 bits the nearest
/// limit.
inline int toInt(const CStringT& text) noexcept
{
    const auto end = text.end();
    auto at = std::find_if_not(text.begin(), end, pvnumber::isBlank);
    const bool negative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;

    // The limits differ by one in their magnitude.
    using Limits = std::numeric_limits<int>;
    const long long most = negative ? -static_cast<long long>(Limits::min()) : Limits::max();
    long long magnitude = 0;
    for (; at != end && pvnumber::isDigit(*at); ++at) magnitude = std::min(most, magnitude * 10 + (*at - '0'));
    return static_cast<int>(negative ? -magnitude : magnitude);
}
