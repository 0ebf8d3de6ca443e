// The address of a request, taken apart for the transports, and how a redirect's address is read against it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kzn::pvutil {

/// An address that a request can go to. Every part is printable ASCII without blanks, so that none of them can end the
/// line of the request it is written into.
struct Url {
    bool secure = false;
    std::string host;
    std::uint16_t port = 0;
    std::string target;  // path and query, beginning with "/"

    std::string text() const;
    std::string hostAndPort() const;  // the port also where it is the scheme's own
    bool sameOrigin(const Url& other) const noexcept;
    bool operator==(const Url& other) const = default;
};

/// Blanks, control characters and what is not ASCII are percent-encoded first, byte by byte of UTF-8. Nothing where the
/// scheme is neither http nor https, where there is no host, or where a user is named: nobody signs in that way.
std::optional<Url> parseUrl(std::string_view utf8);

/// The address that `reference` means in a reply from `base`.
std::optional<Url> resolveUrl(const Url& base, std::string_view reference);

}  // namespace kzn::pvutil
