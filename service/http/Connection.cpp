#include "service/http/Connection.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/dispatch.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <limits>
#include <sstream>
#include <utility>

#include "service/base/Refusal.h"
#include "service/faults/Delivery.h"
#include "service/http/EventStream.h"

namespace service::http {

namespace beast = boost::beast;
namespace wire = boost::beast::http;

namespace {

constexpr std::size_t kDrainBytes = 80UL * 1024 * 1024;
constexpr std::size_t kDrainPiece = 64UL * 1024;
constexpr std::size_t kReadPiece = 64UL * 1024;         // an upload would come in pieces of 512 bytes otherwise
constexpr std::size_t kLargeBytes = 8UL * 1024 * 1024;  // worth giving back
constexpr std::string_view kContinue = "HTTP/1.1 100 Continue\r\n\r\n";

std::string textOf(boost::beast::string_view view)
{
    return {view.data(), view.size()};
}

// What is answered to bytes that are not a request that can be taken.
Response refusalFor(const beast::error_code& error)
{
    if (error == wire::error::header_limit) {
        return refusal(431, "the head of the request is too large", exceptionid::kLimitExceeded);
    }
    if (error == wire::error::body_limit) {
        return refusal(413, "the request is too large", exceptionid::kLimitExceeded);
    }
    return refusal(400, "this is not a request: " + error.message(), exceptionid::kBadRequest);
}

wire::response<wire::string_body> messageOf(Response response, bool keepAlive)
{
    wire::response<wire::string_body> message;
    message.result(response.status);
    if (!response.contentType.empty()) message.set(wire::field::content_type, response.contentType);
    for (const auto& [name, value] : response.headers) message.insert(name, value);
    if (message.count(wire::field::server) == 0) message.set(wire::field::server, "pvwapi-service");
    message.keep_alive(keepAlive);
    message.body() = std::move(response.body);
    message.prepare_payload();
    return message;
}

bool isParseError(const beast::error_code& error)
{
    static const beast::error_code kSample = wire::make_error_code(wire::error::bad_method);
    return error.category() == kSample.category() && error != wire::error::end_of_stream &&
           error != wire::error::partial_message;
}

}  // namespace

Connection::Connection(boost::asio::ip::tcp::socket socket, const Answerer& answerer, const ConnectionLimits& limits,
                       RequestLog* log, std::shared_ptr<void> slot)
    : stream_(std::move(socket)), answerer_(answerer), limits_(limits), log_(log), slot_(std::move(slot))
{
}

void Connection::turnAway(boost::asio::ip::tcp::socket socket)
{
    std::ostringstream text;
    text << messageOf(refusal(503, "there are too many connections", exceptionid::kLimitExceeded), false);
    Error ignored;
    socket.non_blocking(true, ignored);
    socket.write_some(boost::asio::buffer(text.str()), ignored);
    socket.shutdown(boost::asio::ip::tcp::socket::shutdown_both, ignored);
}

void Connection::start()
{
    Error ignored;
    // A reply is one write; holding it back for an acknowledgement would only delay it.
    stream_.socket().set_option(boost::asio::ip::tcp::no_delay(true), ignored);
    buffer_.reserve(kReadPiece);
    readHeader();
}

void Connection::readHeader()
{
    parser_.emplace();
    head_ = {};
    bodyBytes_ = 0;
    parser_->header_limit(limits_.headerBytes);
    // The target decides how much a body may hold, and is not known yet.
    parser_->body_limit(std::numeric_limits<std::uint64_t>::max());
    stream_.expires_after(limits_.header);
    wire::async_read_header(stream_, buffer_, *parser_,
                            [self = shared_from_this()](Error error, std::size_t) { self->onHeader(error); });
}

void Connection::onHeader(Error error)
{
    if (error) return onReadError(error);
    readHead();
    if (std::optional<Response> refused = answerer_.refused(head_)) return send(std::move(*refused), false);
    const std::uint64_t limit = answerer_.bodyLimit(head_.target);
    if (parser_->content_length().value_or(0) > limit) {
        return onReadError(wire::make_error_code(wire::error::body_limit));
    }
    parser_->body_limit(limit);
    if (beast::iequals(parser_->get()[wire::field::expect], "100-continue")) return sendContinue();
    readBody();
}

void Connection::readHead()
{
    const auto& message = parser_->get();
    begun_ = std::chrono::steady_clock::now();
    head_.method = textOf(message.method_string());
    head_.target = textOf(message.target());
    head_.host = textOf(message[wire::field::host]);
    head_.origin = textOf(message[wire::field::origin]);
    head_.fetchSite = textOf(message["Sec-Fetch-Site"]);
    head_.authorization = textOf(message[wire::field::authorization]);
}

void Connection::sendContinue()
{
    stream_.expires_after(limits_.write);
    boost::asio::async_write(stream_, boost::asio::buffer(kContinue.data(), kContinue.size()),
                             [self = shared_from_this()](Error error, std::size_t) {
                                 if (!error) self->readBody();
                             });
}

void Connection::readBody()
{
    stream_.expires_after(limits_.body);
    wire::async_read(stream_, buffer_, *parser_,
                     [self = shared_from_this()](Error error, std::size_t) { self->onBody(error); });
}

void Connection::onBody(Error error)
{
    if (error) return onReadError(error);
    auto& message = parser_->get();
    Request request;
    request.method = head_.method;
    request.target = head_.target;
    request.contentType = textOf(message[wire::field::content_type]);
    request.body = std::move(message.body());
    for (const auto& field : message) {
        request.headers.emplace_back(textOf(field.name_string()), textOf(field.value()));
    }
    bodyBytes_ = request.body.size();
    begun_ = std::chrono::steady_clock::now();
    answerer_.answerLater(std::move(request),
                          [self = shared_from_this(), keepAlive = message.keep_alive()](Response response) {
                              self->sendFromAnywhere(std::move(response), keepAlive);
                          });
}

// Whoever made the answer, the connection is for the thread that it was accepted by.
void Connection::sendFromAnywhere(Response response, bool keepAlive)
{
    boost::asio::dispatch(stream_.get_executor(),
                          [self = shared_from_this(), response = std::move(response), keepAlive]() mutable {
                              self->send(std::move(response), keepAlive);
                          });
}

// A broken request is answered and the connection closed; where nobody is left to read, or too slow, it just closes.
void Connection::onReadError(Error error)
{
    if (isParseError(error)) send(refusalFor(error), false);
}

void Connection::send(Response response, bool keepAlive)
{
    if (log_ != nullptr) log_->note(head_, bodyBytes_, response, begun_);
    if (response.events != nullptr) return goOnWith(response);
    if (response.fault && head_.method != "HEAD") return deliver(response, keepAlive);
    message_ = messageOf(std::move(response), keepAlive);
    // What was asked for the head alone gets that of the whole answer, its length included.
    if (head_.method == "HEAD") message_->body().clear();
    stream_.expires_after(limits_.write);
    wire::async_write(stream_, *message_,
                      [self = shared_from_this()](Error error, std::size_t) { self->onWritten(error); });
}

// The socket is the stream's from here on.
void Connection::goOnWith(const Response& response)
{
    const auto stream = std::make_shared<EventStream>(stream_.release_socket(), std::move(slot_));
    response.events->add(stream);
    stream->start(response.contentType, response.body);
}

void Connection::deliver(const Response& response, bool keepAlive)
{
    std::make_shared<faults::Delivery>(stream_, faults::planFor(*response.fault, response, keepAlive),
                                       [self = shared_from_this(), keepAlive] {
                                           if (keepAlive) return self->readHeader();
                                           self->finish();
                                       })
        ->start();
}

void Connection::onWritten(Error error)
{
    const bool goesOn = message_->keep_alive();
    const bool wasLarge = message_->body().size() + bodyBytes_ > kLargeBytes;
    message_.reset();
    if (wasLarge) answerer_.tidyUp();
    if (error) return;
    if (goesOn) return readHeader();
    finish();
}

// Closing with unread bytes would reset the connection and could take the reply away from its reader.
void Connection::finish()
{
    Error ignored;
    stream_.socket().shutdown(boost::asio::ip::tcp::socket::shutdown_send, ignored);
    if (ignored) return;
    stream_.expires_after(limits_.drain);
    buffer_.clear();
    drain();
}

void Connection::drain()
{
    stream_.async_read_some(buffer_.prepare(kDrainPiece), [self = shared_from_this()](Error error, std::size_t bytes) {
        self->drained_ += bytes;
        if (!error && self->drained_ < kDrainBytes) self->drain();
    });
}

}  // namespace service::http
