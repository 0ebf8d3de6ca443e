#include "service/http/Server.h"

#include <iostream>
#include <sstream>
#include <stdexcept>

#include "service/http/Address.h"

namespace service::http {

namespace {

constexpr std::chrono::milliseconds kPause{50};

std::string textOf(const boost::asio::ip::tcp::endpoint& address)
{
    std::ostringstream text;
    text << address;
    return text.str();
}

}  // namespace

Server::Server(boost::asio::io_context& io, const boost::asio::ip::tcp::endpoint& address, const Answerer& answerer,
               const ConnectionLimits& limits, RequestLog* log)
    : acceptor_(io), pause_(io), answerer_(answerer), limits_(limits), log_(log)
{
    try {
        acceptor_.open(address.protocol());
        claimAddress(acceptor_);
        acceptor_.bind(address);
        acceptor_.listen();
    } catch (const boost::system::system_error& error) {
        throw std::runtime_error("cannot listen on " + textOf(address) + ": " + error.code().message());
    }
    accept();
}

std::string Server::address() const
{
    return textOf(acceptor_.local_endpoint());
}

unsigned short Server::port() const
{
    return acceptor_.local_endpoint().port();
}

void Server::accept()
{
    acceptor_.async_accept([this](const boost::system::error_code& error, boost::asio::ip::tcp::socket socket) {
        onAccepted(error, std::move(socket));
    });
}

void Server::onAccepted(const boost::system::error_code& error, boost::asio::ip::tcp::socket socket)
{
    if (error == boost::asio::error::operation_aborted) return;
    if (error) {
        // Out of descriptors, most likely: those in use will come back.
        std::clog << "a connection could not be taken: " << error.message() << std::endl;
        return acceptLater();
    }
    if (static_cast<std::size_t>(slots_.use_count()) <= limits_.connections) {
        std::make_shared<Connection>(std::move(socket), answerer_, limits_, log_, slots_)->start();
    } else {
        Connection::turnAway(std::move(socket));
    }
    accept();
}

void Server::acceptLater()
{
    pause_.expires_after(kPause);
    pause_.async_wait([this](const boost::system::error_code& error) {
        if (!error) accept();
    });
}

}  // namespace service::http
