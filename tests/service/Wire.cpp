#include "tests/service/Wire.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>
#include <vector>

#include "tests/service/Socket.h"

namespace service::test {

Wire::Wire(unsigned short port) : port_(port), connection_(std::make_unique<Socket>(port)) {}

Wire::~Wire() = default;

void Wire::send(const std::string& body)
{
    const std::string request = "POST /kznconnect/op.do HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port_) +
                                "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    boost::asio::write(connection_->socket, boost::asio::buffer(request));
}

Heard Wire::hear(const std::string& until, std::size_t most)
{
    constexpr std::chrono::seconds kPatience(20);
    Heard heard;
    const auto begun = std::chrono::steady_clock::now();
    std::vector<char> piece(64UL * 1024);
    const auto isEnough = [&] {
        return heard.bytes.size() >= most || (!until.empty() && heard.bytes.ends_with(until));
    };
    while (!isEnough() && heard.ended == Ended::open) {
        boost::system::error_code error = boost::asio::error::operation_aborted;
        connection_->socket.async_read_some(boost::asio::buffer(piece), [&](const auto& result, std::size_t size) {
            error = result;
            heard.bytes.append(piece.data(), size);
        });
        runFor(kPatience);
        if (error == boost::asio::error::operation_aborted) break;
        if (error) heard.ended = error == boost::asio::error::eof ? Ended::closed : Ended::reset;
    }
    heard.time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begun);
    return heard;
}

bool Wire::isQuiet(std::chrono::milliseconds time)
{
    bool isQuiet = true;
    connection_->socket.async_wait(boost::asio::ip::tcp::socket::wait_read, [&](const auto& error) {
        isQuiet = error == boost::asio::error::operation_aborted;
    });
    runFor(time);
    return isQuiet;
}

void Wire::runFor(std::chrono::milliseconds time)
{
    auto& [io, socket] = *connection_;
    io.restart();
    io.run_for(time);
    boost::system::error_code ignored;
    socket.cancel(ignored);
    io.restart();
    io.run();
}

}  // namespace service::test
