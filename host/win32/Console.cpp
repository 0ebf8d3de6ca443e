#include <windows.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>

#include "client/WapiClient.h"
#include "host/Errors.h"
#include "host/System.h"

namespace host::system {

namespace {

constinit std::atomic<int> g_signals = 0;

struct CloseConsole {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};

/// The console's input, whatever the standard streams are.
class Console {
public:
    Console()
    {
        const HANDLE input = ::CreateFileW(L"CONIN$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                           nullptr, OPEN_EXISTING, 0, nullptr);
        if (input != INVALID_HANDLE_VALUE) input_.reset(input);
    }
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console()
    {
        if (silenced_) ::SetConsoleMode(input_.get(), before_);
    }

    /// False where there is no console.
    bool silence()
    {
        if (!input_ || !::GetConsoleMode(input_.get(), &before_)) return false;
        const DWORD silent = (before_ & ~DWORD{ENABLE_ECHO_INPUT}) | ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT;
        silenced_ = ::SetConsoleMode(input_.get(), silent) != FALSE;
        return silenced_;
    }

    /// Ctrl-C ends the wait with nothing read.
    CStringT line() const
    {
        CStringT text;
        std::array<wchar_t, 256> piece{};
        while (text.find(L'\n') == CStringT::npos) {
            DWORD got = 0;
            if (!::ReadConsoleW(input_.get(), piece.data(), piece.size(), &got, nullptr) || got == 0) {
                throw Failure(Status::stopped, "stopped");
            }
            text.append(piece.data(), got);
        }
        return text.substr(0, text.find_first_of(L"\r\n"));
    }

private:
    std::unique_ptr<HANDLE, CloseConsole> input_;
    DWORD before_ = 0;
    bool silenced_ = false;
};

}  // namespace

bool errorIsTerminal()
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

std::optional<std::string> askSecret(const std::string& prompt)
{
    Console console;
    if (!errorIsTerminal() || !console.silence()) return std::nullopt;
    std::fputs(prompt.c_str(), stderr);
    std::fflush(stderr);
    const CStringT secret = console.line();
    std::fputs("\n", stderr);
    return kzn::pvutil::stringex::ToUtf8(secret);
}

std::string ask(const std::string& prompt)
{
    const Console console;
    std::fputs(prompt.c_str(), stderr);
    std::fflush(stderr);
    try {
        return kzn::pvutil::stringex::ToUtf8(console.line());
    } catch (const Failure&) {
        std::fputs("\n", stderr);
        throw;
    }
}

/// The system calls the handler on a thread of its own, which may do whatever it likes.
class Interrupts::Watch {
public:
    explicit Watch(std::function<void()> stop)
    {
        const std::lock_guard guard(g_lock);
        g_signals = 0;
        g_stop = std::move(stop);
        ::SetConsoleCtrlHandler(handle, TRUE);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch()
    {
        ::SetConsoleCtrlHandler(handle, FALSE);
        // A handler that is at work has to be done before what it stops is gone.
        const std::lock_guard guard(g_lock);
        g_stop = {};
    }

private:
    static BOOL WINAPI handle(DWORD)
    {
        if (++g_signals > 1) ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(Status::stopped));
        const std::lock_guard guard(g_lock);
        if (g_stop) g_stop();
        return TRUE;
    }

    static inline std::mutex g_lock;
    static inline std::function<void()> g_stop;
};

Interrupts::Interrupts(std::function<void()> stop) : watch_(std::make_unique<Watch>(std::move(stop))) {}

Interrupts::~Interrupts() = default;

}  // namespace host::system
