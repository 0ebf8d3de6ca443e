#include "service/remote/Remote.h"

#include <boost/asio/io_context.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <chrono>
#include <limits>
#include <utility>

#include "service/base/Text.h"

namespace service::remote {

namespace wire = boost::beast::http;
using Error = boost::system::error_code;

namespace {

constexpr std::chrono::seconds kPatience{60};

// One request and its reply on a connection of its own.
class Exchange {
public:
    Exchange(const boost::asio::ip::tcp::endpoint& endpoint, wire::request<wire::string_body> request)
        : stream_(io_), request_(std::move(request))
    {
        parser_.body_limit(std::numeric_limits<std::uint64_t>::max());
        stream_.expires_after(kPatience);
        stream_.async_connect(endpoint, [this](Error error) {
            if (isGood(error)) write();
        });
        io_.run();
    }

    const Error& error() const { return error_; }
    Reply reply() { return {parser_.get().result_int(), std::move(parser_.get().body())}; }

private:
    bool isGood(const Error& error)
    {
        error_ = error;
        return !error;
    }

    // A service that refuses answers before it has read all, and closes: what it said counts.
    void write()
    {
        wire::async_write(stream_, request_, [this](Error /*error*/, std::size_t) { read(); });
    }

    void read()
    {
        wire::async_read(stream_, buffer_, parser_, [this](Error error, std::size_t) { isGood(error); });
    }

    boost::asio::io_context io_;
    boost::beast::tcp_stream stream_;
    wire::request<wire::string_body> request_;
    boost::beast::flat_buffer buffer_;
    wire::response_parser<wire::string_body> parser_;
    Error error_;
};

}  // namespace

Remote::Remote(const std::string& url, std::string token) : token_(std::move(token))
{
    constexpr std::string_view kScheme = "http://";
    const std::string what = "the address " + service::inQuotes(url) + " ";
    if (!url.starts_with(kScheme)) throw std::invalid_argument(what + "has to begin with http://");
    address_ = url.substr(kScheme.size(), url.find('/', kScheme.size()) - kScheme.size());
    const std::size_t colon = address_.rfind(':');
    const auto port =
        wholeNumber(std::string_view(address_).substr(colon == std::string::npos ? 0 : colon + 1), 1, 65535);
    if (colon == std::string::npos || !port) throw std::invalid_argument(what + "has no port");
    host_ = address_.substr(0, colon);
    if (host_ == "localhost") host_ = "127.0.0.1";
    if (host_.starts_with('[') && host_.ends_with(']')) host_ = host_.substr(1, host_.size() - 2);
    Error error;
    const auto address = boost::asio::ip::make_address(host_, error);
    if (error || !address.is_loopback()) throw std::invalid_argument(what + "is not one of this machine");
    port_ = static_cast<unsigned short>(*port);
}

Reply Remote::send(const std::string& method, const std::string& target, const std::string& body) const
{
    wire::request<wire::string_body> request;
    request.method_string(method);
    request.target(target);
    request.version(11);
    request.set(wire::field::host, address_);
    request.set(wire::field::authorization, "Bearer " + token_);
    request.set(wire::field::connection, "close");
    if (!body.empty()) request.set(wire::field::content_type, "application/json");
    request.body() = body;
    request.prepare_payload();
    Exchange exchange({boost::asio::ip::make_address(host_), port_}, std::move(request));
    if (exchange.error()) {
        throw NoConnection("no service answers at " + address_ + ": " + exchange.error().message());
    }
    return exchange.reply();
}

}  // namespace service::remote
