#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <string>

namespace service::http {

inline constexpr const char* kDefaultListen = "127.0.0.1:8420";

// The address of "HOST:PORT"; only one of this machine's own is taken, for the passwords travel in clear. Returns what
// is wrong with it, or nothing.
std::string parseListen(const std::string& text, boost::asio::ip::tcp::endpoint& endpoint);

}  // namespace service::http
