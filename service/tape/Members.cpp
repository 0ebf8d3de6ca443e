#include "service/tape/Members.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "log/Form.h"
#include "log/Xml.h"
#include "service/base/Text.h"

namespace service::tape {

namespace {

constexpr std::size_t kLongestName = 128;
constexpr std::string_view kGaps = " \t\r\n";

bool isOneOf(char c, std::string_view all)
{
    return all.find(c) != std::string_view::npos;
}

bool isNameByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || isOneOf(c, "_%-.");
}

bool isQuote(char c)
{
    return c == '"' || c == '\'';
}

// What stands there in place of a value.
bool isNoValue(std::string_view text)
{
    static constexpr std::array<std::string_view, 5> kWords{"null", "true", "false", "undefined", "None"};
    return text.starts_with('=') || std::ranges::find(kWords, text) != kWords.end();
}

// The character of "u0041", which is cut off; nothing where it is no such escape.
bool takeNumbered(std::string_view& text, std::string& out)
{
    constexpr std::size_t kLength = 5;
    if (!text.starts_with('u') || text.size() < kLength) return false;
    std::uint32_t character = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + kLength, character, 16);
    if (error != std::errc() || end != text.data() + kLength || !isXmlCharacter(character)) return false;
    appendUtf8(out, character);
    text.remove_prefix(kLength);
    return true;
}

// The length of a value in quotes, without the one that ends it.
std::size_t quotedLength(std::string_view text, char quote, Quoting quoting)
{
    if (quoting == Quoting::tag) return std::min(text.find(quote), text.size());
    std::size_t at = 0;
    while (at < text.size() && text[at] != quote) at += text[at] == '\\' ? 2U : 1U;
    return std::min(at, text.size());
}

// An attribute's, without the quotes.
std::string_view valueAt(std::string_view tag, std::size_t at)
{
    const std::string_view rest = tag.substr(std::min(tag.find_first_not_of(kGaps, at), tag.size()));
    if (rest.empty() || !isQuote(rest.front())) return rest.substr(0, rest.find_first_of(kGaps));
    return rest.substr(1, quotedLength(rest.substr(1), rest.front(), Quoting::tag));
}

class MemberSearch {
public:
    MemberSearch(std::string_view text, Quoting quoting, std::vector<Found>& found)
        : text_(text), quoting_(quoting), found_(found)
    {
    }

    std::vector<std::string_view> run()
    {
        std::size_t from = 0;
        std::size_t at = 0;
        while ((at = text_.find_first_of("=:", from)) != std::string_view::npos) {
            const std::string name = nameBefore(text_.substr(from, at - from), at);
            from = name.empty() ? at + 1 : takeValue(name, at + 1);
        }
        rest_.push_back(text_.substr(kept_));
        return std::move(rest_);
    }

private:
    // The secret's name that ends the text; empty where there is none. Before a colon either it or its value stands in
    // quotes: people write "password: none".
    std::string nameBefore(std::string_view before, std::size_t separator) const
    {
        before = before.substr(0, before.find_last_not_of(kGaps) + 1);
        const bool isQuoted = !before.empty() && isQuote(before.back());
        if (text_[separator] == ':' && !isQuoted && !quoteFollows(separator + 1)) return {};
        while (!before.empty() && (isQuote(before.back()) || before.back() == ']')) before.remove_suffix(1);
        std::size_t begin = before.size();
        while (begin > 0 && before.size() - begin < kLongestName && isNameByte(before[begin - 1])) --begin;
        std::string name = logreader::percentDecoded(before.substr(begin));
        if (name.ends_with(']')) name.pop_back();
        return logreader::isSecretName(name) ? name : std::string();
    }

    bool quoteFollows(std::size_t at) const
    {
        at = text_.find_first_not_of(kGaps, at);
        return at != std::string_view::npos && isQuote(text_[at]);
    }

    // Takes the value at this place. Returns where to go on.
    std::size_t takeValue(const std::string& name, std::size_t at)
    {
        const std::string_view gaps = text_[at - 1] == ':' ? kGaps : " \t";
        at = std::min(text_.find_first_not_of(gaps, at), text_.size());
        if (at == text_.size()) return at;
        if (isQuote(text_[at])) return takeQuoted(name, at);
        if (text_[at] == '{' || text_[at] == '[') return takeNested(name, at);
        const std::size_t end = std::min(text_.find_first_of("& \t\r\n<>\"',}", at), text_.size());
        const std::string_view raw = text_.substr(at, end - at);
        if (!isNoValue(raw)) add(name, at, raw.size(), logreader::percentDecoded(raw));
        return end;
    }

