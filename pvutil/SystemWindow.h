// The seam under the timer window: one window of the system, whose timer ticks on the thread that made it. Who owns it
// and where its ticks go is decided above it.
#pragma once

#include <memory>

namespace kzn::pvutil {

class TimerWindow;

/// Each system has its own. Letting go of it destroys the window and its timer.
struct SystemWindow;

/// Null where the system gives none. `slot` is whom the ticks are for.
std::shared_ptr<SystemWindow> makeSystemWindow(const char* className, TimerWindow* slot) noexcept;

/// From now on the ticks are for `slot`.
void setSlot(SystemWindow& window, TimerWindow* slot) noexcept;

/// `milliseconds` is within the system's limits.
void setSystemTimer(SystemWindow& window, unsigned int timerID, unsigned int milliseconds) noexcept;

/// Called by the system's side, on the thread that made the window. The window may be gone when it returns.
void deliverTick(TimerWindow* slot, unsigned int timerID) noexcept;

}  // namespace kzn::pvutil
