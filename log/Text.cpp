#include "log/Text.h"

#include <algorithm>
#include <array>
#include <span>

namespace logreader {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array kHarmful = std::to_array<Range>({
    {0x00, 0x1F},
    {0x7F, 0x9F},
    {0x061C, 0x061C},
    {0x200E, 0x200F},
    {0x2028, 0x202E},
    {0x2066, 0x2069},
});
// Blocks, not single characters: a line that is cut one column early is still a line.
constexpr std::array kWithoutWidth = std::to_array<Range>({
    {0x0300, 0x036F},
    {0x1AB0, 0x1AFF},
    {0x1DC0, 0x1DFF},
    {0x20D0, 0x20FF},
    {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F},
});
constexpr std::array kWide = std::to_array<Range>({
    {0x1100, 0x115F},
    {0x2E80, 0xA4CF},
    {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F},
    {0xFF01, 0xFF60},
    {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F9FF},
    {0x20000, 0x3FFFD},
});

bool isIn(std::span<const Range> ranges, char32_t letter)
{
    return std::ranges::any_of(ranges, [&](const Range& r) { return letter >= r.first && letter <= r.last; });
}

struct Letter {
    char32_t code = 0;
    std::size_t length = 0;  // none: the first byte begins no letter
};

/// How many bytes a first byte announces, and its share of the letter.
Letter announced(unsigned char first)
{
    if (first < 0x80) return {first, 1};
    if (first >= 0xC2 && first <= 0xDF) return {first & 0x1FU, 2};
    if (first >= 0xE0 && first <= 0xEF) return {first & 0x0FU, 3};
    if (first >= 0xF0 && first <= 0xF4) return {first & 0x07U, 4};
    return {};
}

Letter letterAt(std::string_view text)
{
    Letter letter = announced(static_cast<unsigned char>(text.front()));
    if (letter.length > text.size()) return {};
    for (std::size_t at = 1; at < letter.length; ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if ((byte & 0xC0U) != 0x80) return {};
        letter.code = (letter.code << 6U) | (byte & 0x3FU);
    }
    constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = letter.code >= 0xD800 && letter.code <= 0xDFFF;
    if (isSurrogate || letter.code > 0x10FFFF || letter.code < kSmallest[letter.length]) return {};
    return letter;
}

void appendEscape(std::string& text, char32_t code)
{
    text.append("\\u");
    for (unsigned shift = 16; shift > 0;) {
        shift -= 4;
        text.push_back("0123456789abcdef"[(code >> shift) & 0xFU]);
    }
}

std::size_t widthOf(char32_t letter)
{
    if (isIn(kWithoutWidth, letter)) return 0;
    return isIn(kWide, letter) ? 2 : 1;
}

}  // namespace

std::string harmless(std::string_view text, std::string_view kept)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Letter letter = letterAt(text);
        const std::string_view bytes = text.substr(0, std::max<std::size_t>(letter.length, 1));
        text.remove_prefix(bytes.size());
        if (letter.length == 0) {
            result.append("\uFFFD");
        } else if (isIn(kHarmful, letter.code) && kept.find(bytes) == std::string_view::npos) {
            appendEscape(result, letter.code);
        } else {
            result.append(bytes);
        }
    }
    return result;
}

std::string fitted(std::string line, std::size_t columns)
{
    std::size_t used = 0;
    std::size_t keep = 0;  // bytes that leave a column for the mark
    for (std::size_t at = 0; at < line.size();) {
        const Letter letter = letterAt(std::string_view(line).substr(at));
        used += widthOf(letter.code);
        if (used > columns) return line.erase(keep).append("…");
        at += std::max<std::size_t>(letter.length, 1);
        if (used < columns) keep = at;
    }
    return line;
}

std::string wrapped(std::string_view lines, std::size_t columns)
{
    std::string result;
    while (!lines.empty()) {
        std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        const std::size_t gap = line.rfind("  ");
        const std::size_t indent = gap == std::string_view::npos ? 0 : gap + 2;
        std::size_t taken = 0;  // by the blanks before what is left of the line
        while (indent < columns && line.size() > columns - taken) {
            const std::size_t blank = line.rfind(' ', columns - taken);
            if (blank == std::string_view::npos || blank + taken < indent) break;
            result.append(line.substr(0, blank)).append("\n").append(indent, ' ');
            line.remove_prefix(blank + 1);
            taken = indent;
        }
        result.append(line).append("\n");
    }
    return result;
}

}  // namespace logreader
