#pragma once

#include <boost/asio/io_context.hpp>
#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "service/base/Process.h"
#include "service/http/Message.h"
#include "service/tape/Channel.h"
#include "service/tape/Origin.h"

namespace service::tape {

// The other service could not be reached, or did not answer.
class NoConnection : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct UpstreamLimits {
    std::chrono::seconds connect{30};
    std::chrono::seconds exchange{120};
    std::uint64_t reply = 256ULL * 1024 * 1024;
};

// The other service, asked one request at a time, each on a connection of its own. A process that is asked to end waits
// no more.
class Upstream {
public:
    // With a file of authorities, these are believed and no others. Throws std::runtime_error where it cannot be read,
    // and where the service cannot be spoken with from this system.
    Upstream(Origin origin, const std::string& authorities);

    const Origin& origin() const { return origin_; }

    // Sends what a host sent, and gives back what came. Header lines that tell of one connection alone stay behind.
    http::Response ask(const http::Request& request);

private:
    template <typename Start>
    void await(Start start);
    void connect(boost::beast::tcp_stream& stream);
    http::Response read(Channel& channel);

    Origin origin_;
    UpstreamLimits limits_;
    boost::asio::io_context io_{1};
    StopOnRequest stop_{io_};
    OpenChannel open_;
};

}  // namespace service::tape
