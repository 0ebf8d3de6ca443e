#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <chrono>
#include <memory>
#include <optional>

#include "service/http/Answerer.h"
#include "service/http/RequestLog.h"

namespace service::http {

// How long a connection may do nothing useful, and how large a request's head may be.
struct ConnectionLimits {
    std::chrono::milliseconds header = std::chrono::seconds(120);  // also the life of an idle kept connection
    std::chrono::milliseconds body = std::chrono::seconds(120);
    std::chrono::milliseconds write = std::chrono::seconds(60);
    std::chrono::milliseconds drain = std::chrono::seconds(2);
    std::uint32_t headerBytes = 16 * 1024;
    std::size_t connections = 512;
};

// One client's connection: requests are read, answered and written one after another until it closes. It keeps itself
// alive through the operation that it waits for.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(boost::asio::ip::tcp::socket socket, const Answerer& answerer, const ConnectionLimits& limits,
               RequestLog* log, std::shared_ptr<void> slot);

    // Says in one write that there are too many connections already, and closes.
    static void turnAway(boost::asio::ip::tcp::socket socket);

    void start();

private:
    using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;
    using Message = boost::beast::http::response<boost::beast::http::string_body>;
    using Error = boost::beast::error_code;

    void readHeader();
    void onHeader(Error error);
    void readHead();
    void sendContinue();
    void readBody();
    void onBody(Error error);
    void onReadError(Error error);
    void sendFromAnywhere(Response response, bool keepAlive);
    void send(Response response, bool keepAlive);
    void goOnWith(const Response& response);
    void deliver(const Response& response, bool keepAlive);
    void onWritten(Error error);
    void finish();
    void drain();

    boost::beast::tcp_stream stream_;
    const Answerer& answerer_;
    const ConnectionLimits& limits_;
    RequestLog* log_;             // none where nobody wants a line
    std::shared_ptr<void> slot_;  // held while the connection counts
    boost::beast::flat_buffer buffer_;
    std::optional<Parser> parser_;
    RequestHead head_;
    std::size_t bodyBytes_ = 0;
    RequestLog::Moment begun_ = std::chrono::steady_clock::now();
    std::optional<Message> message_;
    std::size_t drained_ = 0;
};

}  // namespace service::http
