// The conversions against a reader that knows nothing but the table of well-formed sequences.
#include <array>
#include <string>

#include "fuzz/Check.h"
#include "pvutil/StringEx.h"

namespace {

using kzn::pvutil::stringex::CharT;
using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

struct Range {
    unsigned char low;
    unsigned char high;
};

struct Row {
    std::size_t length;
    std::array<Range, 4> bytes;
};

constexpr Range kTail = {0x80, 0xBF};
constexpr std::array<Row, 9> kRows = {{{1, {{{0x00, 0x7F}}}},
                                       {2, {{{0xC2, 0xDF}, kTail}}},
                                       {3, {{{0xE0, 0xE0}, {0xA0, 0xBF}, kTail}}},
                                       {3, {{{0xE1, 0xEC}, kTail, kTail}}},
                                       {3, {{{0xED, 0xED}, {0x80, 0x9F}, kTail}}},
                                       {3, {{{0xEE, 0xEF}, kTail, kTail}}},
                                       {4, {{{0xF0, 0xF0}, {0x90, 0xBF}, kTail, kTail}}},
                                       {4, {{{0xF1, 0xF3}, kTail, kTail, kTail}}},
                                       {4, {{{0xF4, 0xF4}, {0x80, 0x8F}, kTail, kTail}}}}};

unsigned char byteAt(std::string_view text, std::size_t at)
{
    return static_cast<unsigned char>(text[at]);
}

// How many bytes at the front fit the row.
std::size_t fitting(const Row& row, std::string_view text)
{
    std::size_t fit = 0;
    while (fit < row.length && fit < text.size() && byteAt(text, fit) >= row.bytes[fit].low &&
           byteAt(text, fit) <= row.bytes[fit].high)
        ++fit;
    return fit;
}

void appendSequence(CStringT& text, std::string_view sequence)
{
    constexpr std::array<unsigned, 5> kLeadBits = {0, 128, 32, 16, 8};
    unsigned point = byteAt(sequence, 0) % kLeadBits[sequence.size()];
    for (std::size_t at = 1; at < sequence.size(); ++at) point = point * 64 + byteAt(sequence, at) % 64;
    if (point > 0xFFFF) {
        text += static_cast<CharT>(0xD7C0 + point / 1024);
        text += static_cast<CharT>(0xDC00 + point % 1024);
    } else {
        text += static_cast<CharT>(point);
    }
}

struct Reading {
    CStringT text;
    bool wellFormed = true;
};

Reading readSlowly(std::string_view utf8)
{
    Reading reading;
    while (!utf8.empty()) {
        std::size_t longest = 0;
        bool whole = false;
        for (const Row& row : kRows) {
            const std::size_t fit = fitting(row, utf8);
            longest = fit > longest ? fit : longest;
            whole = whole || fit == row.length;
        }
        if (whole) {
            appendSequence(reading.text, utf8.substr(0, longest));
        } else {
            reading.text += CharT{0xFFFD};
            reading.wellFormed = false;
        }
        utf8.remove_prefix(longest == 0 ? 1 : longest);
    }
    return reading;
}

bool isHigh(CharT unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLow(CharT unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

CStringT withoutLoneSurrogates(CStringT text)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool pair = isHigh(text[at]) && at + 1 < text.size() && isLow(text[at + 1]);
        if (pair) {
            ++at;
        } else if (isHigh(text[at]) || isLow(text[at])) {
            text[at] = CharT{0xFFFD};
        }
    }
    return text;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::bytes(data, size);
    const Reading expected = readSlowly(input);
    const CStringT wide = FromUtf8(input);
    fuzz::check(wide == expected.text, "UTF-8 is read as the table says");
    fuzz::check(!expected.wellFormed || ToUtf8(wide) == input, "well-formed UTF-8 comes back unchanged");
    fuzz::check(FromUtf8(ToUtf8(wide)) == wide, "what was read comes back unchanged");

    const CStringT units = fuzz::unitsOf(input);
    const std::string utf8 = ToUtf8(units);
    fuzz::check(readSlowly(utf8).wellFormed, "any units give well-formed UTF-8");
    fuzz::check(FromUtf8(utf8) == withoutLoneSurrogates(units), "all but lone surrogates comes back unchanged");
    return 0;
}
