// A port of the loopback address whose queue of connections is full: whoever connects waits.
#pragma once

#include <memory>
#include <utility>

namespace kzn::test {

class BusyPort {
public:
    BusyPort();
    BusyPort(const BusyPort&) = delete;
    BusyPort& operator=(const BusyPort&) = delete;
    ~BusyPort();

    unsigned short port() const;

private:
    struct Queue;
    std::unique_ptr<Queue> queue_;
};

}  // namespace kzn::test
