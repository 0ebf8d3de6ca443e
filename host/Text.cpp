#include "host/Text.h"

#include <utf8proc.h>

#include <algorithm>

namespace host {

namespace {

using kzn::pvutil::stringex::CharT;

bool isHarmful(CharT unit)
{
    const auto code = static_cast<char32_t>(unit);
    const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F);
    const bool separator = code == 0x2028 || code == 0x2029;
    const bool turnsDirection = code == 0x061C || code == 0x200E || code == 0x200F ||
                                (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return control || separator || turnsDirection;
}

void appendEscape(CStringT& text, CharT unit)
{
    text.append({'\\', 'u'});
    for (int shift = 12; shift >= 0; shift -= 4) {
        text.push_back(static_cast<CharT>("0123456789abcdef"[(static_cast<unsigned>(unit) >> shift) & 0xFU]));
    }
}

/// The code point that the text begins with and the bytes that it takes; a byte that begins none stands for itself.
struct Letter {
    utf8proc_int32_t code = 0;
    std::size_t size = 0;
};

Letter firstLetter(std::string_view utf8)
{
    utf8proc_int32_t code = 0;
    const auto* const bytes = reinterpret_cast<const utf8proc_uint8_t*>(utf8.data());
    const utf8proc_ssize_t size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(utf8.size()), &code);
    if (size <= 0) return {'?', 1};
    return {code, static_cast<std::size_t>(size)};
}

/// What a reader takes for one letter, with the columns that it takes.
struct Cluster {
    std::size_t size = 0;
    std::size_t width = 0;
};

/// The sum of its parts, but never more than two: a family of pictures is one picture. One that is asked to be shown as
/// a picture takes two.
Cluster firstCluster(std::string_view utf8)
{
    constexpr std::size_t kMost = 2;
    constexpr utf8proc_int32_t kAsPicture = 0xFE0F;
    Cluster cluster;
    utf8proc_int32_t state = 0;
    for (utf8proc_int32_t before = 0; cluster.size < utf8.size();) {
        const Letter letter = firstLetter(utf8.substr(cluster.size));
        if (cluster.size > 0 && utf8proc_grapheme_break_stateful(before, letter.code, &state)) break;
        cluster.size += letter.size;
        cluster.width += static_cast<std::size_t>(utf8proc_charwidth(letter.code));
        if (letter.code == kAsPicture) cluster.width = kMost;
        before = letter.code;
    }
    cluster.width = std::min(cluster.width, kMost);
    return cluster;
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
    std::size_t width = 0;
    while (!utf8.empty()) {
        const Cluster cluster = firstCluster(utf8);
        width += cluster.width;
        utf8.remove_prefix(cluster.size);
    }
    return width;
}

std::string shortened(std::string_view utf8, std::size_t width)
{
    constexpr std::string_view kDots = "…";
    std::size_t fits = 0;  // with the dots behind it
    std::size_t taken = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const Cluster cluster = firstCluster(utf8.substr(at));
        taken += cluster.width;
        if (taken > width) return std::string(utf8.substr(0, fits)).append(kDots);
        at += cluster.size;
        if (taken < width) fits = at;
    }
    return std::string(utf8);
}

}  // namespace host
