#include "pvutil/SystemWindow.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>

#include "pvutil/TimerWindow.h"
#include "pvutil/posix/Descriptor.h"
#include "pvutil/posix/ThreadLoop.h"

namespace kzn::pvutil {

// No window that anybody could see: a timer, watched by the loop of the thread that made it.
struct SystemWindow {
    SystemWindow() = default;
    SystemWindow(const SystemWindow&) = delete;
    SystemWindow& operator=(const SystemWindow&) = delete;

    ~SystemWindow()
    {
        if (number != 0) loop->remove(number, timer.get());
    }

    std::shared_ptr<ThreadLoop> loop;
    Descriptor timer;
    std::uint64_t number = 0;
    std::atomic<unsigned int> timerID = 0;
    std::atomic<TimerWindow*> slot = nullptr;
};

std::shared_ptr<SystemWindow> makeSystemWindow(const char*, TimerWindow* slot) noexcept
try {
    auto window = std::make_shared<SystemWindow>();
    window->slot = slot;
    window->loop = ThreadLoop::ofThisThread();
    window->timer = Descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
    if (!window->loop || !window->timer) return nullptr;
    window->number = window->loop->add(window, window->timer.get());
    return window->number == 0 ? nullptr : window;
} catch (...) {
    return nullptr;
}

void setSlot(SystemWindow& window, TimerWindow* slot) noexcept
{
    window.slot = slot;
}

void setSystemTimer(SystemWindow& window, unsigned int timerID, unsigned int milliseconds) noexcept
{
    constexpr unsigned int kInSecond = 1000;
    constexpr long kNanoseconds = 1'000'000;
    itimerspec period{};
    period.it_interval.tv_sec = milliseconds / kInSecond;
    period.it_interval.tv_nsec = static_cast<long>(milliseconds % kInSecond) * kNanoseconds;
    period.it_value = period.it_interval;
    window.timerID = timerID;
    timerfd_settime(window.timer.get(), 0, &period, nullptr);
}

bool deliverDue(SystemWindow& window) noexcept
{
    std::uint64_t expirations = 0;
    if (read(window.timer.get(), &expirations, sizeof expirations) != sizeof expirations) return false;
    deliverTick(window.slot, window.timerID);
    return true;
}

void TimerWindow::shutDown() noexcept
{
    ThreadLoop::shutDown();
}

}  // namespace kzn::pvutil
