#include "service/tape/Upstream.h"

#include <algorithm>
#include <array>
#include <boost/asio/ip/tcp.hpp>
#include <optional>

#include "service/tape/Headers.h"

namespace service::tape {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace wire = boost::beast::http;
using asio::ip::tcp;
using Error = Channel::Error;

// What belongs to one connection, or is said anew for each. A compressed reply could not be read.
constexpr std::array<std::string_view, 12> kOwn{
    "connection",        "keep-alive", "proxy-authenticate", "proxy-connection", "te",   "trailer",
    "transfer-encoding", "upgrade",    "content-length",     "accept-encoding",  "host", "expect"};

bool isOwn(std::string_view name)
{
    return std::ranges::find(kOwn, lower(name)) != kOwn.end();
}

Channel::Request messageOf(const http::Request& request, const Origin& origin)
{
    Channel::Request message;
    message.method_string(request.method);
    message.target(request.target);
    message.version(11);
    message.set(wire::field::host, origin.authority());
    for (const auto& [name, value] : request.headers) {
        if (!isOwn(name)) message.insert(name, value);
    }
    if (message.count(wire::field::content_type) == 0 && !request.contentType.empty()) {
        message.set(wire::field::content_type, request.contentType);
    }
    message.keep_alive(false);
    message.body() = request.body;
    message.prepare_payload();
    return message;
}

http::Response responseOf(wire::response<wire::string_body>& message)
{
    http::Response response;
    response.status = message.result_int();
    response.contentType.clear();
    for (const auto& field : message) {
        const std::string name(field.name_string().data(), field.name_string().size());
        const std::string value(field.value().data(), field.value().size());
        if (field.name() == wire::field::content_type) response.contentType = value;
        else if (!isOwn(name)) response.headers.emplace_back(name, value);
    }
    response.body = std::move(message.body());
    return response;
}

// The reply is still to come. One that changes protocols is the last of this one.
bool isInterim(unsigned status)
{
    constexpr unsigned kSwitching = 101;
    return status >= 100 && status < 200 && status != kSwitching;
}

class PlainChannel final : public StreamChannel<beast::tcp_stream> {
public:
    using StreamChannel::StreamChannel;

    void greet(Ended ended) override { ended({}); }
};

std::unique_ptr<Channel> openPlain(asio::io_context& io)
{
    return std::make_unique<PlainChannel>(io);
}

}  // namespace

Upstream::Upstream(Origin origin, const std::string& authorities)
    : origin_(std::move(origin)), open_(origin_.isTls ? tlsChannels(origin_.host, authorities) : openPlain)
{
}

http::Response Upstream::ask(const http::Request& request)
{
    const Channel::Request message = messageOf(request, origin_);
    const std::unique_ptr<Channel> channel = open_(io_);
    connect(channel->carrier());
    await([&](auto ended) { channel->greet(ended); });
    channel->carrier().expires_after(limits_.exchange);
    await([&](auto ended) { channel->write(message, ended); });
    return read(*channel);
}

// The reply, behind what a service says before it.
http::Response Upstream::read(Channel& channel)
{
    beast::flat_buffer buffer;
    std::optional<Channel::ReplyParser> parser;
    do {
        parser.emplace();
        parser->body_limit(limits_.reply);
        await([&](auto ended) { channel.read(buffer, *parser, ended); });
    } while (isInterim(parser->get().result_int()));
    return responseOf(parser->get());
}

// Starts one thing and waits for its end. The context never runs out of work: it waits for the process to be asked to
// end, too.
template <typename Start>
void Upstream::await(Start start)
{
    std::optional<Error> result;
    start([&result](Error error) { result = error; });
    while (!result && !io_.stopped()) io_.run_one();
    if (!result) throw NoConnection(origin_.text() + ": stopped");
    if (*result) throw NoConnection(origin_.text() + ": " + result->message());
}

void Upstream::connect(beast::tcp_stream& stream)
{
    tcp::resolver resolver(io_);
    tcp::resolver::results_type found;
    await([&](auto ended) {
        resolver.async_resolve(origin_.host, origin_.port,
                               [&found, ended](Error error, tcp::resolver::results_type all) {
                                   found = std::move(all);
                                   ended(error);
                               });
    });
    stream.expires_after(limits_.connect);
    await(
        [&](auto ended) { stream.async_connect(found, [ended](Error error, const tcp::endpoint&) { ended(error); }); });
    stream.socket().set_option(tcp::no_delay(true));
}

}  // namespace service::tape
