#pragma once

#include <poll.h>

#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>
#include <chrono>

#include "tests/service/ControlledService.h"

namespace service::test {

enum class Ended { open, closed, reset };

struct Heard {
    std::string bytes;
    Ended ended = Ended::open;
    std::chrono::milliseconds time{0};
};

// One connection, read for as long as the test says.
class Wire {
public:
    explicit Wire(unsigned short port) : port_(port), socket_(io_)
    {
        socket_.connect({boost::asio::ip::address_v4::loopback(), port});
    }

    void send(const std::string& body)
    {
        const std::string request = "POST /kznconnect/op.do HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port_) +
                                    "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
        boost::asio::write(socket_, boost::asio::buffer(request));
    }

    // Until the connection ends, so many bytes are there, or they end with this; a while without anything ends it too.
    Heard hear(const std::string& until = {}, std::size_t most = 64UL * 1024 * 1024)
    {
        Heard heard;
        const auto begun = std::chrono::steady_clock::now();
        std::vector<char> piece(64UL * 1024);
        const auto isEnough = [&] {
            return heard.bytes.size() >= most || (!until.empty() && heard.bytes.ends_with(until));
        };
        while (!isEnough() && !isQuiet(std::chrono::seconds(20))) {
            boost::system::error_code error;
            heard.bytes.append(piece.data(), socket_.read_some(boost::asio::buffer(piece), error));
            if (!error) continue;
            heard.ended = error == boost::asio::error::eof ? Ended::closed : Ended::reset;
            break;
        }
        heard.time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begun);
        return heard;
    }

    // Nothing comes for that long, and the connection does not end.
    bool isQuiet(std::chrono::milliseconds time)
    {
        pollfd ready{socket_.native_handle(), POLLIN, 0};
        return poll(&ready, 1, static_cast<int>(time.count())) != 1;
    }

private:
    unsigned short port_;
    boost::asio::io_context io_;
    boost::asio::ip::tcp::socket socket_;
};

class FaultedService : public ControlledService {
protected:
    // What is heard until the connection ends.
    Heard called(const std::string& body = "cmd=fly") const
    {
        Wire wire(port_);
        wire.send(body);
        return wire.hear();
    }

    // What is heard until a reply is whole; behind it the connection has to stay open.
    Heard replied(const std::string& body = "cmd=fly") const
    {
        Wire wire(port_);
        wire.send(body);
        Heard heard = wire.hear("</kznapi>");
        EXPECT_TRUE(wire.isQuiet(std::chrono::milliseconds(50)));
        return heard;
    }

    void set(const std::string& fault) const { done("POST", "faults", fault); }

    nlohmann::json counts(std::size_t at = 0) const { return done("GET", "faults").at("faults").at(at); }

    // The call goes as if there were no faults.
    void expectWell(const std::string& body = "cmd=fly") const
    {
        const Heard heard = replied(body);
        EXPECT_THAT(heard.bytes, testing::StartsWith("HTTP/1.1 200 OK\r\n"));
        EXPECT_THAT(heard.bytes, testing::EndsWith("</kznapi>"));
        EXPECT_EQ(heard.ended, Ended::open);
    }

    std::string makeSpaceBody(const std::string& name) const
    {
        return "cmd=execute&task=AddTabs&cred=" + signIn(port_, "anna") + "&xml=<workspace><workspaceName>" + name +
               "</workspaceName></workspace>";
    }
};

}  // namespace service::test
