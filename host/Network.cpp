#include "host/Network.h"

#include <algorithm>
#include <array>
#include <optional>

#include "host/Text.h"

namespace host {

namespace {

/// The place of each word is the kind's number.
constexpr std::array kKinds{
    "none",          "bad-address",    "no-such-host", "refused",    "unreachable", "connect-timeout", "proxy",
    "tls-untrusted", "tls-wrong-name", "tls-expired",  "tls-failed", "closed",      "cut-off",         "not-http",
    "too-large",     "silence",        "deadline",     "cancelled",  "local",
};

Status statusOf(CWapiClient::NETWORK_ERROR kind)
{
    switch (kind) {
    case CWapiClient::NETWORK_DEADLINE:
    case CWapiClient::NETWORK_CANCELLED: return Status::stopped;
    case CWapiClient::NETWORK_LOCAL: return Status::local;
    default: return Status::unconnected;
    }
}

std::string openingOf(CWapiClient::NETWORK_ERROR kind)
{
    switch (statusOf(kind)) {
    case Status::stopped: return kind == CWapiClient::NETWORK_DEADLINE ? "stopped by --timeout: " : "stopped: ";
    case Status::local: return "";
    default: return "no connection: ";
    }
}

/// What else there is to say: the address that is none, or who should be listening.
std::string hintOf(CWapiClient& client)
{
    const CStringT& url = client.getOpURL();
    switch (client.getNetworkErrorKind()) {
    case CWapiClient::NETWORK_BAD_ADDRESS: {
        const bool isItsOwn = client.GetLstMsg().reason.ends_with(url);
        return isItsOwn ? ": " + ToUtf8(url) : "";
    }
    case CWapiClient::NETWORK_REFUSED:
        return url == CWapiClient(CStringT()).getOpURL() ? ". Is pvwapi-service running?" : "";
    default: return "";
    }
}

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";

bool isAuthority(std::string_view text)
{
    constexpr std::string_view kAllowed = "abcdefghijklmnopqrstuvwxyz0123456789.-_:[]";
    return !text.empty() && text.find_first_not_of(kAllowed) == std::string_view::npos;
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// Scheme, host and port with nothing left out and in one case.
std::optional<std::string> originOf(const CStringT& url)
{
    std::string text = ToUtf8(url);
    std::ranges::transform(text, text.begin(), lower);
    const bool secure = text.starts_with(kHttps);
    if (!secure && !text.starts_with(kHttp)) return std::nullopt;

    const std::size_t begin = secure ? kHttps.size() : kHttp.size();
    const std::size_t end = std::min(text.find_first_of("/?#", begin), text.size());
    std::string authority = text.substr(begin, end - begin);
    if (!isAuthority(authority)) return std::nullopt;

    // A colon inside of brackets belongs to the host.
    if (authority.find(':', authority.rfind(']') + 1) == std::string::npos) authority += ':';
    if (authority.ends_with(':')) authority += secure ? "443" : "80";
    return text.substr(0, begin) + authority;
}

}  // namespace

Failure networkFailure(CWapiClient& client)
{
    const CWapiClient::NETWORK_ERROR kind = client.getNetworkErrorKind();
    const std::string text = ToUtf8(client.getNetworkErrorText());
    const auto number = static_cast<std::size_t>(kind);
    const std::string word = number < kKinds.size() ? kKinds[number] : std::to_string(number);
    return {statusOf(kind), openingOf(kind) + text + hintOf(client), NetworkCause{word, text}};
}

bool namesUser(const std::string& url)
{
    const std::size_t scheme = url.find("://");
    if (scheme == std::string::npos) return false;
    const std::size_t begin = scheme + 3;
    return url.substr(begin, url.find_first_of("/?#", begin) - begin).find('@') != std::string::npos;
}

bool haveOneOrigin(const CStringT& one, const CStringT& other)
{
    const auto origin = originOf(one);
    return origin && origin == originOf(other);
}

}  // namespace host
