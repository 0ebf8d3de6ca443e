#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <memory>
#include <string>

#include "service/http/Connection.h"
#include "service/http/Router.h"

namespace service::http {

// Takes connections at one address. Everything runs on the thread that runs the context: one request at a time reaches
// the data file, and none waits for a slow client.
class Server {
public:
    // Throws std::runtime_error where the address cannot be had. Port 0 takes a free one.
    Server(boost::asio::io_context& io, const boost::asio::ip::tcp::endpoint& address, const Router& router,
           const ConnectionLimits& limits);

    // The address with the port that was really taken, as "127.0.0.1:8420".
    std::string address() const;
    unsigned short port() const;

private:
    void accept();
    void onAccepted(const boost::system::error_code& error, boost::asio::ip::tcp::socket socket);
    void acceptLater();

    boost::asio::ip::tcp::acceptor acceptor_;
    boost::asio::steady_timer pause_;
    const Router& router_;
    ConnectionLimits limits_;
    Journal journal_;
    std::shared_ptr<int> slots_ = std::make_shared<int>();  // as many uses as connections, and one
};

}  // namespace service::http
