#include "pvutil/SystemWindow.h"

#include <windows.h>

#include <mutex>
#include <utility>

#include "pvutil/MessageLoop.h"
#include "pvutil/ShortLock.h"
#include "pvutil/TimerWindow.h"

namespace kzn::pvutil {

struct SystemWindow {
    SystemWindow() = default;
    SystemWindow(const SystemWindow&) = delete;
    SystemWindow& operator=(const SystemWindow&) = delete;

    ~SystemWindow()
    {
        if (handle == nullptr || DestroyWindow(handle)) return;
        // Only the thread that made a window may destroy it; another one asks it to.
        if (IsWindow(handle)) PostMessageW(handle, WM_CLOSE, 0, 0);
    }

    HWND handle = nullptr;
};

namespace {

constinit ShortLock g_lock;
constinit bool g_isTried = false;
constinit ATOM g_class = 0;

LRESULT CALLBACK timerWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_TIMER) return DefWindowProcW(window, message, wParam, lParam);
    if (IsWindow(window)) {
        const LONG_PTR slot = GetWindowLongPtrW(window, GWLP_USERDATA);
        deliverTick(reinterpret_cast<TimerWindow*>(slot), static_cast<unsigned int>(wParam));
    }
    return 0;
}

// Tried once for the process; where it fails there is no window and the refresh timer never fires.
ATOM registeredClass(const char* className) noexcept
{
    const std::lock_guard guard(g_lock);
    if (!std::exchange(g_isTried, true)) {
        WNDCLASSA record{};
        record.lpfnWndProc = timerWindowProcedure;
        record.lpszClassName = className;
        g_class = RegisterClassA(&record);
    }
    return g_class;
}

LPCWSTR asName(ATOM atom) noexcept
{
    return reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(atom));
}

}  // namespace

std::shared_ptr<SystemWindow> makeSystemWindow(const char* className, TimerWindow* slot) noexcept
try {
    auto window = std::make_shared<SystemWindow>();
    const ATOM atom = registeredClass(className);
    if (atom == 0) return nullptr;
    window->handle = CreateWindowExW(0, asName(atom), L"TimerWnd", 0, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                     CW_USEDEFAULT, nullptr, nullptr, nullptr, nullptr);
    if (window->handle == nullptr) return nullptr;
    setSlot(*window, slot);
    return window;
} catch (...) {
    return nullptr;
}

void setSlot(SystemWindow& window, TimerWindow* slot) noexcept
{
    SetWindowLongPtrW(window.handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(slot));
}

void setSystemTimer(SystemWindow& window, unsigned int timerID, unsigned int milliseconds) noexcept
{
    // For a window that is gone the system would make a timer of the thread instead.
    if (IsWindow(window.handle)) SetTimer(window.handle, timerID, milliseconds, nullptr);
}

// The class is the process's and would outlive the procedure that it names; a second load could not register it again.
void TimerWindow::shutDown() noexcept
{
    if (g_class != 0) UnregisterClassW(asName(std::exchange(g_class, ATOM{0})), nullptr);
}

int MessageLoopFd()
{
    return -1;
}

int DispatchPendingMessages()
{
    const DWORD begin = GetTickCount();
    int dispatched = 0;
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        DispatchMessageW(&message);
        ++dispatched;
        // What came in meanwhile waits for the next call: a timer faster than its ticks are served would never let go.
        if (static_cast<LONG>(message.time - begin) > 0) break;
    }
    return dispatched;
}

}  // namespace kzn::pvutil
