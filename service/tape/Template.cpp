#include "service/tape/Template.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

#include "service/base/Percent.h"
#include "service/base/Text.h"
#include "service/tape/Headers.h"

namespace service::tape {

namespace {

constexpr std::array<const char*, 8> kNames{"", "server", "cred", "secret", "id", "time", "any", "boundary"};

bool isUnreserved(unsigned char c)
{
    return std::isalnum(c) != 0 || std::string_view("-_.~").find(static_cast<char>(c)) != std::string_view::npos;
}

std::string percentEncoded(std::string_view text, std::string_view digits)
{
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (isUnreserved(byte)) out += c;
        else (out += '%').append(1, digits[byte >> 4U]).append(1, digits[byte & 0x0FU]);
    }
    return out;
}

std::string xmlEscaped(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '&') out += "&amp;";
        else if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else out += c;
    }
    return out;
}

// The character that a reference such as "#x41" or "amp" stands for; 0 where there is none.
std::uint32_t characterOf(std::string_view name)
{
    constexpr std::array<std::pair<std::string_view, char>, 5> kEntities{
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    for (const auto& [entity, character] : kEntities) {
        if (name == entity) return static_cast<unsigned char>(character);
    }
    if (!name.starts_with('#')) return 0;
    name.remove_prefix(1);
    const bool hex = name.starts_with('x');
    if (hex) name.remove_prefix(1);
    std::uint32_t character = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), character, hex ? 16 : 10);
    return error == std::errc() && end == name.data() + name.size() && isXmlCharacter(character) ? character : 0;
}

std::string xmlUnescaped(std::string_view text)
{
    std::string out;
    while (!text.empty()) {
        const std::size_t end = text.front() == '&' ? text.find(';') : std::string_view::npos;
        const std::uint32_t character = end == std::string_view::npos ? 0 : characterOf(text.substr(1, end - 1));
        if (character != 0) appendUtf8(out, character);
        else out += text.front();
        text.remove_prefix(character != 0 ? end + 1 : 1);
    }
    return out;
}

}  // namespace

std::string nameOf(const Piece& piece)
{
    std::string name = kNames.at(static_cast<std::size_t>(piece.kind));
    // Most tapes have one secret alone, which needs no number.
    const int first = piece.kind == Kind::secret ? 2 : 1;
    if (piece.number >= first) name += " " + std::to_string(piece.number);
    return name;
}

void append(Template& text, Piece piece)
{
    const bool literal = piece.kind == Kind::literal;
    if (literal && piece.text.empty()) return;
    if (literal && !text.empty() && text.back().kind == Kind::literal) text.back().text += piece.text;
    else text.push_back(std::move(piece));
}

std::string spelled(std::string_view value, Place place)
{
    if (place == Place::form) return percentEncoded(value, "0123456789ABCDEF");
    return place == Place::xml ? xmlEscaped(value) : std::string(value);
}

std::string unspelled(std::string_view text, Place place)
{
    if (place == Place::form) return percentDecoded(text).value_or(std::string(text));
    return place == Place::xml ? xmlUnescaped(text) : std::string(text);
}

std::vector<std::string> spellings(std::string_view value)
{
    std::vector<std::string> all;
    for (const std::string& text : {std::string(value), xmlEscaped(value)}) {
        all.push_back(text);
        for (const char* const digits : {"0123456789ABCDEF", "0123456789abcdef"}) {
            std::string form = percentEncoded(text, digits);
            all.push_back(form);
            for (std::size_t at = form.find("%20"); at != std::string::npos; at = form.find("%20", at)) {
                form.replace(at, 3, "+");
            }
            all.push_back(form);
        }
    }
    std::ranges::sort(all, [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() > b.size() : a < b;
    });
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

Place placeOf(std::string_view contentType)
{
    const std::string type = lower(contentType.substr(0, contentType.find(';')));
    if (type.find("xml") != std::string::npos) return Place::xml;
    return type.find("urlencoded") != std::string::npos ? Place::form : Place::plain;
}

bool isMultipart(std::string_view contentType)
{
    return lower(contentType).starts_with("multipart/");
}

}  // namespace service::tape
