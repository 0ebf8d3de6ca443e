#include "host/Masking.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "host/Encoding.h"
#include "host/Text.h"

namespace host {

namespace {

constexpr std::string_view kMask = "***";
constexpr std::size_t kShortest = 6;
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kValueEnds = "&;,<>\"' \t\r\n";

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isNameCharacter(char c)
{
    return (lower(c) >= 'a' && lower(c) <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

bool equalsIgnoringCase(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other, {}, lower, lower);
}

std::size_t skip(std::string_view text, std::size_t at, std::string_view what)
{
    return std::min(text.find_first_not_of(what, at), text.size());
}

/// A stretch of the text that holds a value.
struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// The name that begins at `at`, with its prefix where it is a tag's; empty where none does.
std::string_view nameAt(std::string_view text, std::size_t at)
{
    const bool isTag = at > 0 && text[at - 1] == '<';
    std::size_t end = at;
    while (end < text.size() && (isNameCharacter(text[end]) || (isTag && text[end] == ':'))) ++end;
    return text.substr(at, end - at);
}

/// The `>` of the tag whose name ends at `at`, not one between quotes; the end of the text where there is none.
std::size_t tagEnd(std::string_view text, std::size_t at)
{
    for (char quote = 0; at < text.size(); ++at) {
        if (quote != 0) quote = text[at] == quote ? '\0' : quote;
        else if (text[at] == '>') return at;
        else if (text[at] == '"' || text[at] == '\'') quote = text[at];
    }
    return at;
}

/// Behind the comment, the CDATA section or the instruction that begins at `at`, in which no tag is one; `at` where
/// none does.
std::size_t behindSection(std::string_view text, std::size_t at)
{
    using Pair = std::pair<std::string_view, std::string_view>;
    for (const auto& [begin, end] : {Pair{"<!--", "-->"}, Pair{"<![CDATA[", "]]>"}, Pair{"<?", "?>"}}) {
        if (!text.substr(at).starts_with(begin)) continue;
        const std::size_t found = text.find(end, at + begin.size());
        return found == std::string_view::npos ? text.size() : found + end.size();
    }
    return at;
}

/// Whether the tag's name that begins at `at` is this one.
bool isNamed(std::string_view text, std::size_t at, std::string_view name)
{
    const std::size_t end = at + name.size();
    const bool isWhole = end >= text.size() || !isNameCharacter(text[end]);
    return isWhole && equalsIgnoringCase(text.substr(std::min(at, text.size()), name.size()), name);
}

/// A piece of markup: where the search goes on behind it, and by how much it changes the number of open elements.
struct Step {
    std::size_t end = 0;
    int depth = 0;
};

/// The markup that begins at `at`, as those see it who count the elements of this name.
Step stepAt(std::string_view text, std::size_t at, std::string_view name)
{
    const std::size_t behind = behindSection(text, at);
    if (behind != at) return {behind, 0};
    if (text.substr(at).starts_with("</")) return {at + 1, isNamed(text, at + 2, name) ? -1 : 0};
    if (!isNamed(text, at + 1, name)) return {at + 1, 0};
    const std::size_t end = tagEnd(text, at);
    return {end, end < text.size() && text[end - 1] == '/' ? 0 : 1};
}

/// The content of the element whose name ends at `at`, up to its own end tag or, without one, the end of the text.
Span contentOf(std::string_view text, std::string_view name, std::size_t at)
{
    const std::size_t close = tagEnd(text, at);
    if (close == text.size()) return {at, close};
    if (text[close - 1] == '/') return {close + 1, close + 1};
    int depth = 1;
    for (std::size_t tag = close; (tag = text.find('<', tag)) != std::string_view::npos;) {
        const Step step = stepAt(text, tag, name);
        depth += step.depth;
        if (depth == 0) return {close + 1, tag};
        tag = step.end;
    }
    return {close + 1, text.size()};
}

/// The value of name=value, as an address has it; empty at `at`, where the name ends, if none follows.
Span parameterOf(std::string_view text, std::size_t at)
{
    if (at == text.size() || text[at] != '=') return {at, at};
    return {at + 1, std::min(text.find_first_of(kValueEnds, at + 1), text.size())};
}

/// Whether an odd number of backslashes stands before it.
bool isEscaped(std::string_view text, std::size_t at)
{
    const std::size_t last = text.substr(0, at).find_last_not_of('\\');
    return (at - (last == std::string_view::npos ? 0 : last + 1)) % 2 == 1;
}

/// The quote that ends the one at `at`, or the end of the text. JSON has quotes inside of its texts.
std::size_t quoteEnd(std::string_view text, std::size_t at, bool isJson)
{
    std::size_t end = text.find(text[at], at + 1);
    while (isJson && end != std::string_view::npos && isEscaped(text, end)) end = text.find(text[at], end + 1);
    return std::min(end, text.size());
}

/// The value of name = "value" or "name": "value".
Span valueOf(std::string_view text, std::size_t at)
{
    std::size_t sign = at;
    if (sign < text.size() && (text[sign] == '"' || text[sign] == '\'')) ++sign;
    sign = skip(text, sign, " \t");
    if (sign == text.size() || (text[sign] != '=' && text[sign] != ':')) return {at, at};

    const std::size_t begin = skip(text, sign + 1, " \t");
    const bool isQuoted = begin < text.size() && (text[begin] == '"' || text[begin] == '\'');
    if (isQuoted) return {begin + 1, quoteEnd(text, begin, text[sign] == ':')};
    return {begin, std::min(text.find_first_of(kValueEnds, begin), text.size())};
}

std::string replacedAll(std::string text, const std::string& what, std::string_view with)
{
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

/// The user's part of an address.
std::string withoutUserInfo(std::string text)
{
    constexpr std::string_view kAuthority = "://";
    for (std::size_t at = 0; (at = text.find(kAuthority, at)) != std::string::npos;) {
        at += kAuthority.size();
        const std::size_t end = std::min(text.find_first_of("/?#\"'<> \t\r\n", at), text.size());
        const std::size_t sign = text.rfind('@', end);
        if (sign != std::string::npos && sign >= at && sign < end) text.replace(at, sign - at, kMask);
    }
    return text;
}

/// The byte that a percent escape at `at` stands for, where one does.
std::optional<char> escapeAt(std::string_view text, std::size_t at)
{
    unsigned value = 0;
    const std::string_view digits = text.substr(at + 1, 2);
    const bool isEscape = text[at] == '%' && digits.size() == 2 &&
                          std::from_chars(digits.data(), digits.data() + 2, value, 16).ptr == digits.data() + 2;
    return isEscape ? std::optional(static_cast<char>(value)) : std::nullopt;
}

/// Where each byte of the decoded text begins in the encoded one, and where that ends.
std::vector<std::size_t> placesIn(std::string_view encoded)
{
    std::vector<std::size_t> places{0};
    while (places.back() < encoded.size()) places.push_back(places.back() + (escapeAt(encoded, places.back()) ? 3 : 1));
    return places;
}

/// The value as it was encoded, but for the masks that `shown` has in what it says decoded.
std::string maskedAs(std::string_view value, const std::string& decoded, std::string_view shown)
{
    const std::vector<std::size_t> places = placesIn(value);
    std::string result;
    for (std::size_t at = 0;;) {
        const std::size_t mask = shown.find(kMask);
        const std::string_view kept = shown.substr(0, mask);
        const bool isLast = mask == std::string_view::npos;
        at = isLast ? decoded.size() - std::min(kept.size(), decoded.size()) : decoded.find(kept, at);
        if (at == std::string::npos) return std::string(kMask);
        result += value.substr(places[at], places[at + kept.size()] - places[at]);
        if (isLast) return result;
        result += kMask;
        at += kept.size();
        shown.remove_prefix(mask + kMask.size());
    }
}

}  // namespace

bool isSecretName(std::string_view name)
{
    name.remove_prefix(std::min(name.rfind(':') + 1, name.size()));
    std::string small(name);
    std::ranges::transform(small, small.begin(), lower);
    constexpr std::array<std::string_view, 5> kParts{"password", "passwd", "token", "secret", "cred"};
    constexpr std::array<std::string_view, 4> kHeaders{"authorization", "proxy-authorization", "cookie", "set-cookie"};
    return std::ranges::any_of(kParts, [&](std::string_view part) { return small.find(part) != std::string::npos; }) ||
           std::ranges::find(kHeaders, small) != kHeaders.end();
}

std::string percentDecoded(std::string_view text)
{
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::optional<char> byte = escapeAt(text, at);
        result.push_back(byte.value_or(text[at]));
        if (byte) at += 2;
    }
    return result;
}

void Secrets::add(const std::string& secret)
{
    if (secret.size() < kShortest) return;
    for (const std::string& form : {secret, ToUtf8(percentOf(FromUtf8(secret))), ToUtf8(xmlOf(FromUtf8(secret)))}) {
        if (std::ranges::find(secrets_, form) == secrets_.end()) secrets_.push_back(form);
    }
}

std::string Secrets::cover(std::string_view value) const
{
    const bool isOpen = value.empty() || std::ranges::find(allowed_, value) != allowed_.end();
    return std::string(isOpen ? value : kMask);
}

std::string Secrets::withoutValues(std::string text) const
{
    for (const std::string& secret : secrets_) text = replacedAll(std::move(text), secret, kMask);
    return withoutUserInfo(std::move(text));
}

std::string Secrets::withoutQuoted(std::string_view tag) const
{
    std::string result;
    while (!tag.empty()) {
        const std::size_t quote = std::min(tag.find_first_of("\"'"), tag.size());
        result += tag.substr(0, quote);
        tag.remove_prefix(quote);
        if (tag.empty()) break;
        const std::size_t end = std::min(tag.find(tag.front(), 1), tag.size());
        result += tag.front();
        result += cover(tag.substr(1, end - 1));
        tag.remove_prefix(end);
        if (tag.empty()) break;
        result += tag.front();
        tag.remove_prefix(1);
    }
    return result;
}

template <typename Find>
std::string Secrets::maskedBy(std::string_view text, Find&& valueAt) const
{
    if (shown_) return std::string(text);
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view name = nameAt(text, at);
        if (name.empty() || !isSecretName(name)) {
            const std::size_t length = std::max<std::size_t>(name.size(), 1);
            result += text.substr(at, length);
            at += length;
            continue;
        }
        const Span span = valueAt(text, name, at);
        const std::string_view head = text.substr(at, span.begin - at);
        const bool isTag = at > 0 && text[at - 1] == '<';
        result += isTag ? withoutQuoted(head) : std::string(head);
        result += cover(text.substr(span.begin, span.end - span.begin));
        at = span.end;
    }
    return withoutValues(std::move(result));
}

std::string Secrets::masked(std::string_view text) const
{
    return maskedBy(text, [](std::string_view whole, std::string_view name, std::size_t at) {
        const bool isTag = at > 0 && whole[at - 1] == '<';
        return isTag ? contentOf(whole, name, at + name.size()) : valueOf(whole, at + name.size());
    });
}

std::string Secrets::maskedLine(std::string_view line) const
{
    return maskedBy(line, [](std::string_view whole, std::string_view name, std::size_t at) {
        return parameterOf(whole, at + name.size());
    });
}

std::string Secrets::maskedHeader(std::string_view line) const
{
    const std::size_t colon = std::min(line.find(':'), line.size());
    if (shown_ || !isSecretName(line.substr(0, colon))) return masked(line);
    const std::size_t begin = skip(line, std::min(colon + 1, line.size()), kBlanks);
    return std::string(line.substr(0, begin)) + cover(line.substr(begin));
}

std::string Secrets::maskedField(std::string_view name, std::string_view value) const
{
    return !shown_ && isSecretName(name) ? cover(value) : masked(value);
}

std::string Secrets::maskedForm(std::string_view encoded) const
{
    if (shown_) return std::string(encoded);
    // What was not encoded may have an element with "&" in it, which parts fields otherwise.
    const bool hasTags = encoded.find('<') != std::string_view::npos;
    const std::string form = hasTags ? masked(encoded) : std::string(encoded);
    std::string result;
    for (std::size_t at = 0; at <= form.size();) {
        const std::size_t end = std::min(form.find('&', at), form.size());
        const std::string_view piece = std::string_view(form).substr(at, end - at);
        const std::size_t sign = std::min(piece.find('='), piece.size());
        const std::string_view value = piece.substr(std::min(sign + 1, piece.size()));
        const std::string decoded = percentDecoded(value);
        const std::string shown = maskedField(percentDecoded(piece.substr(0, sign)), decoded);
        result += std::string(at == 0 ? "" : "&") + std::string(piece.substr(0, piece.size() - value.size()));
        result += maskedAs(value, decoded, shown);
        at = end + 1;
    }
    return result;
}

std::string Secrets::maskedParts(std::string_view parts) const
{
    if (shown_) return std::string(parts);
    constexpr std::string_view kName = "name=\"";
    constexpr std::string_view kValue = "\"\r\n\r\n";
    std::string result;
    std::size_t at = 0;
    for (std::size_t name = 0; (name = parts.find(kName, name)) != std::string_view::npos;) {
        name += kName.size();
        const std::size_t quote = std::min(parts.find('"', name), parts.size());
        if (!isSecretName(parts.substr(name, quote - name)) || !parts.substr(quote).starts_with(kValue)) continue;
        const std::size_t begin = quote + kValue.size();
        const std::size_t end = std::min(parts.find("\r\n", begin), parts.size());
        result += parts.substr(at, begin - at);
        result += cover(parts.substr(begin, end - begin));
        at = end;
    }
    return withoutValues(result.append(parts.substr(at)));
}

}  // namespace host
