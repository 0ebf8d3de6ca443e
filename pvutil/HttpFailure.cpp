#include "pvutil/HttpFailure.h"

#include <string_view>

namespace kzn::pvutil {

namespace {

std::string_view doing(HttpPhase phase) noexcept
{
    switch (phase) {
    case HttpPhase::address: return "Reading the address";
    case HttpPhase::lookUp: return "Looking up";
    case HttpPhase::connect: return "Connecting to";
    case HttpPhase::secure: return "Securing the connection to";
    case HttpPhase::send: return "Sending to";
    case HttpPhase::wait: return "Waiting for";
    case HttpPhase::receive: return "Receiving from";
    }
    return {};
}

// What is said where the system says nothing.
std::string_view wordsOf(HttpFault fault) noexcept
{
    switch (fault) {
    case HttpFault::none: return {};
    case HttpFault::badAddress: return "neither an http nor an https address";
    case HttpFault::noSuchHost: return "no such host";
    case HttpFault::refused: return "connection refused";
    case HttpFault::unreachable: return "unreachable";
    case HttpFault::connectTimeout: return "no connection in time";
    case HttpFault::proxy: return "the proxy is not there, or refused";
    case HttpFault::tlsUntrusted: return "the certificate's authority is not trusted";
    case HttpFault::tlsWrongName: return "the certificate is another host's";
    case HttpFault::tlsExpired: return "the certificate has expired or is not yet valid";
    case HttpFault::tlsFailed: return "no TLS connection came about";
    case HttpFault::closed: return "the connection ended before the first byte of a reply";
    case HttpFault::cutOff: return "the connection ended inside the reply";
    case HttpFault::notHttp: return "what came is no HTTP reply";
    case HttpFault::tooLarge: return "the reply is larger than the limit";
    case HttpFault::silence: return "no byte moved within the time limit";
    case HttpFault::deadline: return "the call's deadline has passed";
    case HttpFault::cancelled: return "cancelled";
    case HttpFault::local: return "this machine has no memory or no descriptor left";
    }
    return {};
}

}  // namespace

std::string textOf(const HttpFailure& failure)
{
    if (failure.fault == HttpFault::none) return {};
    std::string text(doing(failure.phase));
    if (!failure.peer.empty()) text.append(" ").append(failure.peer);
    text += ": ";
    return failure.words.empty() ? text.append(wordsOf(failure.fault)) : text.append(failure.words);
}

}  // namespace kzn::pvutil
