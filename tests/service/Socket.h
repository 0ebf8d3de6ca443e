#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace service::test {

// A connection to a port of loopback, with the context that it runs on.
struct Socket {
    explicit Socket(unsigned short port) { socket.connect({boost::asio::ip::address_v4::loopback(), port}); }

    boost::asio::io_context io;
    boost::asio::ip::tcp::socket socket{io};
};

}  // namespace service::test
