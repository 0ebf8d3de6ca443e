#include "pvutil/StringEx.h"

#include <algorithm>

#include "pvutil/Utf.h"

namespace kzn::pvutil::utf {

namespace {

bool isContinuation(unsigned char byte) noexcept
{
    return (byte & 0xC0) == 0x80;
}

// What a lead byte promises: how many bytes follow, and the range of the first of them, which is where over-long forms,
// surrogates and numbers beyond Unicode are told from the rest.
struct Lead {
    std::size_t tail = 0;  // 0: no lead byte at all
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
};

Lead leadOf(unsigned char byte) noexcept
{
    if (byte >= 0xC2 && byte <= 0xDF) return {1};
    if (byte == 0xE0) return {2, 0xA0};
    if (byte == 0xED) return {2, 0x80, 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF) return {2};
    if (byte == 0xF0) return {3, 0x90};
    if (byte >= 0xF1 && byte <= 0xF3) return {3};
    if (byte == 0xF4) return {3, 0x80, 0x8F};
    return {};
}

}  // namespace

char32_t next(const unsigned char*& at, const unsigned char* end) noexcept
{
    const unsigned char first = *at++;
    const Lead lead = leadOf(first);
    if (lead.tail == 0 || at == end || *at < lead.low || *at > lead.high) return kReplacement;

    char32_t point = first & (0x3F >> lead.tail);
    for (std::size_t read = 0; read < lead.tail; ++read) {
        if (at == end || !isContinuation(*at)) return kReplacement;
        point = (point << 6) | (*at++ & 0x3F);
    }
    return point;
}

}  // namespace kzn::pvutil::utf

namespace kzn::pvutil::stringex {

namespace {

// A sequence of four bytes becomes a pair.
unsigned char unitsOf(char byte) noexcept
{
    const auto value = static_cast<unsigned char>(byte);
    return static_cast<unsigned char>((utf::isContinuation(value) ? 0 : 1) + (value >= 0xF0 ? 1 : 0));
}

// Exact where the text is well-formed, and never far off. Counted by blocks whose sum fits a byte, so that the compiler
// can count many bytes at once.
std::size_t unitsOf(std::string_view utf8) noexcept
{
    constexpr std::size_t kBlock = 64;
    std::size_t units = 0;
    for (; utf8.size() >= kBlock; utf8.remove_prefix(kBlock)) {
        unsigned char sum = 0;
        for (std::size_t i = 0; i < kBlock; ++i) sum = static_cast<unsigned char>(sum + unitsOf(utf8[i]));
        units += sum;
    }
    for (const char byte : utf8) units += unitsOf(byte);
    return units;
}

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
    text.reserve(unitsOf(utf8));
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
