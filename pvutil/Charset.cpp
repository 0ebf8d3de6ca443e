#include "pvutil/Charset.h"

#include <algorithm>
#include <array>
#include <utility>

#include "pvutil/Ascii.h"
#include "pvutil/Utf.h"

namespace kzn::pvutil {

using stringex::CharT;
using stringex::CStringT;

namespace {

constexpr CharT kUnknown = static_cast<CharT>(utf::kReplacement);

// 0x80 to 0x9F of windows-1252; the five bytes that it leaves out are the control characters of that number.
constexpr std::array<CharT, 32> kWindows1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

CharT fromLatin1(unsigned char byte) noexcept
{
    return byte;
}

CharT fromWindows1252(unsigned char byte) noexcept
{
    return byte < 0x80 || byte > 0x9F ? CharT{byte} : kWindows1252[byte - 0x80U];
}

CharT fromAscii(unsigned char byte) noexcept
{
    return byte < 0x80 ? CharT{byte} : kUnknown;
}

template <typename FromByte>
CStringT widened(std::string_view bytes, FromByte fromByte)
{
    CStringT text(bytes.size(), CharT{});
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [&](char c) { return fromByte(static_cast<unsigned char>(c)); });
    return text;
}

// The mark decides which byte comes first, without one the "<" that a document begins with.
bool isLittleEndian(std::string_view bytes) noexcept
{
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with(std::string_view("<\0", 2));
}

CStringT fromUtf16(std::string_view bytes)
{
    constexpr CharT kMark = 0xFEFF;
    const std::size_t low = isLittleEndian(bytes) ? 0 : 1;
    const auto unit = [&](std::size_t at) {
        const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
        return static_cast<CharT>(byte(at + low) | (byte(at + 1 - low) << 8));
    };
    std::size_t at = bytes.size() >= 2 && unit(0) == kMark ? 2 : 0;
    CStringT text;
    text.reserve(bytes.size() / 2);
    for (; at + 1 < bytes.size(); at += 2) text += unit(at);
    if (at < bytes.size()) text += kUnknown;
    return text;
}

// Cuts the first parameter off `rest`: what stands before the next ";" that no quotes enclose.
std::string_view nextParameter(std::string_view& rest) noexcept
{
    bool quoted = false;
    std::size_t end = 0;
    for (; end < rest.size() && (quoted || rest[end] != ';'); ++end)
        if (rest[end] == '"') quoted = !quoted;
    const auto parameter = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return parameter;
}

std::string_view unquoted(std::string_view value) noexcept
{
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') return value;
    return value.substr(1, value.size() - 2);
}

std::string_view declaredCharset(std::string_view contentType) noexcept
{
    nextParameter(contentType);  // the media type itself
    while (!contentType.empty()) {
        const auto parameter = nextParameter(contentType);
        const std::size_t equals = parameter.find('=');
        if (equals == std::string_view::npos || !ascii::same(ascii::trimmed(parameter.substr(0, equals)), "charset"))
            continue;
        return unquoted(ascii::trimmed(parameter.substr(equals + 1)));
    }
    return {};
}

}  // namespace

Charset charsetOf(std::string_view contentType) noexcept
{
    using Name = std::pair<std::string_view, Charset>;
    constexpr std::array<Name, 4> kNames = {Name{"utf-16", Charset::utf16}, Name{"iso-8859-1", Charset::latin1},
                                            Name{"windows-1252", Charset::windows1252},
                                            Name{"us-ascii", Charset::ascii}};
    const auto declared = declaredCharset(contentType);
    const auto found =
        std::find_if(kNames.begin(), kNames.end(), [&](const Name& name) { return ascii::same(name.first, declared); });
    return found == kNames.end() ? Charset::utf8 : found->second;
}

CStringT decoded(std::string_view bytes, Charset charset)
{
    switch (charset) {
    case Charset::utf16: return fromUtf16(bytes);
    case Charset::latin1: return widened(bytes, fromLatin1);
    case Charset::windows1252: return widened(bytes, fromWindows1252);
    case Charset::ascii: return widened(bytes, fromAscii);
    case Charset::utf8: break;
    }
    return stringex::FromUtf8(withoutUtf8Mark(bytes));
}

std::string_view withoutUtf8Mark(std::string_view bytes) noexcept
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
    return bytes;
}

}  // namespace kzn::pvutil
