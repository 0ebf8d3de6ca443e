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
        if (i + 2 >= text.size()) return std::nullopt;
        const int high = digitOf(text[i + 1]);
        const int low = digitOf(text[i + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        out.push_back(static_cast<char>(static_cast<unsigned char>(high * 16 + low)));
        i += 2;
    }
    return out;
}

}  // namespace service
