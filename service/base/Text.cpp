#include "service/base/Text.h"

#include <charconv>
#include <cstring>

namespace service {

namespace {

constexpr std::size_t kQuotedBytes = 80;

struct Lead {
    std::size_t length;
    std::uint32_t bits;
    std::uint32_t least;  // anything below would be an overlong form
};

Lead leadOf(unsigned char byte)
{
    if (byte < 0x80U) return {1, byte, 0};
    if ((byte & 0xE0U) == 0xC0U) return {2, byte & 0x1FU, 0x80};
    if ((byte & 0xF0U) == 0xE0U) return {3, byte & 0x0FU, 0x800};
    if ((byte & 0xF8U) == 0xF0U) return {4, byte & 0x07U, 0x10000};
    return {0, 0, 0};
}

std::string codePoint(std::uint32_t character)
{
    std::string text = "U+";
    for (int shift = character > 0xFFFFU ? 20 : 12; shift >= 0; shift -= 4) {
        text.push_back("0123456789ABCDEF"[(character >> static_cast<unsigned>(shift)) & 0xFU]);
    }
    return text;
}

// How many bytes at the start are printable ASCII, eight at a time.
std::size_t plainLength(std::string_view text)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
    constexpr std::uint64_t kBlanks = 0x2020202020202020ULL;
    std::size_t length = 0;
    for (; length + sizeof(std::uint64_t) <= text.size(); length += sizeof(std::uint64_t)) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + length, sizeof bytes);
        // Where all are below 0x80, a byte below a blank, and none before it, borrows its highest bit.
        if ((bytes & kHighBits) != 0 || ((bytes - kBlanks) & kHighBits) != 0) break;
    }
    return length;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

bool isXmlCharacter(std::uint32_t character)
{
    if (character < 0x20U) return character == 0x9U || character == 0xAU || character == 0xDU;
    if (character >= 0xD800U && character <= 0xDFFFU) return false;
    return character <= 0x10FFFFU && character != 0xFFFEU && character != 0xFFFFU;
}

std::size_t sequenceLength(std::string_view text, std::uint32_t& character)
{
    if (text.empty()) return 0;
    const Lead lead = leadOf(static_cast<unsigned char>(text[0]));
    if (lead.length == 0 || lead.length > text.size()) return 0;
    character = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U) return 0;
        character = (character << 6U) | (byte & 0x3FU);
    }
    const bool surrogate = character >= 0xD800U && character <= 0xDFFFU;
    if (character < lead.least || character > 0x10FFFFU || surrogate) return 0;
    return lead.length;
}

std::string faultOf(std::string_view text)
{
    for (;;) {
        text.remove_prefix(plainLength(text));
        if (text.empty()) return {};
        std::uint32_t character = 0;
        const std::size_t length = sequenceLength(text, character);
        if (length == 0) return "bytes that are not UTF-8";
        if (!isXmlCharacter(character)) return "the character " + codePoint(character) + ", which XML cannot carry";
        text.remove_prefix(length);
    }
}

void appendUtf8(std::string& out, std::uint32_t character)
{
    const auto put = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (character < 0x80U) {
        put(character);
    } else if (character < 0x800U) {
        put(0xC0U | (character >> 6U));
        put(0x80U | (character & 0x3FU));
    } else if (character < 0x10000U) {
        put(0xE0U | (character >> 12U));
        put(0x80U | ((character >> 6U) & 0x3FU));
        put(0x80U | (character & 0x3FU));
    } else {
        put(0xF0U | (character >> 18U));
        put(0x80U | ((character >> 12U) & 0x3FU));
        put(0x80U | ((character >> 6U) & 0x3FU));
        put(0x80U | (character & 0x3FU));
    }
}

std::size_t characterCount(std::string_view text)
{
    std::size_t count = 0;
    for (const char c : text) {
        if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++count;
    }
    return count;
}

std::optional<long long> wholeNumber(std::string_view text, long long least, long long most)
{
    long long value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value < least || value > most) return std::nullopt;
    return value;
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t at = text.find(separator);
        pieces.push_back(text.substr(0, at));
        if (at == std::string_view::npos) return pieces;
        text.remove_prefix(at + 1);
    }
}

std::string inQuotes(std::string_view text)
{
    std::string out = "\"";
    while (!text.empty()) {
        std::uint32_t character = 0;
        const std::size_t length = sequenceLength(text, character);
        if (out.size() + length > kQuotedBytes) {
            out += "...";
            break;
        }
        out += length == 0 ? std::string_view("?") : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out + '"';
}

bool sameText(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        difference |= static_cast<unsigned>(static_cast<unsigned char>(a[i]) ^ static_cast<unsigned char>(b[i]));
    }
    return difference == 0;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace service
