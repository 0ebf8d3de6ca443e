// Numbers in texts against the C library's widest reading.
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

#include "fuzz/Check.h"
#include "records/Number.h"

namespace {

// strtoll takes the same blanks, sign and digits in the "C" locale, and saturates far outside of 32 bits.
int readWidely(const CStringT& text)
{
    std::string narrow;
    for (const auto unit : text) narrow += unit < 0x80 ? static_cast<char>(unit) : '?';
    const long long number = std::strtoll(narrow.c_str(), nullptr, 10);
    constexpr long long kMin = std::numeric_limits<int>::min();
    constexpr long long kMax = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, kMin, kMax));
}

void checkNumber(const CStringT& text)
{
    fuzz::check(toInt(text) == readWidely(text), "the number in the text");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::bytes(data, size);
    CStringT text;
    for (const char byte : input) text += static_cast<unsigned char>(byte);
    checkNumber(text);
    checkNumber(fuzz::unitsOf(input));
    return 0;
}
