#include "tests/support/BusyPort.h"

#include <array>
#include <boost/asio.hpp>
#include <chrono>
#include <thread>

namespace kzn::test {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

struct BusyPort::Queue {
    asio::io_context context;
    tcp::acceptor acceptor{context};
    std::array<tcp::socket, 8> waiting{tcp::socket(context), tcp::socket(context), tcp::socket(context),
                                       tcp::socket(context), tcp::socket(context), tcp::socket(context),
                                       tcp::socket(context), tcp::socket(context)};
};

// Nobody accepts what waits here; the first few fill the queue, the others stand before it.
BusyPort::BusyPort() : queue_(std::make_unique<Queue>())
{
    queue_->acceptor.open(tcp::v4());
    queue_->acceptor.bind({asio::ip::address_v4::loopback(), 0});
    queue_->acceptor.listen(1);
    const auto end = queue_->acceptor.local_endpoint();
    for (auto& each : queue_->waiting) {
        each.async_connect(end, [](error_code) {});  // goes on its way at once, and nobody runs to hear of it
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

BusyPort::~BusyPort() = default;

unsigned short BusyPort::port() const
{
    return queue_->acceptor.local_endpoint().port();
}

}  // namespace kzn::test
