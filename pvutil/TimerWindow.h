// The hidden window whose timer ticks on the thread that created it.
#pragma once

#include <memory>

namespace kzn::pvutil {

/// One window, shared by an owner and the owner's copies. Ticks go to the owner that has shared it longest; when that
/// one goes, to the next, so that no tick reaches an owner that is gone and the window ends with its last owner.
class TimerWindow {
public:
    using Tick = void (*)(void* owner, unsigned int timerID);

    TimerWindow() noexcept = default;
    TimerWindow(const TimerWindow&) = delete;
    TimerWindow& operator=(const TimerWindow&) = delete;
    ~TimerWindow();

    /// Makes the window. Where that fails it stays without one, and every other call does nothing.
    void create(const char* className, void* owner, Tick tick) noexcept;

    /// Lets go of its own window, if any, and shares that of `other`.
    void share(const TimerWindow& other, void* owner) noexcept;

    /// Starts the timer anew: the first tick comes after one period, later ones each period. The system's limits
    /// (10 ms to 0x7FFFFFFF ms) hold on every target.
    void setTimer(unsigned int timerID, unsigned int milliseconds) noexcept;

    /// Lets go of the window; the last one to do so destroys it, and its timers with it.
    void destroy() noexcept;

    explicit operator bool() const noexcept { return window_ != nullptr; }

    /// Hands a tick of the window to the owner.
    void deliver(unsigned int timerID) const;

    /// Gives back what stands for the whole process; the library calls it when it is unloaded, after every window is
    /// gone.
    static void shutDown() noexcept;

private:
    struct Window;
    std::shared_ptr<Window> window_;
    TimerWindow* next_ = nullptr;  // who shares the window next longest
    void* owner_ = nullptr;
};

}  // namespace kzn::pvutil
