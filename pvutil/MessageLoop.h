// How a host without a Windows message loop of its own delivers the timer ticks of the calling thread.
#pragma once

#include "pvutil/Platform.h"

namespace kzn::pvutil {

/// A descriptor that becomes readable when a tick of the calling thread is due; it stays the same for the thread's
/// life. To be watched with poll or epoll, never read or closed. -1 on Windows, where the thread's message queue
/// serves, and where no descriptor can be had.
PVWAPI_API int MessageLoopFd();

/// Delivers what is due on the calling thread, without waiting, and returns how many ticks that were.
/// On Windows it dispatches the messages that wait in the thread's queue and returns how many.
PVWAPI_API int DispatchPendingMessages();

}  // namespace kzn::pvutil
