#include "log/Mask.h"

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <utility>

#include "log/Xml.h"

namespace logreader {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::size_t kLongestName = 128;
constexpr std::size_t kShortestSecret = 4;  // what is shorter stands in every other text by accident
constexpr std::size_t kMostSecrets = 64;    // each of them is looked for in all of the reply

/// Bytes that end something.
class Bytes {
public:
    constexpr explicit Bytes(std::string_view bytes)
    {
        for (const char c : bytes) isOne_[static_cast<unsigned char>(c)] = true;
    }

    std::size_t find(std::string_view text, std::size_t from = 0) const
    {
        while (from < text.size() && !isOne_[static_cast<unsigned char>(text[from])]) ++from;
        return from < text.size() ? from : kNone;
    }

private:
    std::array<bool, 256> isOne_{};
};

/// A text in which pieces are replaced, the one behind the other.
class Edited {
public:
    explicit Edited(std::string_view text) : text_(text) {}

    void replace(std::size_t begin, std::size_t length, std::string_view with)
    {
        result_.append(text_.substr(taken_, begin - taken_)).append(with);
        taken_ = begin + length;
    }

    std::string text() { return std::move(result_.append(text_.substr(taken_))); }

private:
    std::string_view text_;
    std::size_t taken_ = 0;
    std::string result_;
};

/// The name in a tag, behind its "<" or "</" and without a prefix.
std::string_view localName(std::string_view behind)
{
    static constexpr Bytes kEnds(" \t\r\n/<>");
    behind = behind.substr(0, kLongestName);
    behind = behind.substr(0, kEnds.find(behind));
    const std::size_t colon = behind.rfind(':');
    return colon == kNone ? behind : behind.substr(colon + 1);
}

/// How many bytes a section or a comment takes that begins the text, none where there is none.
std::size_t sectionLength(std::string_view text)
{
    using Pair = std::pair<std::string_view, std::string_view>;
    static constexpr std::array kSections = {Pair{"<![CDATA[", "]]>"}, Pair{"<!--", "-->"}};
    for (const auto& [opening, closing] : kSections) {
        if (!text.starts_with(opening)) continue;
        const std::size_t end = text.find(closing, opening.size());
        return end == kNone ? text.size() : end + closing.size();
    }
    return 0;
}

/// By how much a tag changes the number of open elements of a secret's name.
int depthOf(std::string_view tag, std::size_t end)
{
    if (tag.starts_with("</")) return isSecretName(localName(tag.substr(2))) ? -1 : 0;
    if (!isSecretName(localName(tag.substr(1)))) return 0;
    return end != kNone && tag[end - 1] == '/' ? 0 : 1;
}

/// Where the element's own end tag begins, behind its begin tag; the end of the text where there is none.
std::size_t contentLength(std::string_view text)
{
    int depth = 1;
    std::size_t at = text.find('<');
    while (at != kNone) {
        const std::string_view rest = text.substr(at);
        std::size_t length = sectionLength(rest);
        if (length == 0) {
            const std::size_t end = tagEnd(rest);
            depth += depthOf(rest, end);
            if (depth == 0) return at;
            length = end == kNone ? 1 : end + 1;
        }
        at = text.find('<', at + length);
    }
    return text.size();
}

/// Masks what the markup at this place opens, where its name is a secret's. Returns where to go on.
std::size_t maskElement(std::string_view text, std::size_t at, Edited& result)
{
    const std::string_view tag = text.substr(at);
    if (!isSecretName(localName(tag.substr(1)))) return at + 1;
    const std::size_t end = tagEnd(tag);
    const std::size_t length = end == kNone ? std::min(tag.find_first_of(" \t\r\n/>"), tag.size()) : end + 1;
    if (end != kNone && tag[end - 1] == '/') return at + length;
    const std::string_view behind = tag.substr(length);
    const std::size_t content = end == kNone ? behind.size() : contentLength(behind);
    if (content > 0) result.replace(at + length, content, kMask);
    return at + length + content;
}

std::string withoutElements(std::string_view text)
{
    Edited result(text);
    std::size_t at = 0;
    while ((at = text.find('<', at)) != kNone) at = maskElement(text, at, result);
    return result.text();
}

bool isNameByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '%' ||
           c == '-' || c == '.';
}

/// The name that ends the text.
std::string_view nameAtEnd(std::string_view text)
{
    std::size_t begin = text.size();
    while (begin > 0 && text.size() - begin < kLongestName && isNameByte(text[begin - 1])) --begin;
    return text.substr(begin);
}

/// Whether what stands before "=", or what stands in quotes before ":", is a secret's name.
bool namesSecret(std::string_view before, char separator)
{
    before = before.substr(0, before.find_last_not_of(" \t") + 1);
    if (separator == ':') {
        if (!before.ends_with('"') && !before.ends_with('\'')) return false;
        before.remove_suffix(1);
    }
    const std::string_view name = nameAtEnd(before);
    return isSecretName(name.find('%') == kNone ? name : percentDecoded(name));
}

/// How many bytes a value in quotes takes, with them.
std::size_t quotedLength(std::string_view text)
{
    const char quote = text.front();
    for (std::size_t at = 1; at < text.size(); ++at) {
        if (text[at] == '\\') ++at;
        else if (text[at] == quote) return at + 1;
    }
    return text.size();
}