    std::size_t takeQuoted(const std::string& name, std::size_t at)
    {
        const std::string_view raw = text_.substr(at + 1, quotedLength(text_.substr(at + 1), text_[at], quoting_));
        const bool isTag = quoting_ == Quoting::tag;
        add(name, at + 1, raw.size(), isTag ? logreader::withoutReferences(raw) : withoutBackslashes(raw));
        return std::min(at + 2 + raw.size(), text_.size());
    }

    // All texts of an object or a list, but for the names in it.
    std::size_t takeNested(const std::string& name, std::size_t at)
    {
        int depth = 0;
        do {
            if (isOneOf(text_[at], "{[")) ++depth;
            if (isOneOf(text_[at], "}]")) --depth;
            at = isQuote(text_[at]) ? takeUnlessName(name, at) : at + 1;
            at = std::min(text_.find_first_of("{}[]\"'", at), text_.size());
        } while (depth > 0 && at < text_.size());
        return at;
    }

    std::size_t takeUnlessName(const std::string& name, std::size_t at)
    {
        const std::size_t length = quotedLength(text_.substr(at + 1), text_[at], quoting_);
        const std::size_t next = text_.find_first_not_of(kGaps, std::min(at + 2 + length, text_.size()));
        if (next == std::string_view::npos || text_[next] != ':') return takeQuoted(name, at);
        return next;
    }

    void add(const std::string& name, std::size_t at, std::size_t length, std::string value)
    {
        if (value.empty()) return;
        rest_.push_back(text_.substr(kept_, at - kept_));
        kept_ = at + length;
        found_.push_back({name, std::string(text_.substr(at, length)), std::move(value)});
    }

    std::string_view text_;
    Quoting quoting_;
    std::vector<Found>& found_;
    std::vector<std::string_view> rest_;
    std::size_t kept_ = 0;  // behind the last one
};

// The password of "://user:password@".
void takePasswords(std::string_view text, std::vector<Found>& found)
{
    constexpr std::string_view kOpening = "://";
    for (std::size_t at = text.find(kOpening); at != std::string_view::npos; at = text.find(kOpening, at)) {
        at += kOpening.size();
        const std::string_view rest = text.substr(at);
        const std::string_view authority = rest.substr(0, rest.find_first_of("/?# \t\r\n<>\""));
        const std::string_view user = authority.substr(0, std::min(authority.rfind('@'), authority.size()));
        const std::size_t colon = user.find(':');
        if (user.size() == authority.size() || colon == std::string_view::npos || colon + 1 == user.size()) continue;
        const std::string_view raw = user.substr(colon + 1);
        found.push_back({"password", std::string(raw), logreader::percentDecoded(raw)});
    }
}

}  // namespace

std::vector<std::string_view> takeMembers(std::string_view text, Quoting quoting, std::vector<Found>& found)
{
    takePasswords(text, found);
    return MemberSearch(text, quoting, found).run();
}

std::string_view attributeOf(std::string_view tag, std::string_view name)
{
    for (std::size_t at = tag.find(name); at != std::string_view::npos; at = tag.find(name, at + 1)) {
        const std::size_t equals = tag.find_first_not_of(kGaps, at + name.size());
        const bool isWhole = at > 0 && isOneOf(tag[at - 1], kGaps);
        if (isWhole && equals != std::string_view::npos && tag[equals] == '=') return valueAt(tag, equals + 1);
    }
    return {};
}

std::string withoutBackslashes(std::string_view text)
{
    constexpr std::string_view kNamed = "nrtbf";
    constexpr std::string_view kMeant = "\n\r\t\b\f";
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find('\\'), text.size());
        out += text.substr(0, plain);
        text.remove_prefix(std::min(plain + 1, text.size()));
        if (text.empty() || takeNumbered(text, out)) continue;
        const std::size_t named = kNamed.find(text.front());
        out += named == std::string_view::npos ? text.front() : kMeant[named];
        text.remove_prefix(1);
    }
    return out;
}

}  // namespace service::tape
