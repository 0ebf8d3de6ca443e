#include "pvutil/win32/HttpCall.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <utility>

#include "pvutil/ShortLock.h"

namespace kzn::pvutil {

namespace {

using Clock = CallControl::Clock;

// How long the end of a request waits for the system's last word: hardly where it was stopped in the middle of
// something, and as good as always where nothing is under way.
constexpr std::chrono::milliseconds kStopped{30};
constexpr std::chrono::milliseconds kDone{2000};

// How far ahead of what it hands over the system may read.
constexpr std::uint64_t kReadAhead = std::uint64_t{256} << 10;

// A request that the system holds on to reports its end some time after the call is over. The library must still be
// there by then, whatever its host does: it stays loaded. This is rare where closing a request ends what it does at
// once, and usual where the system waits for its sockets first.
void stayLoaded() noexcept
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<const wchar_t*>(&stayLoaded), &module);
}

constinit std::atomic<int> g_reports = 0;

// A thread of the system's while it is in this library: what it wakes may unload the library before it is out again.
class Report {
public:
    Report() noexcept { ++g_reports; }
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    ~Report() { --g_reports; }
};

}  // namespace

void awaitReports() noexcept
{
    constexpr int kTries = 1000;
    for (int tries = 0; g_reports > 0 && tries < kTries; ++tries) Sleep(1);
    Sleep(2);  // the last steps out
}

DWORD HttpSignal::timeUntil(Clock::time_point over, const CallControl* control) noexcept
{
    const auto deadline = control == nullptr ? std::nullopt : control->deadline();
    const auto time =
        std::chrono::ceil<std::chrono::milliseconds>(std::min(over, deadline.value_or(over)) - Clock::now());
    return static_cast<DWORD>(std::max<std::chrono::milliseconds::rep>(time.count(), 0));
}

void HttpSignal::await(Clock::time_point over, const CallControl* control) const noexcept
{
    WaitForSingleObject(event_, timeUntil(over, control));
}

// The system's threads reach it until HANDLE_CLOSING has come; up to there it holds itself.
class HttpCall::Shared {
public:
    Shared(const HttpExchange& exchange, std::shared_ptr<HttpSignal> signal) noexcept
        : connect_(exchange.limits.connect),
          silence_(exchange.limits.silence),
          afterConnect_(exchange.url.secure ? HttpPhase::secure : HttpPhase::connect),
          signal_(std::move(signal)),
          mostReceived_(exchange.limits.headBytes + kReadAhead)
    {
    }

    static bool listen(HINTERNET request, const std::shared_ptr<Shared>& shared) noexcept
    {
        auto context = reinterpret_cast<DWORD_PTR>(shared.get());
        if (!WinHttpSetOption(request, WINHTTP_OPTION_CONTEXT_VALUE, &context, sizeof context)) return false;
        shared->self_ = shared;
        const auto before =
            WinHttpSetStatusCallback(request, &Shared::onStatus, WINHTTP_CALLBACK_FLAG_ALL_NOTIFICATIONS, 0);
        if (before == WINHTTP_INVALID_STATUS_CALLBACK) shared->self_ = nullptr;
        return before != WINHTTP_INVALID_STATUS_CALLBACK;
    }

    template <typename Change>
    auto locked(Change change) noexcept
    {
        const std::lock_guard guard(lock_);
        return change(report_);
    }

    void settle(DWORD error, DWORD count) noexcept
    {
        locked([&](HttpReport& report) {
            report.isPending = false;
            report.error = error;
            report.count = count;
            moved();
        });
        signal_->wake();
    }

    // When what is under way takes too long: a connection has its time as a whole, what moves over it has it anew with
    // each step.
    Clock::time_point over() noexcept
    {
        const std::lock_guard guard(lock_);
        return report_.phase < HttpPhase::send ? begin_ + connect_ : lastMove_ + silence_;
    }

    void allow(std::uint64_t received) noexcept
    {
        const std::lock_guard guard(lock_);
        mostReceived_ = received + kReadAhead;
    }

    bool isClosed() noexcept
    {
        const std::lock_guard guard(lock_);
        return self_ == nullptr;
    }

    HttpSignal& signal() noexcept { return *signal_; }

    std::string buffer;

private:
    static void CALLBACK onStatus(HINTERNET, DWORD_PTR context, DWORD status, void* info, DWORD size) noexcept
    {
        if (context == 0) return;
        const Report report;
        auto& shared = *reinterpret_cast<Shared*>(context);
        if (status == WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING) shared.close();
        else if ((status & kCompletions) != 0) shared.done(status, info, size);
        else shared.goesOn(status, info);
    }

    static constexpr DWORD kCompletions =
        WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE | WINHTTP_CALLBACK_STATUS_WRITE_COMPLETE |
        WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE | WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE |
        WINHTTP_CALLBACK_STATUS_READ_COMPLETE | WINHTTP_CALLBACK_STATUS_REQUEST_ERROR;

    // A finished read names its bytes by the size of what it tells about, the others have their number there.
    void done(DWORD status, const void* info, DWORD size) noexcept
    {
        if (status == WINHTTP_CALLBACK_STATUS_REQUEST_ERROR)
            return settle(static_cast<const WINHTTP_ASYNC_RESULT*>(info)->dwError, 0);
        if (status == WINHTTP_CALLBACK_STATUS_READ_COMPLETE) return settle(ERROR_SUCCESS, size);
        settle(ERROR_SUCCESS, info == nullptr ? 0 : *static_cast<const DWORD*>(info));
    }

