#include "service/tape/Escapes.h"

#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "service/base/Text.h"
#include "service/tape/Tape.h"

namespace service::tape {

namespace {

constexpr std::array<std::pair<char, char>, 5> kEscapes{
    {{'s', ' '}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'\\', '\\'}}};
constexpr long long kMostPlaceholders = 1'000'000;

Unit escapeOf(char c)
{
    for (const auto& [name, meant] : kEscapes) {
        if (meant == c && c != ' ') return {{'\\', name}, 2, 1};
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    return {{'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0x0FU]}, 4, 1};
}

// Control characters beyond ASCII, and what an editor shows as nothing, would not survive a reader's eye.
bool isShown(std::uint32_t character)
{
    return character >= 0xA1 && character != 0xAD && character != 0xFEFF &&
           (character < 0x2000 || character > 0x206F) && isXmlCharacter(character);
}

// The byte of the escape behind a backslash; cuts the escape off.
char takeEscape(std::string_view& text, std::size_t line)
{
    const char kind = text.empty() ? '\0' : text.front();
    for (const auto& [name, meant] : kEscapes) {
        if (name != kind) continue;
        text.remove_prefix(1);
        return meant;
    }
    unsigned byte = 0;
    if (kind == 'x' && text.size() >= 3) {
        const auto [end, error] = std::from_chars(text.data() + 1, text.data() + 3, byte, 16);
        if (error == std::errc() && end == text.data() + 3) {
            text.remove_prefix(3);
            return static_cast<char>(byte);
        }
    }
    throw TapeError(line, "unknown escape");
}

std::string plainText(std::string_view text, std::size_t line)
{
    std::string out;
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        out += c == '\\' ? takeEscape(text, line) : c;
    }
    return out;
}

std::optional<Kind> kindOf(std::string_view name)
{
    for (int kind = static_cast<int>(Kind::server); kind <= static_cast<int>(Kind::boundary); ++kind) {
        if (nameOf({static_cast<Kind>(kind), 0, {}}) == name) return static_cast<Kind>(kind);
    }
    return std::nullopt;
}

bool isNumbered(Kind kind)
{
    return kind == Kind::cred || kind == Kind::secret || kind == Kind::id;
}

// The kind that the name says, and the number that some have.
Piece namedPiece(std::string_view name, std::size_t line)
{
    const std::size_t blank = name.find(' ');
    const std::optional<Kind> kind = kindOf(name.substr(0, blank));
    if (!kind) throw TapeError(line, "no such placeholder: {" + std::string(name) + "}");
    if (blank != std::string_view::npos) {
        const auto number = wholeNumber(name.substr(blank + 1), 1, kMostPlaceholders);
        if (!number || !isNumbered(*kind)) throw TapeError(line, "no such number: {" + std::string(name) + "}");
        return {*kind, static_cast<int>(*number), {}};
    }
    if (*kind == Kind::secret) return {*kind, 1, {}};
    if (isNumbered(*kind)) throw TapeError(line, "a number belongs behind {" + std::string(name));
    return {*kind, 0, {}};
}

// What stands between the braces: a name, and the recorded value that some have.
Piece placeholderOf(std::string_view inner, std::size_t line)
{
    const std::size_t equals = inner.find(" = ");
    Piece piece = namedPiece(inner.substr(0, equals), line);
    if (equals == std::string_view::npos) return piece;
    piece.text = plainText(inner.substr(equals + 3), line);
    const bool valued = piece.kind == Kind::id || piece.kind == Kind::time;
    if (!valued || piece.text.empty()) throw TapeError(line, "no value belongs there");
    return piece;
}

}  // namespace

void appendUnescaped(Template& out, std::string_view text, std::size_t line)
{
    Piece literal;
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c == '\\') {
            literal.text += takeEscape(text, line);
        } else if (c == '{') {
            const std::size_t end = text.find('}');
            if (end == std::string_view::npos)
                throw TapeError(line, "a brace is not closed; \\x7B is one that is meant");
            append(out, std::exchange(literal, {}));
            append(out, placeholderOf(text.substr(0, end), line));
            text.remove_prefix(end + 1);
        } else {
            literal.text += c;
        }
    }
    append(out, std::move(literal));
}

Unit unitAt(std::string_view text)
{
    const char c = text.front();
    if (c >= ' ' && c <= '~' && c != '\\' && c != '{' && c != '}') return {{c}, 1, 1};
    std::uint32_t character = 0;
    const std::size_t length = static_cast<unsigned char>(c) < 0x80U ? 1 : sequenceLength(text, character);
    if (length <= 1 || !isShown(character)) return escapeOf(c);
    Unit unit{{}, length, length};
    text.copy(unit.written.data(), length);
    return unit;
}

std::string escaped(std::string_view text)
{
    std::string out;
    while (!text.empty()) {
        const Unit unit = unitAt(text);
        out += unit.text();
        text.remove_prefix(unit.taken);
    }
    return out;
}

std::string placeholderText(const Piece& piece)
{
    std::string out = "{" + nameOf(piece);
    if (!piece.text.empty()) out += " = " + escaped(piece.text);
    return out + "}";
}

}  // namespace service::tape
