#include "service/journal/Secrets.h"

#include <algorithm>

#include "log/Mask.h"
#include "service/base/Text.h"
#include "service/journal/Heard.h"

namespace service::journal {

namespace {

constexpr std::size_t kLongestWord = 200;
constexpr std::size_t kQuotedWhole = 78;                              // bytes; a longer text may be cut in a reason
constexpr std::size_t kMostSearched = std::size_t{32} * 1024 * 1024;  // of one exchange, for all of its secrets

// A reason quotes what was sent, and cuts it.
std::string asQuoted(std::string_view text)
{
    constexpr std::string_view kCut = "...";
    std::string quoted = inQuotes(text);
    quoted = quoted.substr(1, quoted.size() - 2);
    if (quoted != text && quoted.ends_with(kCut)) quoted.resize(quoted.size() - kCut.size());
    return quoted;
}

// What is a secret beside the values of the fields that have a secret's name.
logreader::Fields furtherSecrets(const logreader::Fields& fields)
{
    constexpr const char* kName = "secret";
    logreader::Fields further;
    const auto add = [&further](const std::string& text) {
        further.push_back({kName, text});
        if (std::string quoted = asQuoted(text); quoted != text) further.push_back({kName, std::move(quoted)});
    };
    for (const auto& [name, value] : fields) {
        const bool isPlain = isPlainName(name);
        if (!isPlain) add(name);
        if (!isPlain || (value.size() > kQuotedWhole && logreader::isSecretName(name))) add(value);
    }
    return further;
}

std::vector<std::string> allSecretsOf(const logreader::Fields& fields)
{
    const logreader::Fields further = furtherSecrets(fields);
    if (further.empty()) return logreader::secretsOf(fields);
    logreader::Fields all = fields;
    all.insert(all.end(), further.begin(), further.end());
    return logreader::secretsOf(all);
}

}  // namespace

std::string_view cutTo(std::string_view text, std::size_t length)
{
    if (text.size() <= length) return text;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80) --length;
    return text.substr(0, length);
}

bool isPlainName(std::string_view name)
{
    return !name.empty() && name.size() <= 64 && std::ranges::all_of(name, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '.' ||
               c == '-';
    });
}

Secrets::Secrets(const logreader::Fields& fields) : secrets_(allSecretsOf(fields))
{
    for (const std::string& secret : secrets_) longest_ = std::max(longest_, secret.size());
}

bool Secrets::isLeft(std::string_view text)
{
    constexpr std::size_t kDecoded = 3;  // how often a text is searched that is decoded twice
    searched_ += text.size() * secrets_.size() * (text.find('%') == std::string_view::npos ? 1 : kDecoded);
    return searched_ <= kMostSearched;
}

// A secret that the cut has parted would no longer be known as one: so many bytes more are left out.
std::optional<std::string> Secrets::shown(std::string_view text)
{
    const std::string_view kept = cutTo(text, kLongestText);
    if (!isLeft(kept)) return std::nullopt;
    std::string shown = logreader::masked(kept, secrets_);
    if (logreader::hidesSecret(shown, secrets_)) return std::nullopt;
    if (kept.size() < text.size()) shown.resize(cutTo(shown, shown.size() - std::min(longest_, shown.size())).size());
    return shown;
}

std::string Secrets::word(std::string_view text)
{
    std::optional<std::string> shown = this->shown(text);
    if (!shown) return std::string(logreader::kMask);
    if (shown->size() > kLongestWord) shown->resize(cutTo(*shown, kLongestWord).size());
    return std::move(*shown);
}

}  // namespace service::journal
