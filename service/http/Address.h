#pragma once

#include <boost/asio/ip/tcp.hpp>

namespace service::http {

// Before the socket is bound: a port that another process listens on is refused, one that was left a moment ago is not.
void claimAddress(boost::asio::ip::tcp::acceptor& acceptor);

}  // namespace service::http