    void goesOn(DWORD status, const void* info) noexcept
    {
        const std::lock_guard guard(lock_);
        moved();
        switch (status) {
        case WINHTTP_CALLBACK_STATUS_INTERMEDIATE_RESPONSE: hearsInterim(); break;
        case WINHTTP_CALLBACK_STATUS_RESOLVING_NAME: report_.phase = HttpPhase::lookUp; break;
        case WINHTTP_CALLBACK_STATUS_CONNECTING_TO_SERVER: connects(static_cast<const wchar_t*>(info)); break;
        case WINHTTP_CALLBACK_STATUS_CONNECTED_TO_SERVER: report_.phase = afterConnect_; break;
        case WINHTTP_CALLBACK_STATUS_SENDING_REQUEST: sends(); break;
        case WINHTTP_CALLBACK_STATUS_REQUEST_SENT: report_.phase = HttpPhase::wait; break;
        case WINHTTP_CALLBACK_STATUS_RESPONSE_RECEIVED: hears(static_cast<const DWORD*>(info)); break;
        case WINHTTP_CALLBACK_STATUS_SECURE_FAILURE: report_.secureFlags = *static_cast<const DWORD*>(info); break;
        default: break;
        }
    }

    void connects(const wchar_t* address) noexcept
    {
        report_.phase = HttpPhase::connect;
        if (address == nullptr) return;
        const auto length = std::min(std::wstring_view(address).size(), report_.address.size() - 1);
        *std::copy_n(address, length, report_.address.begin()) = L'\0';
    }

    // What was heard before was a proxy's, or the handshake's.
    void sends() noexcept
    {
        report_.phase = HttpPhase::send;
        report_.hasHeard = report_.hasEnded = report_.hasFailed = false;
        report_.received = 0;
    }

    // Not every version of the system's HTTP tells of them; their bytes count in any case.
    void hearsInterim() noexcept
    {
        if (++interim_ > limits::kInterimReplies) passLimit();
    }

    void passLimit() noexcept
    {
        report_.isPastLimit = true;
        signal_->wake();
    }

    // Some versions of the system's HTTP report what failed here too, as less than nothing.
    void hears(const DWORD* bytes) noexcept
    {
        if (bytes == nullptr) return;
        const auto count = static_cast<std::int32_t>(*bytes);
        if (count == 0) report_.hasEnded = true;
        if (count < 0) report_.hasFailed = true;
        if (count <= 0) return;
        report_.hasHeard = true;
        report_.received += static_cast<std::uint64_t>(count);
        if (report_.received > mostReceived_) passLimit();
        if (report_.phase == HttpPhase::wait) report_.phase = HttpPhase::receive;
    }

    void moved() noexcept { lastMove_ = Clock::now(); }

    // The call's thread may be gone as soon as it is woken: waking it comes last, and needs nothing of this object.
    void close() noexcept
    {
        const auto signal = signal_;
        {
            std::shared_ptr<Shared> last;
            const std::lock_guard guard(lock_);
            last.swap(self_);
        }
        signal->wake();
    }

    const std::chrono::milliseconds connect_;
    const std::chrono::milliseconds silence_;
    const HttpPhase afterConnect_;
    const std::shared_ptr<HttpSignal> signal_;
    const Clock::time_point begin_ = Clock::now();
    mutable ShortLock lock_;  // held for a look or a change only
    HttpReport report_;
    std::uint64_t mostReceived_;
    std::size_t interim_ = 0;
    Clock::time_point lastMove_ = begin_;
    std::shared_ptr<Shared> self_;
};

HttpCall::HttpCall(Internet request, const HttpExchange& exchange, std::shared_ptr<HttpSignal> signal)
    : shared_(std::make_shared<Shared>(exchange, std::move(signal)))
{
    if (request && Shared::listen(request.get(), shared_)) request_ = std::move(request);
}

HttpCall::~HttpCall()
{
    if (!request_) return;
    const auto over = Clock::now() + (report_.isPending ? kStopped : kDone);
    request_.reset();
    while (!shared_->isClosed()) {
        if (Clock::now() >= over) {
            stayLoaded();
            break;
        }
        shared_->signal().await(over, nullptr);
    }
}

DWORD_PTR HttpCall::context() const noexcept
{
    return reinterpret_cast<DWORD_PTR>(shared_.get());
}

std::string& HttpCall::buffer() noexcept
{
    return shared_->buffer;
}

void HttpCall::enter(HttpPhase phase) noexcept
{
    shared_->locked([&](HttpReport& report) { report.phase = phase; });
}

void HttpCall::allow(std::uint64_t received) noexcept
{
    shared_->allow(received);
}

void HttpCall::begin() noexcept
{
    shared_->locked([](HttpReport& report) { report.isPending = true; });
}

void HttpCall::settle(DWORD error) noexcept
{
    shared_->settle(error == ERROR_SUCCESS ? ERROR_WINHTTP_INTERNAL_ERROR : error, 0);
}

bool HttpCall::await(HttpExchange& exchange) noexcept
{
    for (;;) {
        report_ = shared_->locked([](const HttpReport& report) { return report; });
        if (!exchange.mayGoOn(report_.phase)) return false;
        if (report_.isPastLimit) {
            report_.error = ERROR_WINHTTP_HEADER_SIZE_OVERFLOW;
            return false;
        }
        if (!report_.isPending) return report_.error == ERROR_SUCCESS;
        const auto over = shared_->over();
        if (Clock::now() >= over) {
            report_.error = ERROR_WINHTTP_TIMEOUT;
            return false;
        }
        // A connection may come about meanwhile, and less time be left to what follows.
        shared_->signal().await(std::min(over, Clock::now() + exchange.limits.silence), exchange.control);
    }
}

}  // namespace kzn::pvutil
