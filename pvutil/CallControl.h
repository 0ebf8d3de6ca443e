// What can end a call from outside: another thread that cancels it, and its deadline.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>

#include "pvutil/HttpFailure.h"
#include "pvutil/ShortLock.h"

namespace kzn::pvutil {

/// One a client. The thread of the calls begins and ends them; any other may cancel.
class CallControl {
public:
    using Clock = std::chrono::steady_clock;

    /// Ends a wait of the call's thread, from another one; never blocks.
    class Waker {
    public:
        virtual void wake() noexcept = 0;

    protected:
        ~Waker() = default;
    };

    /// A call begins; what was cancelled before is no matter of its. 0 is no limit. A call within a call is part of it.
    void begin(std::chrono::milliseconds limit) noexcept;
    void end() noexcept;

    /// Nothing happens where no call is running.
    void cancel() noexcept;

    /// HttpFault::none while the call may go on, else cancelled or deadline.
    HttpFault stopped() const noexcept;
    std::optional<Clock::time_point> deadline() const noexcept;

    /// Whom cancel wakes from now on; null for nobody. When it returns, the one before is woken no more.
    void wakes(Waker* waker) noexcept;

private:
    mutable ShortLock lock_;  // held for a look or a wake-up only
    int depth_ = 0;
    bool cancelled_ = false;
    std::optional<Clock::time_point> deadline_;
    Waker* waker_ = nullptr;
};

/// A call from the first line of an operation to its last; nothing where there is no control.
class CallScope {
public:
    CallScope(CallControl* control, std::chrono::milliseconds limit) noexcept : control_(control)
    {
        if (control_ != nullptr) control_->begin(limit);
    }
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;
    ~CallScope()
    {
        if (control_ != nullptr) control_->end();
    }

private:
    CallControl* control_;
};

}  // namespace kzn::pvutil
