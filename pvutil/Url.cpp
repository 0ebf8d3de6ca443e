#include "pvutil/Url.h"

#include <algorithm>
#include <charconv>

#include "pvutil/Ascii.h"

namespace kzn::pvutil {

namespace {

constexpr std::uint16_t kHttpPort = 80;
constexpr std::uint16_t kHttpsPort = 443;

bool isPlain(char c) noexcept
{
    return c > 0x20 && c < 0x7F;
}

std::string escaped(std::string_view utf8)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    text.reserve(utf8.size());
    for (const char c : utf8) {
        if (isPlain(c)) {
            text += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            text += '%';
            text += kDigits[byte >> 4];
            text += kDigits[byte & 0xF];
        }
    }
    return text;
}

// The length of the scheme that `text` begins with, 0 where it begins with none.
std::size_t schemeLength(std::string_view text) noexcept
{
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || !ascii::isLetter(text[0])) return 0;
    const auto scheme = text.substr(0, colon);
    const auto allowed = [](char c) { return ascii::isAlnum(c) || c == '+' || c == '-' || c == '.'; };
    return std::all_of(scheme.begin(), scheme.end(), allowed) ? colon : 0;
}

bool isName(std::string_view host) noexcept
{
    const auto allowed = [](char c) { return ascii::isAlnum(c) || c == '.' || c == '-' || c == '_'; };
    return !host.empty() && std::all_of(host.begin(), host.end(), allowed);
}

bool isBracketed(std::string_view host) noexcept
{
    if (host.size() < 4 || host.front() != '[' || host.back() != ']') return false;
    const auto inside = host.substr(1, host.size() - 2);
    return std::all_of(inside.begin(), inside.end(), [](char c) {
        return ascii::isDigit(c) || (ascii::lower(c) >= 'a' && ascii::lower(c) <= 'f') || c == ':' || c == '.';
    });
}

bool readPort(std::string_view digits, std::uint16_t& port) noexcept
{
    if (digits.empty()) return true;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
    return error == std::errc() && end == digits.data() + digits.size() && port != 0;
}

// Host and port, the port standing behind the last colon that is not part of a bracketed address.
bool readAuthority(std::string_view authority, Url& url)
{
    const std::size_t bracket = authority.rfind(']');
    const std::size_t colon = authority.rfind(':');
    const bool hasPort = colon != std::string_view::npos && (bracket == std::string_view::npos || colon > bracket);
    const auto host = hasPort ? authority.substr(0, colon) : authority;
    if (!isName(host) && !isBracketed(host)) return false;
    url.host = host;
    url.port = url.secure ? kHttpsPort : kHttpPort;
    return !hasPort || readPort(authority.substr(colon + 1), url.port);
}

std::string_view withoutFragment(std::string_view text) noexcept
{
    return text.substr(0, text.find('#'));
}

// Goes on from a folder by one name, as "." and ".." are meant.
void append(std::string& path, std::string_view segment, bool isLast)
{
    const bool up = segment == "/..";
    if (!up && segment != "/.") {
        path += segment;
        return;
    }
    if (up) path.resize(path.empty() ? 0 : path.rfind('/'));
    if (isLast) path += '/';
}

// Takes "." and ".." out of a path; the query stays as it is.
std::string withoutDots(std::string_view target)
{
    const std::size_t query = std::min(target.find('?'), target.size());
    std::string_view rest = target.substr(0, query);
    std::string path;
    while (!rest.empty()) {
        const auto segment = rest.substr(0, rest.find('/', 1));
        rest.remove_prefix(segment.size());
        append(path, segment, rest.empty());
    }
    return path.append(target.substr(query));
}

std::optional<Url> parseEscaped(std::string_view text)
{
    const std::size_t scheme = schemeLength(text);
    Url url;
    url.secure = ascii::same(text.substr(0, scheme), "https");
    if (!url.secure && !ascii::same(text.substr(0, scheme), "http")) return std::nullopt;
    if (text.substr(scheme, 3) != "://") return std::nullopt;

    const auto rest = withoutFragment(text.substr(scheme + 3));
    const std::size_t end = std::min(rest.find_first_of("/?"), rest.size());
    if (!readAuthority(rest.substr(0, end), url)) return std::nullopt;
    url.target = rest.substr(end);
    if (url.target.empty() || url.target.front() == '?') url.target.insert(0, 1, '/');
    return url;
}

}  // namespace

std::string Url::text() const
{
    std::string text = secure ? "https://" : "http://";
    text += host;
    if (port != (secure ? kHttpsPort : kHttpPort)) text.append(":").append(std::to_string(port));
    return text += target;
}

std::string Url::hostAndPort() const
{
    return host + ':' + std::to_string(port);
}

bool Url::sameOrigin(const Url& other) const noexcept
{
    return secure == other.secure && port == other.port && ascii::same(host, other.host);
}

std::optional<Url> parseUrl(std::string_view utf8)
{
    return std::ranges::all_of(utf8, isPlain) ? parseEscaped(utf8) : parseEscaped(escaped(utf8));
}

std::optional<Url> resolveUrl(const Url& base, std::string_view reference)
{
    const std::string whole = escaped(reference);
    const auto text = withoutFragment(whole);
    if (schemeLength(text) != 0) return parseEscaped(text);
    if (text.starts_with("//")) return parseEscaped((base.secure ? "https:" : "http:") + std::string(text));

    Url url = base;
    if (text.empty()) return url;
    const auto path = base.target.substr(0, base.target.find('?'));
    if (text.front() == '/') url.target = withoutDots(text);
    else if (text.front() == '?') url.target = path + std::string(text);
    else url.target = withoutDots(path.substr(0, path.rfind('/') + 1) + std::string(text));
    return url;
}

}  // namespace kzn::pvutil
