#include "service/control/Guard.h"

#include <algorithm>
#include <boost/asio/ip/address.hpp>

#include "service/base/Text.h"

namespace service::control {

namespace {

constexpr unsigned short kDefaultPort = 80;

std::string lowered(std::string_view text)
{
    std::string out(text);
    std::ranges::transform(out, out.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return out;
}

bool isLoopbackName(std::string_view name)
{
    if (lowered(name) == "localhost") return true;
    if (name.starts_with('[') && name.ends_with(']')) name = name.substr(1, name.size() - 2);
    boost::system::error_code error;
    const boost::asio::ip::address address = boost::asio::ip::make_address(std::string(name), error);
    return !error && address.is_loopback();
}

}  // namespace

bool isOwnHost(std::string_view host, unsigned short port)
{
    const std::string tail = ':' + std::to_string(port);
    if (host.ends_with(tail)) return isLoopbackName(host.substr(0, host.size() - tail.size()));
    return port == kDefaultPort && isLoopbackName(host);
}

bool isOwnOrigin(std::string_view origin, unsigned short port)
{
    constexpr std::string_view kScheme = "http://";
    return origin.empty() || (origin.starts_with(kScheme) && isOwnHost(origin.substr(kScheme.size()), port));
}

bool isOwnSite(std::string_view fetchSite)
{
    return fetchSite.empty() || fetchSite == "none" || fetchSite == "same-origin";
}

std::string whyForeign(const http::RequestHead& head, unsigned short port)
{
    if (!isOwnHost(head.host, port)) return "the Host header does not name this service";
    const bool isOwn = isOwnOrigin(head.origin, port) && isOwnSite(head.fetchSite);
    return isOwn ? std::string() : "a page of another site is behind this request";
}

bool bearsToken(std::string_view authorization, std::string_view token)
{
    constexpr std::string_view kScheme = "bearer ";
    return lowered(authorization.substr(0, kScheme.size())) == kScheme &&
           sameText(trimmed(authorization.substr(kScheme.size())), token);
}

}  // namespace service::control
