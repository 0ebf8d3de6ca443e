// Why an exchange came to nothing: the one set of causes that every system's HTTP is told apart into.
#pragma once

#include <string>

namespace kzn::pvutil {

/// The numbers are those of the kinds that a host sees.
enum class HttpFault : int {
    none = 0,
    badAddress = 1,
    noSuchHost = 2,
    refused = 3,
    unreachable = 4,
    connectTimeout = 5,
    proxy = 6,
    tlsUntrusted = 7,
    tlsWrongName = 8,
    tlsExpired = 9,
    tlsFailed = 10,
    closed = 11,
    cutOff = 12,
    notHttp = 13,
    tooLarge = 14,
    silence = 15,
    deadline = 16,
    cancelled = 17,
    local = 18
};

/// How far an exchange had come.
enum class HttpPhase { address, lookUp, connect, secure, send, wait, receive };

struct HttpFailure {
    HttpFault fault = HttpFault::none;
    HttpPhase phase = HttpPhase::address;
    std::string words;  // the system's own, or ours where it has none
    std::string peer;   // host and port, of the server or of the proxy; empty where there is no address
};

/// A line such as "Connecting to 127.0.0.1:80: Connection refused"; empty where nothing failed.
std::string textOf(const HttpFailure& failure);

}  // namespace kzn::pvutil
