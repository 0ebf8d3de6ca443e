#include "service/tape/Origin.h"

#include <algorithm>
#include <stdexcept>

#include "service/base/Text.h"
#include "service/tape/Matcher.h"
#include "service/tape/Scan.h"
#include "service/tape/Template.h"

namespace service::tape {

namespace {

constexpr std::string_view kPlain = "http://";
constexpr std::string_view kTls = "https://";

const char* defaultPort(bool isTls)
{
    return isTls ? "443" : "80";
}

std::string hostText(const std::string& host)
{
    return host.find(':') == std::string::npos ? host : "[" + host + "]";
}

bool isHostCharacter(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           std::string_view("-_.:").find(c) != std::string_view::npos;
}

// The host at the front of an address, a numeric one without its brackets; cuts it off.
std::string takeHost(std::string_view& authority)
{
    const bool numeric = authority.starts_with('[');
    if (numeric) authority.remove_prefix(1);
    const std::size_t length = authority.find(numeric ? ']' : ':');
    if (numeric && length == std::string_view::npos) throw std::invalid_argument("a bracket is missing");
    std::string host(authority.substr(0, length));
    authority.remove_prefix(std::min(host.size() + (numeric ? 1 : 0), authority.size()));
    if (host.empty() || !std::ranges::all_of(host, isHostCharacter)) throw std::invalid_argument("names no host");
    return host;
}

// What stands behind the host: nothing, or a colon and the port.
std::string portOf(std::string_view rest, bool isTls)
{
    if (rest.empty()) return defaultPort(isTls);
    std::string port(rest.substr(1));
    if (rest.front() != ':' || !wholeNumber(port, 1, 65535)) {
        throw std::invalid_argument("the port must be a number from 1 to 65535");
    }
    return port;
}

// The text with a placeholder for the server wherever it is spelled: 0 for one in the open, 1 for an encoded one.
Template marked(std::string_view text, const Origin& server)
{
    std::vector<std::string> spellings = server.spellings();
    const auto encoded = std::stable_partition(spellings.begin(), spellings.end(), [](const std::string& one) {
        return one.starts_with("http:") || one.starts_with("https:");
    });
    Template pieces;
    append(pieces, {Kind::literal, 0, std::string(text)});
    replace(pieces, {spellings.begin(), encoded}, {Kind::server, 0, {}}, Beside::noAddress);
    replace(pieces, {encoded, spellings.end()}, {Kind::server, 1, {}}, Beside::noAddress);
    return pieces;
}

}  // namespace

std::string Origin::authority() const
{
    return hostText(host) + (port == defaultPort(isTls) ? "" : ":" + port);
}

std::string Origin::text() const
{
    return std::string(isTls ? kTls : kPlain) + authority();
}

std::vector<std::string> Origin::spellings() const
{
    const std::string withPort = std::string(isTls ? kTls : kPlain) + hostText(host) + ":" + port;
    std::vector<std::string> all = tape::spellings(withPort);
    for (const std::string& shorter : tape::spellings(text())) all.push_back(shorter);
    std::ranges::sort(all,
                      [](const auto& a, const auto& b) { return a.size() != b.size() ? a.size() > b.size() : a < b; });
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

Origin originOf(std::string_view url)
{
    Origin origin;
    origin.isTls = url.starts_with(kTls);
    if (!origin.isTls && !url.starts_with(kPlain)) throw std::invalid_argument("must begin with http:// or https://");
    url.remove_prefix(origin.isTls ? kTls.size() : kPlain.size());
    std::string_view authority = url.substr(0, url.find_first_of("/?#"));
    origin.host = takeHost(authority);
    origin.port = portOf(authority, origin.isTls);
    return origin;
}

std::string withOrigin(std::string_view text, const Origin& from, const Origin& to)
{
    std::string out;
    for (const Piece& piece : marked(text, from)) {
        if (piece.kind == Kind::literal) out += piece.text;
        else out += spelled(to.text(), piece.number == 0 ? Place::plain : Place::form);
    }
    return out;
}

}  // namespace service::tape
