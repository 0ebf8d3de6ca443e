// Replies in each character set. The first line of the input is the Content-Type.
#include "pvutil/Charset.h"

#include <algorithm>
#include <string>

#include "fuzz/Check.h"

namespace {

using kzn::pvutil::Charset;
using kzn::pvutil::stringex::CharT;

constexpr CharT kReplacement = 0xFFFD;

void checkBytewise(std::string_view body, Charset charset, unsigned sameBelow, unsigned sameFrom)
{
    const CStringT text = kzn::pvutil::decoded(body, charset);
    fuzz::check(text.size() == body.size(), "a byte is a unit");
    for (std::size_t at = 0; at < body.size(); ++at) {
        const auto byte = static_cast<unsigned char>(body[at]);
        if (byte < sameBelow || byte >= sameFrom) fuzz::check(text[at] == byte, "the byte is its own character");
        if (charset == Charset::ascii && byte >= 0x80) fuzz::check(text[at] == kReplacement, "no ASCII");
    }
}

void checkUtf8(std::string_view body)
{
    const bool marked = body.substr(0, 3) == "\xEF\xBB\xBF";
    const CStringT expected = kzn::pvutil::stringex::FromUtf8(body.substr(marked ? 3 : 0));
    fuzz::check(kzn::pvutil::decoded(body, Charset::utf8) == expected, "a mark is dropped once");
}

void checkUtf16(std::string_view body)
{
    const CStringT little = fuzz::unitsOf(body);
    CStringT big = little;
    for (CharT& unit : big) unit = static_cast<CharT>(static_cast<unsigned>(unit) % 256 * 256 + unit / 256U);
    const bool isLittle = !little.empty() && (little.front() == 0xFEFF || little.front() == '<');
    CStringT expected = isLittle ? little : big;
    if (!expected.empty() && expected.front() == 0xFEFF) expected.erase(0, 1);
    if (body.size() % 2 == 1) expected += kReplacement;
    fuzz::check(kzn::pvutil::decoded(body, Charset::utf16) == expected, "units in the order of the mark");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::bytes(data, size);
    const std::size_t line = std::min(input.find('\n'), input.size());
    const std::string_view contentType = input.substr(0, line);
    const std::string_view body = input.substr(std::min(line + 1, input.size()));

    const Charset declared = kzn::pvutil::charsetOf(contentType);
    fuzz::check(kzn::pvutil::charsetOf(contentType) == declared, "the same again");
    fuzz::check(contentType.find('=') != std::string_view::npos || declared == Charset::utf8, "nothing declared");
    fuzz::note(kzn::pvutil::decoded(body, declared));

    checkBytewise(body, Charset::latin1, 0x100, 0x100);
    checkBytewise(body, Charset::windows1252, 0x80, 0xA0);
    checkBytewise(body, Charset::ascii, 0x80, 0x100);
    checkUtf8(body);
    checkUtf16(body);
    return 0;
}
