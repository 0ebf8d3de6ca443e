// Where somebody on this machine is reached, and what is said without that.
#pragma once

#include <string>

namespace service::test {

inline std::string urlOf(unsigned short port, const std::string& scheme = "http")
{
    return scheme + "://127.0.0.1:" + std::to_string(port);
}

// The text with another address in the place of one.
inline std::string withAddress(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// What differs with each port does not stand in it.
inline std::string withoutPort(const std::string& text, unsigned short port)
{
    return withAddress(text, urlOf(port), "HERE");
}

}  // namespace service::test
