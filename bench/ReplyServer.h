// The service's end of a timed call: one reply to whatever is asked.
#pragma once

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kzn::bench {

/// Keeps connections open, sends without delay, and looks at no more of a request than it must to find its end.
class ReplyServer {
public:
    /// Listens on a free port of the loopback address.
    ReplyServer();

    std::uint16_t port() const;

    /// The address of the one that listens on a port.
    static std::string urlOf(std::uint16_t port);

    boost::asio::io_context& context() noexcept { return context_; }

    /// Serves until the process ends, or no more connections come, and counts them.
    void serve(std::string_view xmlReply, std::atomic<std::size_t>& connections);

private:
    boost::asio::io_context context_;
    boost::asio::ip::tcp::acceptor acceptor_;
    std::string reply_;
};

}  // namespace kzn::bench
