#include "service/faults/Delivery.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>
#include <utility>

namespace service::faults {

namespace {

// How long a client may leave unread what is written, or unclosed what stalls.
constexpr std::chrono::minutes kPatience{10};

}  // namespace

Delivery::Delivery(boost::beast::tcp_stream& stream, Plan plan, std::function<void()> written)
    : stream_(stream), timer_(stream.get_executor()), plan_(std::move(plan)), written_(std::move(written))
{
}

void Delivery::start()
{
    if (plan_.delay.count() == 0) return write();
    after(plan_.delay, &Delivery::write);
}

void Delivery::after(std::chrono::milliseconds time, void (Delivery::*next)())
{
    timer_.expires_after(time);
    timer_.async_wait([self = shared_from_this(), next](Error error) {
        if (!error) ((*self).*next)();
    });
}

void Delivery::write()
{
    const std::size_t rest = plan_.bytes.size() - at_;
    if (rest == 0) return end();
    const std::size_t now = plan_.piece == 0 ? rest : std::min(rest, plan_.piece);
    stream_.expires_after(kPatience);
    boost::asio::async_write(
        stream_, boost::asio::buffer(plan_.bytes.data() + at_, now),
        [self = shared_from_this()](Error error, std::size_t bytes) { self->onWritten(error, bytes); });
}

void Delivery::onWritten(Error error, std::size_t bytes)
{
    if (error) return;
    at_ += bytes;
    if (at_ < plan_.bytes.size()) return after(plan_.pause, &Delivery::write);
    if (!plan_.more.empty()) return repeat();
    end();
}

void Delivery::repeat()
{
    stream_.expires_after(kPatience);
    boost::asio::async_write(stream_, boost::asio::buffer(plan_.more),
                             [self = shared_from_this()](Error error, std::size_t) {
                                 if (!error) self->repeat();
                             });
}

void Delivery::end()
{
    Error ignored;
    auto& socket = stream_.socket();
    switch (plan_.end) {
    case Plan::End::keep: return written_();
    case Plan::End::stall: return waitForClient();
    case Plan::End::reset: socket.set_option(boost::asio::socket_base::linger(true, 0), ignored); break;
    case Plan::End::close: socket.shutdown(boost::asio::ip::tcp::socket::shutdown_both, ignored); break;
    }
    socket.close(ignored);
}

void Delivery::waitForClient()
{
    stream_.expires_after(kPatience);
    stream_.async_read_some(boost::asio::buffer(&ignored_, 1), [self = shared_from_this()](Error error, std::size_t) {
        if (!error) self->waitForClient();
    });
}

}  // namespace service::faults
