// A lock that is held for a few steps only.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace kzn::pvutil {

/// Needs no memory, neither to be made nor to be taken, so that taking it cannot fail; not every system has a mutex of
/// that kind. Whoever waits for it lets others run meanwhile.
class ShortLock {
public:
    void lock() noexcept
    {
        for (int times = 0; isHeld_.test_and_set(std::memory_order_acquire); ++times) {
            if (times < kTimes) std::this_thread::yield();
            else std::this_thread::sleep_for(std::chrono::milliseconds(1));  // whoever holds it may have less priority
        }
    }
    void unlock() noexcept { isHeld_.clear(std::memory_order_release); }

private:
    static constexpr int kTimes = 100;

    std::atomic_flag isHeld_;
};

}  // namespace kzn::pvutil