/// Masks the value at this place. Returns where to go on.
std::size_t maskValue(std::string_view text, std::size_t at, Edited& result)
{
    static constexpr Bytes kEnds("& \t\r\n<>\"',}");
    at = std::min(text.find_first_not_of(" \t", at), text.size());
    const std::string_view value = text.substr(at);
    if (value.empty()) return at;
    const bool isQuoted = value.front() == '"' || value.front() == '\'';
    const std::size_t length = isQuoted ? quotedLength(value) : std::min(kEnds.find(value), value.size());
    const std::string quote(value.substr(0, isQuoted ? 1 : 0));
    if (length > 2 * quote.size()) result.replace(at, length, quote + std::string(kMask) + quote);
    return at + length;
}

std::string withoutValues(std::string_view text)
{
    static constexpr Bytes kSeparators("=:");
    Edited result(text);
    std::size_t from = 0;
    std::size_t at = 0;
    while ((at = kSeparators.find(text, from)) != kNone) {
        const bool isSecret = namesSecret(text.substr(from, at - from), text[at]);
        from = isSecret ? maskValue(text, at + 1, result) : at + 1;
    }
    return result.text();
}

/// Masks the password in "://user:password@" of an address.
std::string withoutPasswords(std::string_view text)
{
    constexpr std::string_view kOpening = "://";
    Edited result(text);
    std::size_t at = 0;
    while ((at = text.find(kOpening, at)) != kNone) {
        at += kOpening.size();
        const std::string_view rest = text.substr(at);
        const std::string_view user = rest.substr(0, rest.find_first_of("/?# \t\r\n<>\""));
        const std::size_t end = user.rfind('@');
        const std::size_t colon = user.substr(0, end).find(':');
        if (end == kNone || colon == kNone || colon + 1 == end) continue;
        result.replace(at + colon + 1, end - colon - 1, kMask);
        at += end;
    }
    return result.text();
}

/// For each length of a beginning of the text, how long the longest shorter beginning is that also ends it.
std::vector<std::size_t> overlapsOf(std::string_view text)
{
    std::vector<std::size_t> overlaps(text.size() + 1, 0);
    std::size_t length = 0;
    for (std::size_t at = 1; at < text.size(); ++at) {
        while (length > 0 && text[at] != text[length]) length = overlaps[length];
        if (text[at] == text[length]) ++length;
        overlaps[at + 1] = length;
    }
    return overlaps;
}

/// Looks at each byte a few times at most, so that no text and no secret make it slow.
std::string replaced(std::string_view text, std::string_view secret)
{
    const std::string_view beginning = secret.substr(0, kShortestSecret);
    const std::vector<std::size_t> overlaps = overlapsOf(secret);
    Edited result(text);
    std::size_t length = 0;  // how much of the secret ends before `at`
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (length == 0) at = std::min(text.find(beginning, at), text.size() - 1);
        while (length > 0 && text[at] != secret[length]) length = overlaps[length];
        if (text[at] == secret[length]) ++length;
        if (length < secret.size()) continue;
        result.replace(at + 1 - length, length, kMask);
        length = 0;
    }
    return result.text();
}

std::string percentEncoded(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c != '%' && (isNameByte(c) || c == '~')) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result.append({'%', "0123456789ABCDEF"[byte >> 4U], "0123456789ABCDEF"[byte & 0xFU]});
    }
    return result;
}

std::string escaped(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '&') result += "&amp;";
        else if (c == '<') result += "&lt;";
        else if (c == '>') result += "&gt;";
        else result += c;
    }
    return result;
}

}  // namespace

std::vector<std::string> secretsOf(const Fields& fields)
{
    std::set<std::string_view> values;
    std::set<std::string, std::greater<>> forms;  // what begins another stands behind it
    for (const Field& field : fields) {
        if (!isSecretName(field.name) || field.value.size() < kShortestSecret) continue;
        if (!values.insert(field.value).second) continue;
        forms.insert({field.value, percentEncoded(field.value), escaped(field.value)});
        if (values.size() == kMostSecrets) break;
    }
    return {forms.begin(), forms.end()};
}

std::string masked(std::string_view text, const std::vector<std::string>& secrets)
{
    std::string result = withoutValues(withoutPasswords(withoutElements(text)));
    for (const std::string& secret : secrets) {
        if (secret.size() <= result.size()) result = replaced(result, secret);
    }
    return result;
}

Fields masked(Fields fields)
{
    const std::vector<std::string> secrets = secretsOf(fields);
    for (Field& field : fields) {
        if (!isSecretName(field.name)) field.value = masked(field.value, secrets);
        else if (!field.value.empty()) field.value = kMask;
    }
    return fields;
}

bool hidesSecret(std::string_view text, const std::vector<std::string>& secrets)
{
    constexpr int kTimes = 2;
    std::string plain;
    for (int time = 0; time < kTimes && text.find('%') != kNone; ++time) {
        std::string decoded = percentDecoded(text);
        if (masked(decoded, secrets) != decoded) return true;
        plain = std::move(decoded);
        text = plain;
    }
    return false;
}

}  // namespace logreader
