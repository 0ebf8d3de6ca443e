#include "log/Form.h"

#include <algorithm>
#include <array>

namespace logreader {

namespace {

constexpr std::string_view kHexadecimal = "0123456789abcdef";

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t digit(char c)
{
    return kHexadecimal.find(lower(c));
}

bool isCommandName(std::string_view name)
{
    static constexpr std::array<std::string_view, 15> kNames = {"cmd",      "task",  "type", "id",         "select",
                                                                "where",    "xml",   "cred", "page",       "username",
                                                                "password", "token", "isp",  "autocommit", "workspace"};
    return std::ranges::find(kNames, name) != kNames.end();
}

std::string_view takePiece(std::string_view& form)
{
    const std::size_t end = std::min(form.find('&'), form.size());
    const std::string_view piece = form.substr(0, end);
    form.remove_prefix(std::min(end + 1, form.size()));
    return piece;
}

bool isEncodedByte(char c)
{
    const char small = lower(c);
    return (small >= 'a' && small <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("_.-~%+").find(c) != std::string_view::npos;
}

bool mayBeName(std::string_view name)
{
    constexpr std::size_t kLongestName = 64;
    return name.size() <= kLongestName && std::ranges::all_of(name, isEncodedByte);
}

/// From the end, where most names differ at once. The word is in small letters.
bool endsInWord(std::string_view name, std::string_view word)
{
    if (name.size() < word.size()) return false;
    name.remove_prefix(name.size() - word.size());
    for (std::size_t left = word.size(); left > 0; --left) {
        if (lower(name[left - 1]) != word[left - 1]) return false;
    }
    return true;
}

/// As the caller's own command ends, whatever it begins with.
bool endsInCredential(std::string_view text)
{
    while (!text.empty() && isEncodedByte(text.back())) text.remove_suffix(1);
    return text.ends_with("&cred=");
}

/// How many bytes at the beginning mean themselves.
std::size_t plainLength(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && text[length] != '%' && text[length] != '+') ++length;
    return length;
}

/// Takes a "%" or a "+", with what belongs to it.
char takeDecoded(std::string_view& text)
{
    const bool isCode = text[0] == '%' && text.size() > 2 && digit(text[1]) != std::string_view::npos &&
                        digit(text[2]) != std::string_view::npos;
    char c = text[0] == '+' ? ' ' : text[0];
    if (isCode) c = static_cast<char>(digit(text[1]) * 16 + digit(text[2]));
    text.remove_prefix(isCode ? 3 : 1);
    return c;
}

}  // namespace

std::string percentDecoded(std::string_view text)
{
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = plainLength(text);
        plain.append(text.substr(0, length));
        text.remove_prefix(length);
        if (!text.empty()) plain += takeDecoded(text);
    }
    return plain;
}

bool isSecretName(std::string_view name)
{
    static constexpr std::array<std::string_view, 8> kWords = {"password", "passwd", "pwd",         "token",
                                                               "cred",     "secret", "credentials", "credential"};
    return std::ranges::any_of(kWords, [&](std::string_view word) { return endsInWord(name, word); });
}

Fields fieldsOf(std::string_view form)
{
    Fields fields;
    while (!form.empty()) {
        const std::string_view piece = takePiece(form);
        const std::size_t equals = std::min(piece.find('='), piece.size());
        Field field{percentDecoded(piece.substr(0, equals)), {}};
        if (!fields.empty() && isSecretName(fields.back().name) && !isCommandName(field.name)) {
            fields.back().value.append("&").append(percentDecoded(piece));
            continue;
        }
        if (piece.empty()) continue;
        field.value = percentDecoded(piece.substr(std::min(equals + 1, piece.size())));
        fields.push_back(std::move(field));
    }
    return fields;
}

std::string_view valueOf(const Fields& fields, std::string_view name)
{
    const auto found = std::ranges::find(fields, name, &Field::name);
    return found != fields.end() ? std::string_view(found->value) : std::string_view();
}

bool looksLikeForm(std::string_view text)
{
    if (endsInCredential(text)) return true;
    const std::string_view first = text.substr(text.starts_with('&') ? 1 : 0);
    if (!mayBeName(first.substr(0, first.find_first_of("=&")))) return false;
    while (!text.empty()) {
        const std::string_view piece = takePiece(text);
        if (piece.starts_with("cmd=") || piece.starts_with("cred=")) return true;
    }
    return false;
}

}  // namespace logreader
