#include "service/tape/Scan.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <tuple>
#include <utility>

namespace service::tape {

namespace {

constexpr std::size_t kMadeDigits = 12;
constexpr std::size_t kShortestIdentifier = 4;
constexpr std::size_t kShortestNumber = 6;
constexpr std::size_t kTelling = 8;        // a shorter secret may stand within a word that has nothing to do with it
constexpr std::size_t kMilliseconds = 13;  // digits of a moment

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

bool isWordCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

// Looked up, for a picture has millions of bytes.
constexpr std::array<bool, 256> kTokenCharacters = [] {
    std::array<bool, 256> all{};
    for (const char c : std::string_view("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-_.:")) {
        all.at(static_cast<unsigned char>(c)) = true;
    }
    return all;
}();

bool isTokenCharacter(char c)
{
    return kTokenCharacters[static_cast<unsigned char>(c)];
}

// A "d" stands for a digit.
bool isOfForm(std::string_view text, std::string_view form)
{
    return std::ranges::equal(form, text, [](char wanted, char c) { return wanted == 'd' ? isDigit(c) : wanted == c; });
}

// What may stand behind the seconds of a moment. A "+" ends a token.
bool isFractionAndZone(std::string_view text)
{
    if (text.starts_with('.')) {
        const std::size_t digits = std::min(text.find_first_not_of("0123456789", 1), text.size());
        if (digits == 1) return false;
        text.remove_prefix(digits);
    }
    return text.empty() || text == "Z" || isOfForm(text, "-dd:dd") || isOfForm(text, "-dddd") || isOfForm(text, "-dd");
}

std::string_view runAt(std::string_view text, std::size_t at)
{
    std::size_t end = at;
    while (end < text.size() && isTokenCharacter(text[end])) ++end;
    return text.substr(at, end - at);
}

// What ends a sentence is not part of its last word.
std::string_view withoutStops(std::string_view run)
{
    while (!run.empty() && !isWordCharacter(run.back())) run.remove_suffix(1);
    return run;
}

bool opensTag(std::string_view before)
{
    return before.ends_with('<') || before.ends_with("</") || before.ends_with("%3C") || before.ends_with("%3C%2F");
}

bool isEscape(std::string_view text)
{
    return text.size() >= 3 && text[0] == '%' && isHexDigit(text[1]) && isHexDigit(text[2]);
}

// As a form and as JSON have them: what stands behind is a word of its own.
bool endsInEscape(std::string_view text)
{
    constexpr std::size_t kNumbered = 6;
    const std::size_t length = text.size();
    if (length >= 3 && isEscape(text.substr(length - 3))) return true;
    if (length >= 2 && text[length - 2] == '\\') return true;
    return length >= kNumbered && text.substr(length - kNumbered, 2) == "\\u";
}

// Whether a host's name or port goes on there.
bool addressGoesOn(std::string_view rest)
{
    if (rest.starts_with("%3A") || rest.starts_with("%3a")) return rest.size() > 3 && isWordCharacter(rest[3]);
    return rest.size() > 1 && std::string_view(".:-").find(rest[0]) != std::string_view::npos &&
           isWordCharacter(rest[1]);
}

// Finds several spellings at once, from the left to the right; of two at one place the one that is listed first.
class Finder {
public:
    Finder(std::string_view text, const std::vector<std::string>& spellings, Beside beside)
        : text_(text), spellings_(spellings), beside_(beside)
    {
        for (const std::string& spelling : spellings) next_.push_back(find(spelling, 0));
    }

    // The first one from `from` on: its place and its length.
    std::pair<std::size_t, std::size_t> next(std::size_t from)
    {
        std::size_t best = 0;
        for (std::size_t i = 0; i < next_.size(); ++i) {
            if (next_[i] < from) next_[i] = find(spellings_[i], from);
            if (next_[i] < next_[best]) best = i;
        }
        return {next_[best], spellings_[best].size()};
    }

private:
    std::size_t find(const std::string& spelling, std::size_t from) const
    {
        std::size_t at = text_.find(spelling, from);
        while (at != std::string_view::npos && !stands(text_, at, spelling.size(), beside_)) {
            at = text_.find(spelling, at + 1);
        }
        return at;
    }

    std::string_view text_;
    const std::vector<std::string>& spellings_;
    Beside beside_;
    std::vector<std::size_t> next_;
};

}  // namespace

std::vector<Token> tokensOf(std::string_view text)
{
    std::vector<Token> tokens;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '%' && !isTokenCharacter(text[at])) {
            ++at;
            continue;
        }
        const std::size_t escape = isEscape(text.substr(at)) ? 3 : 0;
        const std::string_view run = escape > 0 ? std::string_view() : runAt(text, at);
        const std::string_view token = withoutStops(run);
        if (!token.empty()) tokens.push_back({at, token, opensTag(text.substr(0, at))});
        at += std::max({escape, run.size(), std::size_t{1}});
    }
    return tokens;
}

bool looksLikeTime(std::string_view token)
{
    constexpr std::string_view kPattern = "dddd-dd-ddTdd:dd:dd";
    if (token.size() == kMilliseconds && token.front() == '1') return std::ranges::all_of(token, isDigit);
    return isOfForm(token.substr(0, kPattern.size()), kPattern) &&
           isFractionAndZone(token.substr(std::min(kPattern.size(), token.size())));
}

bool looksMade(std::string_view token)
{
    std::size_t row = 0;
    bool digit = false;
    for (const char c : token) {
        row = isHexDigit(c) ? row + 1 : 0;
        digit = row > 0 && (digit || isDigit(c));
        if (row >= kMadeDigits && digit) return true;
    }
    return false;
}

bool couldIdentify(std::string_view token)
{
    if (std::ranges::all_of(token, isDigit)) return token.size() >= kShortestNumber;
    return token.size() >= kShortestIdentifier &&
           std::ranges::any_of(token, [](char c) { return isDigit(c) || c == '-' || c == '_'; });
}

bool stands(std::string_view text, std::size_t at, std::size_t length, Beside beside)
{
    if (beside == Beside::anything) return true;
    const bool wordBefore = at > 0 && isWordCharacter(text[at - 1]) && !endsInEscape(text.substr(0, at));
    const std::string_view rest = text.substr(at + length);
    if (wordBefore || (!rest.empty() && isWordCharacter(rest[0]))) return false;
    return beside != Beside::noAddress || !addressGoesOn(rest);
}

Beside besideSecret(std::string_view value)
{
    return value.size() < kTelling ? Beside::noLetter : Beside::anything;
}

void replace(Template& text, const std::vector<std::string>& spellings, const Piece& piece, Beside beside)
{
    if (spellings.empty()) return;
    Template out;
    for (Piece& old : text) {
        if (old.kind != Kind::literal) {
            append(out, std::move(old));
            continue;
        }
        Finder finder(old.text, spellings, beside);
        std::size_t from = 0;
        for (auto [at, length] = finder.next(0); at != std::string::npos; std::tie(at, length) = finder.next(from)) {
            append(out, {Kind::literal, 0, old.text.substr(from, at - from)});
            append(out, piece);
            from = at + length;
        }
        append(out, {Kind::literal, 0, old.text.substr(from)});
    }
    text = std::move(out);
}

}  // namespace service::tape
