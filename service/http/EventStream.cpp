#include "service/http/EventStream.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <utility>

namespace service::http {

namespace {

constexpr std::chrono::seconds kBeat{15};
constexpr std::size_t kMostWaiting = std::size_t{4} * 1024 * 1024;

}  // namespace

EventStream::EventStream(boost::asio::ip::tcp::socket socket, std::shared_ptr<void> slot)
    : socket_(std::move(socket)), heart_(socket_.get_executor()), slot_(std::move(slot))
{
}

void EventStream::start(const std::string& contentType, const std::string& first)
{
    send(std::make_shared<const std::string>(
        "HTTP/1.1 200 OK\r\nServer: pvwapi-service\r\nContent-Type: " + contentType +
        "\r\nCache-Control: no-store\r\nX-Content-Type-Options: nosniff\r\n"
        "Connection: close\r\n\r\n" +
        first));
    watch();
    beat();
}

void EventStream::hear(const std::shared_ptr<const std::string>& text)
{
    boost::asio::post(socket_.get_executor(), [self = shared_from_this(), text] { self->send(text); });
}

void EventStream::send(const std::shared_ptr<const std::string>& text)
{
    if (!socket_.is_open()) return;
    waitingBytes_ += text->size();
    if (waitingBytes_ > kMostWaiting) return close();
    waiting_.push_back(text);
    if (waiting_.size() == 1) write();
}

void EventStream::write()
{
    boost::asio::async_write(socket_, boost::asio::buffer(*waiting_.front()),
                             [self = shared_from_this()](Error error, std::size_t) { self->onWritten(error); });
}

void EventStream::onWritten(Error error)
{
    if (error || !socket_.is_open()) return close();
    wroteSinceBeat_ = true;
    waitingBytes_ -= waiting_.front()->size();
    waiting_.pop_front();
    if (!waiting_.empty()) write();
}

// Nothing more is expected from the client; what comes is read to learn of its end.
void EventStream::watch()
{
    socket_.async_read_some(boost::asio::buffer(ignored_), [self = shared_from_this()](Error error, std::size_t) {
        if (error) return self->close();
        self->watch();
    });
}

// A comment now and then shows both sides that the other is there. A write that has not ended since the last one never
// will.
void EventStream::beat()
{
    heart_.expires_after(kBeat);
    heart_.async_wait([self = shared_from_this()](Error error) {
        if (error || !self->socket_.is_open()) return;
        if (!self->wroteSinceBeat_ && !self->waiting_.empty()) return self->close();
        self->wroteSinceBeat_ = false;
        if (self->waiting_.empty()) self->send(std::make_shared<const std::string>(": here\n\n"));
        self->beat();
    });
}

void EventStream::close()
{
    Error ignored;
    socket_.close(ignored);
    heart_.cancel();
}

}  // namespace service::http
