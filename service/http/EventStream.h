#pragma once

#include <array>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <deque>
#include <memory>
#include <string>

#include "service/http/Events.h"

namespace service::http {

// A reply without an end: events go out as they happen until the client goes. It lives while something is under way on
// its connection. A client that does not keep up is let go; it can come back and ask for what it has missed.
class EventStream : public Events::Listener, public std::enable_shared_from_this<EventStream> {
public:
    EventStream(boost::asio::ip::tcp::socket socket, std::shared_ptr<void> slot);

    void start(const std::string& contentType, const std::string& first);

    // By any thread.
    void hear(const std::shared_ptr<const std::string>& text) override;

private:
    using Error = boost::system::error_code;

    void send(const std::shared_ptr<const std::string>& text);
    void write();
    void onWritten(Error error);
    void watch();
    void beat();
    void close();

    boost::asio::ip::tcp::socket socket_;
    boost::asio::steady_timer heart_;
    std::shared_ptr<void> slot_;
    std::deque<std::shared_ptr<const std::string>> waiting_;
    std::size_t waitingBytes_ = 0;
    std::array<char, 256> ignored_{};
    bool wroteSinceBeat_ = true;
};

}  // namespace service::http
