#include "service/base/Percent.h"

namespace service {

namespace {

int digitOf(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// The byte that the two digits behind a percent sign stand for.
std::optional<char> byteOf(std::string_view digits)
{
    if (digits.size() < 2) return std::nullopt;
    const int high = digitOf(digits[0]);
    const int low = digitOf(digits[1]);
    if (high < 0 || low < 0) return std::nullopt;
    return static_cast<char>(static_cast<unsigned char>(high * 16 + low));
}

}  // namespace

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out.push_back(text[i] == '+' ? ' ' : text[i]);
            continue;
        }
        const auto byte = byteOf(text.substr(i + 1));
        if (!byte) return std::nullopt;
        out.push_back(*byte);
        i += 2;
    }
    return out;
}

}  // namespace service
