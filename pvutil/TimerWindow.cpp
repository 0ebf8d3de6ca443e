#include "pvutil/TimerWindow.h"

#include <algorithm>

#include "pvutil/SystemWindow.h"

namespace kzn::pvutil {

namespace {

constexpr unsigned int kShortestPeriod = 10;
constexpr unsigned int kLongestPeriod = 0x7FFFFFFF;

}  // namespace

// The sharers form a chain through themselves, the one that has shared longest first: sharing allocates nothing, so it
// cannot fail half-way.
struct TimerWindow::Window {
    std::shared_ptr<SystemWindow> system;
    TimerWindow* first = nullptr;
    Tick tick = nullptr;
};

TimerWindow::~TimerWindow()
{
    destroy();
}

void TimerWindow::create(const char* className, void* owner, Tick tick) noexcept
try {
    destroy();
    auto window = std::make_shared<Window>();
    window->system = makeSystemWindow(className, this);
    if (!window->system) return;
    window->first = this;
    window->tick = tick;
    window_ = std::move(window);
    owner_ = owner;
} catch (...) {
    // Without a window only the refresh by timer is missing.
}

void TimerWindow::share(const TimerWindow& other, void* owner) noexcept
{
    if (&other == this || (window_ && window_ == other.window_)) return;
    destroy();
    if (!other.window_) return;
    window_ = other.window_;
    owner_ = owner;
    TimerWindow** last = &window_->first;
    while (*last != nullptr) last = &(*last)->next_;
    *last = this;
}

void TimerWindow::setTimer(unsigned int timerID, unsigned int milliseconds) noexcept
{
    if (window_) setSystemTimer(*window_->system, timerID, std::clamp(milliseconds, kShortestPeriod, kLongestPeriod));
}

void TimerWindow::destroy() noexcept
{
    if (!window_) return;
    TimerWindow** link = &window_->first;
    while (*link != this) link = &(*link)->next_;
    *link = next_;
    next_ = nullptr;
    setSlot(*window_->system, window_->first);
    window_.reset();
}

void TimerWindow::deliver(unsigned int timerID) const
{
    if (window_) window_->tick(owner_, timerID);
}

void deliverTick(TimerWindow* slot, unsigned int timerID) noexcept
try {
    if (slot != nullptr) slot->deliver(timerID);
} catch (...) {
    // The system's loop has nobody to tell.
}

}  // namespace kzn::pvutil
