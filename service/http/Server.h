#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <memory>
#include <string>

#include "service/http/Connection.h"

namespace service::http {

// Takes connections at one address. All that is HTTP runs on the thread that runs the context, and none waits there for
// a slow client.
class Server {
public:
    // Throws std::runtime_error where the address cannot be had. Port 0 takes a free one. With a log each request
    // gets a line there.
    Server(boost::asio::io_context& io, const boost::asio::ip::tcp::endpoint& address, const Answerer& answerer,
           const ConnectionLimits& limits, RequestLog* log = nullptr);

    // The address with the port that was really taken, as "127.0.0.1:8420".
    std::string address() const;
    unsigned short port() const;

private:
    void accept();
    void onAccepted(const boost::system::error_code& error, boost::asio::ip::tcp::socket socket);
    void acceptLater();

    boost::asio::ip::tcp::acceptor acceptor_;
    boost::asio::steady_timer pause_;
    const Answerer& answerer_;
    ConnectionLimits limits_;
    RequestLog* log_;
    std::shared_ptr<int> slots_ = std::make_shared<int>();  // as many uses as connections, and one
};

}  // namespace service::http
