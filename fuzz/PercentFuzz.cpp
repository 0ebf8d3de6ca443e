// Percent-encoding against a decoder, and its two roads against each other.
#include <string>

#include "fuzz/Check.h"
#include "pvutil/UrlEncoder.h"

namespace {

using kzn::pvutil::URLEncoder;
using kzn::pvutil::stringex::ToUtf8;

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr std::string_view kStaying = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~";

std::string decoded(std::string_view encoded)
{
    std::string bytes;
    for (std::size_t at = 0; at < encoded.size(); ++at) {
        if (encoded[at] != '%') {
            fuzz::check(kStaying.find(encoded[at]) != std::string_view::npos, "only those bytes stay");
            bytes += encoded[at];
            continue;
        }
        fuzz::check(at + 2 < encoded.size(), "two digits follow");
        const std::size_t high = kDigits.find(encoded[++at]);
        const std::size_t low = kDigits.find(encoded[++at]);
        fuzz::check(high < 16 && low < 16, "the digits are upper-case hexadecimal ones");
        bytes += static_cast<char>(high * 16 + low);
        fuzz::check(kStaying.find(bytes.back()) == std::string_view::npos, "what may stay is not encoded");
    }
    return bytes;
}

CStringT widened(std::string_view ascii)
{
    return CStringT(ascii.begin(), ascii.end());
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::bytes(data, size);
    const std::string encoded = URLEncoder::EncodeA(input);
    fuzz::check(decoded(encoded) == input, "it decodes to what it was");

    const CStringT units = fuzz::unitsOf(input);
    CStringT body = widened("&x=");
    URLEncoder::append(body, units);
    fuzz::check(body == widened("&x=" + URLEncoder::EncodeA(ToUtf8(units))), "wide text goes by way of its UTF-8");
    return 0;
}
