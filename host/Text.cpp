#include "host/Text.h"

#include <algorithm>
#include <array>
#include <span>

namespace host {

namespace {

using kzn::pvutil::stringex::CharT;

struct Range {
    char32_t first;
    char32_t last;
};

// Blocks, not single characters: a table that is one column off in a rare script is still a table.
constexpr std::array kWithoutWidth = std::to_array<Range>({
    {0x0300, 0x036F},
    {0x0483, 0x0489},
    {0x0591, 0x05BD},
    {0x064B, 0x065F},
    {0x1AB0, 0x1AFF},
    {0x1DC0, 0x1DFF},
    {0x200B, 0x200F},
    {0x20D0, 0x20FF},
    {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F},
    {0xE0100, 0xE01EF},
});
constexpr std::array kWide = std::to_array<Range>({
    {0x1100, 0x115F},
    {0x2E80, 0x303E},
    {0x3041, 0xA4CF},
    {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F},
    {0xFF01, 0xFF60},
    {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F},
    {0x1F680, 0x1F6FF},
    {0x1F900, 0x1F9FF},
    {0x20000, 0x3FFFD},
});

bool isIn(std::span<const Range> ranges, char32_t letter)
{
    return std::ranges::any_of(ranges, [&](const Range& r) { return letter >= r.first && letter <= r.last; });
}

bool isHarmful(CharT unit)
{
    const auto code = static_cast<char32_t>(unit);
    const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F);
    const bool separator = code == 0x2028 || code == 0x2029;
    const bool turnsDirection =
        code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return control || separator || turnsDirection;
}

void appendEscape(CStringT& text, CharT unit)
{
    text.append({'\\', 'u'});
    for (int shift = 12; shift >= 0; shift -= 4) {
        text.push_back(static_cast<CharT>("0123456789abcdef"[(static_cast<unsigned>(unit) >> shift) & 0xFU]));
    }
}

std::size_t widthOf(char32_t letter)
{
    if (isIn(kWithoutWidth, letter)) return 0;
    return isIn(kWide, letter) ? 2 : 1;
}

}  // namespace

std::string harmless(const CStringT& text, std::string_view kept)
{
    CStringT result;
    result.reserve(text.size());
    for (const CharT unit : text) {
        const bool stays = unit < 0x80 && kept.find(static_cast<char>(unit)) != std::string_view::npos;
        if (!stays && isHarmful(unit)) {
            appendEscape(result, unit);
        } else {
            result.push_back(unit);
        }
    }
    return ToUtf8(result);
}

std::string harmless(std::string_view utf8, std::string_view kept)
{
    return harmless(FromUtf8(utf8), kept);
}

std::size_t displayWidth(std::string_view utf8)
{
    const CStringT text = FromUtf8(utf8);
    std::size_t width = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        auto letter = static_cast<char32_t>(text[at]);
        // FromUtf8 leaves no surrogate without its partner.
        if (letter >= 0xD800 && letter <= 0xDBFF) {
            letter = 0x10000 + ((letter - 0xD800) << 10) + (static_cast<char32_t>(text[++at]) - 0xDC00);
        }
        width += widthOf(letter);
    }
    return width;
}

}  // namespace host
