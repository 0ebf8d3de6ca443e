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

// The byte that a plus or a percent sign with its two digits stands for; cuts it off.
std::optional<char> takeByte(std::string_view& text)
{
    if (text.front() == '+') {
        text.remove_prefix(1);
        return ' ';
    }
    if (text.size() < 3) return std::nullopt;
    const int high = digitOf(text[1]);
    const int low = digitOf(text[2]);
    if (high < 0 || low < 0) return std::nullopt;
    text.remove_prefix(3);
    return static_cast<char>(static_cast<unsigned char>(high * 16 + low));
}

}  // namespace

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (;;) {
        std::size_t at = 0;
        while (at < text.size() && text[at] != '%' && text[at] != '+') ++at;
        out += text.substr(0, at);
        text.remove_prefix(at);
        if (text.empty()) return out;
        const std::optional<char> byte = takeByte(text);
        if (!byte) return std::nullopt;
        out.push_back(*byte);
    }
}

}  // namespace service
