#include "pvutil/CallControl.h"

namespace kzn::pvutil {

void CallControl::begin(std::chrono::milliseconds limit) noexcept
{
    const std::lock_guard guard(lock_);
    if (depth_++ > 0) return;
    cancelled_ = false;
    deadline_ = limit.count() == 0 ? std::nullopt : std::optional(Clock::now() + limit);
}

void CallControl::end() noexcept
{
    const std::lock_guard guard(lock_);
    --depth_;
}

void CallControl::cancel() noexcept
{
    const std::lock_guard guard(lock_);
    if (depth_ == 0) return;
    cancelled_ = true;
    if (waker_ != nullptr) waker_->wake();
}

HttpFault CallControl::stopped() const noexcept
{
    const std::lock_guard guard(lock_);
    if (cancelled_) return HttpFault::cancelled;
    return deadline_ && Clock::now() >= *deadline_ ? HttpFault::deadline : HttpFault::none;
}

std::optional<CallControl::Clock::time_point> CallControl::deadline() const noexcept
{
    const std::lock_guard guard(lock_);
    return deadline_;
}

void CallControl::wakes(Waker* waker) noexcept
{
    const std::lock_guard guard(lock_);
    waker_ = waker;
}

}  // namespace kzn::pvutil
