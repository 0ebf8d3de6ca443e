// Letters and digits as the protocols mean them, whatever the user's locale.
#pragma once

#include <algorithm>
#include <string_view>

namespace kzn::pvutil::ascii {

constexpr bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

constexpr char lower(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool isLetter(char c) noexcept
{
    return lower(c) >= 'a' && lower(c) <= 'z';
}

constexpr bool isAlnum(char c) noexcept
{
    return isDigit(c) || isLetter(c);
}

constexpr bool isBlank(char c) noexcept
{
    return c == ' ' || c == '\t';
}

/// True for the control characters, the tab among them.
constexpr bool isControl(char c) noexcept
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

constexpr bool same(std::string_view left, std::string_view right) noexcept
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

constexpr std::string_view trimmed(std::string_view text) noexcept
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace kzn::pvutil::ascii
