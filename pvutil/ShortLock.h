// A lock that is held for a few steps only.
#pragma once

#include <atomic>
#include <thread>

namespace kzn::pvutil {

/// Needs no memory, neither to be made nor to be taken, so that taking it cannot fail; not every system has a mutex of
/// that kind. Whoever waits for it lets others run meanwhile.
class ShortLock {
public:
    void lock() noexcept
    {
        while (isHeld_.test_and_set(std::memory_order_acquire)) std::this_thread::yield();
    }
    void unlock() noexcept { isHeld_.clear(std::memory_order_release); }

private:
    std::atomic_flag isHeld_;
};

}  // namespace kzn::pvutil
