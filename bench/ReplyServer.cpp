#include "bench/ReplyServer.h"

#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>

#include <cstdint>
#include <functional>
#include <limits>
#include <thread>
#include <utility>

namespace kzn::bench {

namespace {

namespace http = boost::beast::http;
using boost::asio::ip::tcp;
using boost::system::error_code;

// What is read at once: the buffer gives no more than it has room for.
constexpr std::size_t kPiece = 65536;

std::string replyBytes(std::string_view xml)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " + std::to_string(xml.size()) +
           "\r\n\r\n" + std::string(xml);
}

void serveOne(tcp::socket socket, const std::string& reply)
{
    error_code error;
    socket.set_option(tcp::no_delay(true), error);
    boost::beast::flat_buffer buffer;
    buffer.reserve(kPiece);
    while (!error) {
        http::request_parser<http::string_body> request;
        request.body_limit(std::numeric_limits<std::uint64_t>::max());
        http::read(socket, buffer, request, error);
        if (!error) boost::asio::write(socket, boost::asio::buffer(reply), error);
    }
}

}  // namespace

ReplyServer::ReplyServer() : acceptor_(context_, tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0)) {}

std::uint16_t ReplyServer::port() const
{
    return acceptor_.local_endpoint().port();
}

std::string ReplyServer::urlOf(std::uint16_t port)
{
    return "http://127.0.0.1:" + std::to_string(port) + "/kznconnect/op.do";
}

void ReplyServer::serve(std::string_view xmlReply, std::atomic<std::size_t>& connections)
{
    reply_ = replyBytes(xmlReply);
    for (;;) {
        error_code error;
        tcp::socket socket(context_);
        acceptor_.accept(socket, error);
        if (error) return;
        ++connections;
        std::thread(serveOne, std::move(socket), std::cref(reply_)).detach();
    }
}

}  // namespace kzn::bench
