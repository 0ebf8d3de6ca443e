// What a thread has in the place of a message queue: an epoll descriptor, and the windows whose timers it watches.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "pvutil/SystemWindow.h"
#include "pvutil/posix/Descriptor.h"

namespace kzn::pvutil {

/// A window may be let go of on any thread, so the list is locked; no tick is delivered under the lock.
class ThreadLoop {
public:
    /// The calling thread's own, made at the first call; null where the system has no descriptor left.
    static std::shared_ptr<ThreadLoop> ofThisThread();

    /// The calling thread's own, null where it has none yet.
    static std::shared_ptr<ThreadLoop> standing() noexcept;

    /// Frees the loops of all threads, and what makes a thread free its own when it ends.
    static void shutDown() noexcept;

    explicit ThreadLoop(Descriptor epoll) noexcept : epoll_(std::move(epoll)) {}

    int descriptor() const noexcept { return epoll_.get(); }

    /// Watches the timer of `window`; 0 where that fails, else the number that it is removed by.
    std::uint64_t add(const std::shared_ptr<SystemWindow>& window, int timer);
    void remove(std::uint64_t number, int timer) noexcept;

    /// Delivers each window's tick that is due now, once; returns how many.
    int dispatch();

private:
    std::shared_ptr<SystemWindow> find(std::uint64_t number);

    Descriptor epoll_;
    std::mutex mutex_;
    std::uint64_t last_ = 0;
    std::vector<std::pair<std::uint64_t, std::weak_ptr<SystemWindow>>> windows_;
};

/// Takes the expirations off the window's timer and delivers one tick for them all; false where there are none.
bool deliverDue(SystemWindow& window) noexcept;

}  // namespace kzn::pvutil
