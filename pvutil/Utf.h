// Between UTF-16 and UTF-8, one code point at a time or many; and the writer that both directions and the form body
// share.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "pvutil/StringEx.h"

namespace kzn::pvutil::utf {

constexpr char32_t kReplacement = 0xFFFD;

/// Reads the code point at `at` and moves behind it; a surrogate without its partner reads as U+FFFD.
inline char32_t next(const stringex::CharT*& at, const stringex::CharT* end) noexcept
{
    const char32_t unit = static_cast<char16_t>(*at++);
    if (unit < 0xD800 || unit > 0xDFFF) return unit;
    if (unit > 0xDBFF || at == end) return kReplacement;
    const char32_t partner = static_cast<char16_t>(*at);
    if (partner < 0xDC00 || partner > 0xDFFF) return kReplacement;
    ++at;
    return 0x10000 + ((unit - 0xD800) << 10) + (partner - 0xDC00);
}

/// Whether the unit at `at` is a surrogate without its partner, which `next` cannot tell from U+FFFD itself.
inline bool isLoneSurrogate(const stringex::CharT* at, const stringex::CharT* end) noexcept
{
    const char32_t unit = static_cast<char16_t>(*at);
    return unit >= 0xD800 && unit <= 0xDFFF && next(at, end) == kReplacement;
}

/// The same of UTF-8, for a byte that is not ASCII; the longest beginning of a sequence that breaks off is one U+FFFD.
char32_t next(const unsigned char*& at, const unsigned char* end) noexcept;

bool isWellFormed(std::string_view utf8) noexcept;

/// How many units of UTF-16 a text has. Exact where it is well-formed, and never far off.
std::size_t unitsOf(std::string_view utf8) noexcept;

/// Puts the UTF-16 of a text in place of another; most are short, and ASCII.
void assign(stringex::CStringT& text, std::string_view utf8);

/// The UTF-8 bytes of a code point; returns how many of the four are used.
inline std::size_t toUtf8(char32_t point, std::array<unsigned char, 4>& bytes) noexcept
{
    const auto tail = [point](int shift) { return static_cast<unsigned char>(0x80 | ((point >> shift) & 0x3F)); };
    if (point < 0x80) {
        bytes[0] = static_cast<unsigned char>(point);
        return 1;
    }
    if (point < 0x800) {
        bytes = {static_cast<unsigned char>(0xC0 | (point >> 6)), tail(0)};
        return 2;
    }
    if (point < 0x10000) {
        bytes = {static_cast<unsigned char>(0xE0 | (point >> 12)), tail(6), tail(0)};
        return 3;
    }
    bytes = {static_cast<unsigned char>(0xF0 | (point >> 18)), tail(12), tail(6), tail(0)};
    return 4;
}

/// How many units are looked at together: a number of turns that the compiler knows, which it makes a few of the
/// processor's wide ones.
constexpr std::ptrdiff_t kAtOnce = 16;

/// Whether all of the kAtOnce units from `at` on are ASCII.
template <typename Unit>
bool isAscii(const Unit* at) noexcept
{
    Unit any = 0;
    for (std::ptrdiff_t i = 0; i < kAtOnce; ++i) any = static_cast<Unit>(any | at[i]);
    return any < 0x80;
}

/// Gathers units in a block on the stack and appends them to a text block by block, so that nothing grows but the text.
template <typename Text>
class BlockWriter {
public:
    using Unit = typename Text::value_type;
    static constexpr std::size_t kReserve = 4;

    explicit BlockWriter(Text& text) : text_(text) {}
    BlockWriter(const BlockWriter&) = delete;
    BlockWriter& operator=(const BlockWriter&) = delete;

    /// Room for up to kReserve further units; `advance` says how many were used.
    Unit* room()
    {
        if (used_ > kBlock - kReserve) flush();
        return block_.data() + used_;
    }

    void advance(std::size_t count) noexcept { used_ += count; }

    /// For a loop of its own over many units: it may write kReserve units at a time from `room()` on, as long as it
    /// stands before `full()`, and says at last how far it came.
    const Unit* full() const noexcept { return block_.data() + kBlock - kReserve + 1; }
    void usedTo(const Unit* end) noexcept { used_ = static_cast<std::size_t>(end - block_.data()); }

    /// The ASCII that `at` begins with, as far as the block has room; moves behind it.
    template <typename From>
    void putAscii(const From*& at, const From* end)
    {
        Unit* out = room();
        const Unit* const stop = full();
        for (; end - at >= kAtOnce && stop - out >= kAtOnce && isAscii(at); at += kAtOnce, out += kAtOnce)
            std::copy_n(at, kAtOnce, out);
        for (; at != end && *at < 0x80 && out != stop; ++at) *out++ = static_cast<Unit>(*at);
        usedTo(out);
    }

    void put(Unit unit)
    {
        *room() = unit;
        advance(1);
    }

    /// To be called when all is written: what is left in the block goes out.
    void flush()
    {
        text_.append(block_.data(), used_);
        used_ = 0;
    }

private:
    static constexpr std::size_t kBlock = 1024;

    Text& text_;
    std::size_t used_ = 0;
    std::array<Unit, kBlock> block_;
};

}  // namespace kzn::pvutil::utf
