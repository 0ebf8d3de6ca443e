#pragma once

#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <functional>
#include <memory>

#include "service/faults/Plan.h"

namespace service::faults {

// Writes a reply as its plan says. It keeps itself alive through the operation that it waits for, and ends when the
// client does, at the latest.
class Delivery : public std::enable_shared_from_this<Delivery> {
public:
    // `written` runs where the plan ends with a connection that goes on; what it holds is held while this lives.
    Delivery(boost::beast::tcp_stream& stream, Plan plan, std::function<void()> written);

    void start();

private:
    using Error = boost::beast::error_code;

    void write();
    void onWritten(Error error, std::size_t bytes);
    void repeat();
    void end();
    void waitForClient();
    void after(std::chrono::milliseconds time, void (Delivery::*next)());

    boost::beast::tcp_stream& stream_;
    boost::asio::steady_timer timer_;
    Plan plan_;
    std::function<void()> written_;
    std::size_t at_ = 0;
    char ignored_ = 0;
};

}  // namespace service::faults
