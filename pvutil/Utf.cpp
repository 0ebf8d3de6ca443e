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

// A sequence of four bytes becomes a pair.
unsigned char unitsOf(char byte) noexcept
{
    const auto value = static_cast<unsigned char>(byte);
    return static_cast<unsigned char>((isContinuation(value) ? 0 : 1) + (value >= 0xF0 ? 1 : 0));
}

// Widens so many units, a number that the compiler knows; returns all their bits.
template <std::ptrdiff_t count>
unsigned widen(const char* from, stringex::CharT* to) noexcept
{
    unsigned char any = 0;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(from[i]);
        any = static_cast<unsigned char>(any | byte);
        to[i] = byte;
    }
    return any;
}

// Of a text that is longer than that, in steps of so many; the last one goes over what was done before, which takes
// less than to look how long it has to be.
template <std::ptrdiff_t count>
unsigned widenAll(const char* from, const char* end, stringex::CharT* to) noexcept
{
    unsigned any = 0;
    for (; end - from > count; from += count, to += count) any |= widen<count>(from, to);
    const std::ptrdiff_t back = count - (end - from);
    return any | widen<count>(from - back, to - back);
}

// As if all of it were ASCII; whether it is.
bool widenAscii(std::string_view text, stringex::CharT* to) noexcept
{
    const char* const from = text.data();
    const char* const end = from + text.size();
    if (text.size() >= 16) return widenAll<16>(from, end, to) < 0x80;
    if (text.size() >= 4) return widenAll<4>(from, end, to) < 0x80;
    unsigned any = 0;
    for (const char byte : text) any |= widen<1>(&byte, to++);
    return any < 0x80;
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

// Ill-formed is what reads as U+FFFD and is not the three bytes of that very character.
bool isWellFormed(std::string_view utf8) noexcept
{
    auto at = reinterpret_cast<const unsigned char*>(utf8.data());
    for (const auto end = at + utf8.size(); at != end;) {
        while (end - at >= kAtOnce && isAscii(at)) at += kAtOnce;
        if (at == end) break;
        const auto begin = at;
        if (*at < 0x80) ++at;
        else if (next(at, end) == kReplacement && !(at - begin == 3 && *begin == 0xEF)) return false;
    }
    return true;
}

// Counted by blocks whose sum fits a byte, so that the compiler can count many bytes at once.
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

void assign(stringex::CStringT& text, std::string_view utf8)
{
    text.resize(utf8.size());
    if (!widenAscii(utf8, text.data())) text = stringex::FromUtf8(utf8);
}

}  // namespace kzn::pvutil::utf
