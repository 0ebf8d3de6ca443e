#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/beast/core/error.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/stream_traits.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace service::tape {

// One connection to another service. Whatever is begun on it tells when it has ended.
class Channel {
public:
    using Error = boost::beast::error_code;
    using Ended = std::function<void(Error)>;
    using Request = boost::beast::http::request<boost::beast::http::string_body>;
    using ReplyParser = boost::beast::http::response_parser<boost::beast::http::string_body>;

    Channel() = default;
    virtual ~Channel() = default;
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    // What carries it, and keeps its time limits.
    virtual boost::beast::tcp_stream& carrier() = 0;

    // What both sides say before the first request.
    virtual void greet(Ended ended) = 0;

    virtual void write(const Request& request, Ended ended) = 0;
    virtual void read(boost::beast::flat_buffer& buffer, ReplyParser& parser, Ended ended) = 0;
};

// What all of them do alike, each with a stream of its own.
template <typename Stream>
class StreamChannel : public Channel {
public:
    template <typename... More>
    explicit StreamChannel(boost::asio::io_context& io, More&... more) : stream_(io, more...)
    {
    }

    boost::beast::tcp_stream& carrier() final { return boost::beast::get_lowest_layer(stream_); }

    void write(const Request& request, Ended ended) final
    {
        boost::beast::http::async_write(stream_, request,
                                        [ended = std::move(ended)](Error error, std::size_t) { ended(error); });
    }

    void read(boost::beast::flat_buffer& buffer, ReplyParser& parser, Ended ended) final
    {
        boost::beast::http::async_read(stream_, buffer, parser,
                                       [ended = std::move(ended)](Error error, std::size_t) { ended(error); });
    }

protected:
    Stream& stream() { return stream_; }

private:
    Stream stream_;
};

using OpenChannel = std::function<std::unique_ptr<Channel>(boost::asio::io_context&)>;

// Channels through TLS to that host; posix/ has them, and win32/ says that it has none. With a file of authorities,
// these are believed and no others. Throws std::runtime_error where it cannot be read, and where there is no TLS.
OpenChannel tlsChannels(const std::string& host, const std::string& authorities);

}  // namespace service::tape
