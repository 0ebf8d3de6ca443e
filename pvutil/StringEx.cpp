#include "pvutil/StringEx.h"

#include <algorithm>

#include "pvutil/Utf.h"

namespace kzn::pvutil::stringex {

namespace {

std::string_view referenceOf(char32_t point) noexcept
{
    switch (point) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    default: return {};
    }
}

// Surrogates aside, which stand for nothing by themselves.
bool isXmlCharacter(char32_t point) noexcept
{
    if (point < 0x20) return point == '\t' || point == '\n' || point == '\r';
    return point != 0xFFFE && point != 0xFFFF;
}

}  // namespace

std::string ToUtf8(const CStringT& text)
{
    std::string utf8;
    utf8.reserve(text.size());
    utf::BlockWriter writer(utf8);
    std::array<unsigned char, 4> bytes;
    for (auto at = text.data(), end = at + text.size(); at != end;) {
        writer.putAscii(at, end);
        if (at == end || *at < 0x80) continue;
        const std::size_t count = utf::toUtf8(utf::next(at, end), bytes);
        std::copy_n(bytes.begin(), count, writer.room());
        writer.advance(count);
    }
    writer.flush();
    return utf8;
}

CStringT FromUtf8(std::string_view utf8)
{
    CStringT text;
    text.reserve(utf::unitsOf(utf8));
    utf::BlockWriter writer(text);
    auto at = reinterpret_cast<const unsigned char*>(utf8.data());
    for (const auto end = at + utf8.size(); at != end;) {
        writer.putAscii(at, end);
        if (at == end || *at < 0x80) continue;
        const char32_t point = utf::next(at, end);
        if (point < 0x10000) {
            writer.put(static_cast<CharT>(point));
        } else {
            writer.put(static_cast<CharT>(0xD800 + ((point - 0x10000) >> 10)));
            writer.put(static_cast<CharT>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        }
    }
    writer.flush();
    return text;
}

CStringT XmlText(const CStringT& text)
{
    CStringT safe;
    safe.reserve(text.size());
    for (auto at = text.data(), end = at + text.size(); at != end;) {
        const auto begin = at;
        const bool isLone = utf::isLoneSurrogate(at, end);
        const char32_t point = utf::next(at, end);
        if (const std::string_view reference = referenceOf(point); !reference.empty())
            safe.append(reference.begin(), reference.end());
        else if (!isLone && isXmlCharacter(point)) safe.append(begin, at);
    }
    return safe;
}

}  // namespace kzn::pvutil::stringex
