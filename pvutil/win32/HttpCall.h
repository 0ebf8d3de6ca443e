// One request of WinHTTP: what the thread of the call shares with the threads on which the system reports.
#pragma once

#include <windows.h>
#include <winhttp.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "pvutil/CallControl.h"
#include "pvutil/HttpExchange.h"

namespace kzn::pvutil {

struct CloseInternet {
    using pointer = HINTERNET;
    void operator()(HINTERNET handle) const noexcept { WinHttpCloseHandle(handle); }
};

using Internet = std::unique_ptr<HINTERNET, CloseInternet>;

/// What the thread of a call waits for: somebody has something to say to it.
class HttpSignal final : public CallControl::Waker {
public:
    HttpSignal() noexcept : event_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}
    HttpSignal(const HttpSignal&) = delete;
    HttpSignal& operator=(const HttpSignal&) = delete;
    ~HttpSignal() { CloseHandle(event_); }

    explicit operator bool() const noexcept { return event_ != nullptr; }
    HANDLE event() const noexcept { return event_; }
    void wake() noexcept override { SetEvent(event_); }

    /// Until somebody wakes it, `over` or the deadline of the call.
    void await(CallControl::Clock::time_point over, const CallControl* control) const noexcept;

    /// How long that is, in the system's unit.
    static DWORD timeUntil(CallControl::Clock::time_point over, const CallControl* control) noexcept;

private:
    HANDLE event_;
};

/// What the system has said about a request.
struct HttpReport {
    bool isPending = false;  // something is begun and not yet done
    DWORD error = ERROR_SUCCESS;
    DWORD count = 0;        // of the bytes that the last step was about
    DWORD secureFlags = 0;  // why the connection could not be secured
    HttpPhase phase = HttpPhase::connect;
    bool isPastLimit = false;           // more came than may
    std::uint64_t received = 0;         // bytes of the reply, with all that frames it
    bool hasHeard = false;              // a byte came
    bool hasEnded = false;              // the other end's last byte has come
    bool hasFailed = false;             // the connection has ended otherwise
    std::array<wchar_t, 64> address{};  // that was connected to last
};

/// Until no thread of the system's is in the library any more, which may be unloaded then.
void awaitReports() noexcept;

/// Closes the request at its end and waits for the system to be done with it; not for long, so that a call that was
/// stopped ends at once. What the system may still read or write then lives on until it has said its last word.
class HttpCall {
public:
    HttpCall(Internet request, const HttpExchange& exchange, std::shared_ptr<HttpSignal> signal);
    HttpCall(const HttpCall&) = delete;
    HttpCall& operator=(const HttpCall&) = delete;
    ~HttpCall();

    explicit operator bool() const noexcept { return request_ != nullptr; }
    HINTERNET request() const noexcept { return request_.get(); }
    DWORD_PTR context() const noexcept;

    /// What goes out and comes in stands here; nobody else's while nothing is pending.
    std::string& buffer() noexcept;

    /// As the last step left it.
    const HttpReport& report() const noexcept { return report_; }
    void enter(HttpPhase phase) noexcept;

    /// How many bytes of the reply may come over the wire from here on, with those that have come; what is under way
    /// ends with ERROR_WINHTTP_HEADER_SIZE_OVERFLOW where more do.
    void allow(std::uint64_t received) noexcept;

    /// Has the system begin something and waits until it is done. False where it failed or was stopped; the cause is in
    /// the report, or with the exchange where it was stopped.
    template <typename Start>
    bool perform(HttpExchange& exchange, Start start)
    {
        begin();
        if (!start(request_.get())) settle(GetLastError());
        return await(exchange);
    }

private:
    class Shared;

    void begin() noexcept;
    void settle(DWORD error) noexcept;
    bool await(HttpExchange& exchange) noexcept;

    Internet request_;
    std::shared_ptr<Shared> shared_;
    HttpReport report_;
};

}  // namespace kzn::pvutil
