#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace service::tape {

// Where a service is reached.
struct Origin {
    bool isTls = false;
    std::string host;  // without the brackets of a numeric address
    std::string port;

    // "http://host:port", without a port that goes without saying.
    std::string text() const;

    // The same without the scheme, as a Host header has it.
    std::string authority() const;

    // How it may stand in a text: with and without such a port, and percent-encoded.
    std::vector<std::string> spellings() const;
};

// The scheme, host and port of a URL; what stands behind them does not count. Throws std::invalid_argument.
Origin originOf(std::string_view url);

// Puts one service's address in the place of another's, percent-encoded where that was.
std::string withOrigin(std::string_view text, const Origin& from, const Origin& to);

}  // namespace service::tape
