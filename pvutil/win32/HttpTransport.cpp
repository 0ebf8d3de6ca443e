#include "pvutil/HttpTransport.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "pvutil/HttpHeaders.h"
#include "pvutil/StringEx.h"
#include "pvutil/win32/HttpCall.h"
#include "pvutil/win32/HttpCause.h"
#include "pvutil/win32/HttpErrors.h"

namespace kzn::pvutil {

namespace {

// Large bodies go out in slices, so that the caller hears of the progress. The system may read what it was given until
// it is done with the request, which a call that is stopped does not wait for: it gets copies.
constexpr std::size_t kSlice = std::size_t{64} << 10;
constexpr std::size_t kPiece = std::size_t{64} << 10;

// A connection serves one request. Nobody can ask WinHTTP whether something waits on a kept one, and what waits there
// becomes the next reply: a second reply, a notice that the server ends the connection, trailers that were not read.
// And where a kept one turns out dead, WinHTTP sends the request anew by itself, however much of it had gone out; its
// documentation says no more than that it may. A new connection costs a way there and back, and TLS one or two more.
constexpr DWORD kNotKept = WINHTTP_DISABLE_KEEP_ALIVE;

// The one session of the process; it serves every thread.
constinit std::atomic<HINTERNET> g_session = nullptr;

void setOption(HINTERNET handle, DWORD option, DWORD value) noexcept
{
    WinHttpSetOption(handle, option, &value, sizeof value);
}

Internet openSession() noexcept
{
    Internet session{WinHttpOpen(nullptr, WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME,
                                 WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC)};
    if (!session) return session;
    DWORD protocols = WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2 | WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3;
    if (!WinHttpSetOption(session.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, &protocols, sizeof protocols))
        setOption(session.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2);
    return session;
}

// Two threads may both find none and open one each; the first to put its own up wins.
HINTERNET session() noexcept
{
    if (const HINTERNET standing = g_session.load()) return standing;
    Internet opened = openSession();
    HINTERNET standing = nullptr;
    if (opened && g_session.compare_exchange_strong(standing, opened.get())) return opened.release();
    return standing;
}

// The call keeps its times itself. The system's own only see to it that a request which it holds on to ends some day:
// they end later, because not every version says of what runs out that it was a matter of time.
void setLimits(HINTERNET request, const HttpLimits& limits) noexcept
{
    constexpr std::chrono::milliseconds kLater{2000};
    const auto connect = static_cast<int>((limits.connect + kLater).count());
    const auto silence = static_cast<int>((limits.silence + kLater).count());
    WinHttpSetTimeouts(request, connect, connect, silence, silence);
    setOption(request, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, static_cast<DWORD>(silence));
}

bool addHeaders(HINTERNET request, const HttpExchange& exchange)
{
    for (const auto& line : exchange.headers) {
        const CStringT text = stringex::FromUtf8(line);
        if (!WinHttpAddRequestHeaders(request, text.c_str(), static_cast<DWORD>(text.size()), WINHTTP_ADDREQ_FLAG_ADD))
            return false;
    }
    return true;
}

// Not every version of the system's HTTP has these.
void setHeadLimits(HINTERNET request, const HttpLimits& limits) noexcept
{
    setOption(request, WINHTTP_OPTION_MAX_RESPONSE_HEADER_SIZE, static_cast<DWORD>(limits.headBytes));
    setOption(request, WINHTTP_OPTION_MAX_HTTP_STATUS_CONTINUE, static_cast<DWORD>(limits::kInterimReplies));
}

Internet openRequest(HINTERNET connection, const HttpExchange& exchange)
{
    const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | WINHTTP_FLAG_ESCAPE_DISABLE_QUERY |
                        (exchange.url.secure ? DWORD{WINHTTP_FLAG_SECURE} : 0);
    Internet request{WinHttpOpenRequest(connection, exchange.method == HTTP_METHOD::POST ? L"POST" : L"GET",
                                        stringex::FromUtf8(exchange.url.target).c_str(), nullptr, WINHTTP_NO_REFERER,
                                        WINHTTP_DEFAULT_ACCEPT_TYPES, flags)};
    if (!request) return request;
    setOption(request.get(), WINHTTP_OPTION_DISABLE_FEATURE,
              WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION | kNotKept);
    setLimits(request.get(), exchange.limits);
    setHeadLimits(request.get(), exchange.limits);
    return addHeaders(request.get(), exchange) ? std::move(request) : nullptr;
}

// A small body in one piece that nobody watches goes along with the head.
bool sendWhole(HttpCall& call, HttpExchange& exchange, std::string_view body)
{
    auto& buffer = call.buffer();
    buffer = body;
    const auto size = static_cast<DWORD>(buffer.size());
    return call.perform(exchange, [&](HINTERNET request) {
        return WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, buffer.data(), size, size, call.context());
    });
}

bool sendHead(HttpCall& call, HttpExchange& exchange)
{
    const auto whole = static_cast<DWORD>(exchange.bodyBytes());
    return call.perform(exchange, [&](HINTERNET request) {
        return WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0, whole,
                                  call.context());
    });
}

// How much of it is out; nothing where that failed.
std::size_t sendSlice(HttpCall& call, HttpExchange& exchange, std::string_view slice)
{
    auto& buffer = call.buffer();
    buffer = slice;
    const bool isOut = call.perform(exchange, [&](HINTERNET request) {
        return WinHttpWriteData(request, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    });
    if (!isOut) return 0;
    if (call.report().count == 0) exchange.fail(HttpFault::closed, HttpPhase::send);
    return std::min<std::size_t>(call.report().count, slice.size());
}

bool sendPiece(HttpCall& call, HttpExchange& exchange, std::string_view rest, std::size_t& done)
{
    while (!rest.empty()) {
        const std::size_t written = sendSlice(call, exchange, rest.substr(0, kSlice));
        if (written == 0) return false;
        rest.remove_prefix(written);
        done += written;
        if (!exchange.sent(done)) return false;
    }
    return true;
}

bool sendSlices(HttpCall& call, HttpExchange& exchange)
{
    if (!sendHead(call, exchange)) return false;
    call.enter(HttpPhase::send);
    std::size_t done = 0;
    return std::all_of(exchange.body.begin(), exchange.body.end(),
                       [&](std::string_view piece) { return sendPiece(call, exchange, piece, done); });
}

bool send(HttpCall& call, HttpExchange& exchange)
{
    const bool isWatched = exchange.onSent != nullptr && *exchange.onSent;
    if (exchange.body.empty()) return sendWhole(call, exchange, {});
    const bool isSmall = exchange.body.size() == 1 && exchange.body.front().size() <= kSlice;
    return isSmall && !isWatched ? sendWhole(call, exchange, exchange.body.front()) : sendSlices(call, exchange);
}

std::string headerOf(HINTERNET request, DWORD which)
{
    DWORD bytes = 0;
    WinHttpQueryHeaders(request, which, WINHTTP_HEADER_NAME_BY_INDEX, WINHTTP_NO_OUTPUT_BUFFER, &bytes,
                        WINHTTP_NO_HEADER_INDEX);
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return {};
    CStringT value(bytes / sizeof(wchar_t) + 1, L'\0');
    bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    if (!WinHttpQueryHeaders(request, which, WINHTTP_HEADER_NAME_BY_INDEX, value.data(), &bytes,
                             WINHTTP_NO_HEADER_INDEX))
        return {};
    value.resize(bytes / sizeof(wchar_t));
    return stringex::ToUtf8(value);
}

bool isWithinLimits(std::string_view head, const HttpLimits& limits) noexcept
{
    if (head.size() > limits.headBytes) return false;
    std::size_t lines = 0;
    while (!head.empty()) {
        const std::size_t line = std::min(head.find('\n'), head.size() - 1) + 1;
        if (++lines > limits::kHeadLines || line > limits::kHeadLineBytes) return false;
        head.remove_prefix(line);
    }
    return true;
}

// A head that breaks off is no failure to every version of the system's HTTP; a whole one ends with an empty line.
bool headStands(HttpCall& call, HttpExchange& exchange)
{
    const std::string head = headerOf(call.request(), WINHTTP_QUERY_RAW_HEADERS_CRLF);
    if (!isWithinLimits(head, exchange.limits)) return exchange.fail(HttpFault::tooLarge, HttpPhase::receive);
    return head.ends_with("\r\n\r\n") || exchange.fail(HttpFault::cutOff, HttpPhase::receive);
}

int statusOf(HINTERNET request) noexcept
{
    DWORD status = 0;
    DWORD size = sizeof status;
    if (!WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                             WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX))
        return 0;
    return static_cast<int>(status);
}

// Chunks count without a length, and two statuses come without a body whatever their head says.
bool lengthCounts(HINTERNET request)
{
    const int status = statusOf(request);
    return status != HTTP_STATUS_NO_CONTENT && status != HTTP_STATUS_NOT_MODIFIED &&
           headerOf(request, WINHTTP_QUERY_TRANSFER_ENCODING).empty();
}

// The declared length of the body; false where what is declared is not one number.
bool lengthOf(HINTERNET request, std::optional<std::uint64_t>& length)
{
    const std::string head = headerOf(request, WINHTTP_QUERY_RAW_HEADERS_CRLF);
    for (std::string_view rest = head; rest.find('\n') != std::string_view::npos;) {
        const std::string_view line = rest.substr(0, rest.find('\n') + 1);
        if (!readLength(line, length)) return false;
        rest.remove_prefix(line.size());
    }
    if (!lengthCounts(request)) length.reset();
    return true;
}

// Reads a piece of the body into the buffer; none at its end. No more than what was declared is asked for: some
// versions of the system's HTTP wait for what follows behind it.
bool read(HttpCall& call, HttpExchange& exchange, std::uint64_t room)
{
    if (!call.perform(exchange, [](HINTERNET request) { return WinHttpQueryDataAvailable(request, nullptr); }))
        return false;
    const auto size = static_cast<DWORD>(std::min<std::uint64_t>({kPiece, room, call.report().count}));
    auto& buffer = call.buffer();
    buffer.resize(size);
    if (size != 0 && !call.perform(exchange, [&](HINTERNET request) {
            return WinHttpReadData(request, buffer.data(), size, nullptr);
        }))
        return false;
    buffer.resize(std::min<std::size_t>(size, call.report().count));
    return true;
}

bool receiveBody(HttpCall& call, HttpExchange& exchange, const std::optional<std::uint64_t>& length)
{
    const bool isInChunks = !headerOf(call.request(), WINHTTP_QUERY_TRANSFER_ENCODING).empty();
    while (!length || exchange.reply.size() < *length) {
        call.allow(exchange.limits.headBytes + exchange.reply.size() + limits::kFramingBytes);
        if (!read(call, exchange, length ? *length - exchange.reply.size() : kPiece)) return false;
        if (call.buffer().empty()) {
            // Chunks end with a last one. Some versions of the system's HTTP take the end of the connection for it, and
            // a reset for the end of what has no length.
            const HttpReport& report = call.report();
            const bool isWhole = !length && !report.hasFailed && !(isInChunks && report.hasEnded);
            return isWhole || exchange.fail(HttpFault::cutOff, HttpPhase::receive);
        }
        if (!exchange.receive(call.buffer())) return false;
    }
    return true;
}

bool receive(HttpCall& call, HttpExchange& exchange)
{
    call.enter(HttpPhase::wait);
    if (!call.perform(exchange, [](HINTERNET request) { return WinHttpReceiveResponse(request, nullptr); }))
        return false;
    call.enter(HttpPhase::receive);
    const HINTERNET request = call.request();
    if (!headStands(call, exchange)) return false;
    std::optional<std::uint64_t> length;
    if (!lengthOf(request, length)) return exchange.fail(HttpFault::notHttp, HttpPhase::receive);
    const int status = statusOf(request);
    // An interim reply of which there is no other: nothing was asked for that could follow it.
    if (status < HTTP_STATUS_OK) return exchange.fail(HttpFault::notHttp, HttpPhase::receive);
    if (!exchange.begin(status, length)) return false;
    exchange.contentType = headerOf(request, WINHTTP_QUERY_CONTENT_TYPE);
    exchange.location = headerOf(request, WINHTTP_QUERY_LOCATION);
    return receiveBody(call, exchange, length);
}

// What this machine could not do.
bool failHere(HttpExchange& exchange)
{
    const DWORD error = GetLastError();
    if (faultOf(error) == HttpFault::badAddress)
        return exchange.fail(HttpFault::badAddress, HttpPhase::address, wordsOf(error));
    return exchange.fail(HttpFault::local, HttpPhase::connect, wordsOf(error));
}

bool perform(HINTERNET connection, HttpExchange& exchange, const std::shared_ptr<HttpSignal>& signal)
{
    HttpCall call(openRequest(connection, exchange), exchange, signal);
    if (!call) return failHere(exchange);
    if (send(call, exchange) && receive(call, exchange)) return true;
    return exchange.failure.fault == HttpFault::none ? failBy(exchange, call.report(), *signal) : false;
}

// Whoever cancels wakes this call while one of these lives.
class Wakes {
public:
    Wakes(CallControl* control, HttpSignal& signal) noexcept : control_(control)
    {
        if (control_ != nullptr) control_->wakes(&signal);
    }
    Wakes(const Wakes&) = delete;
    Wakes& operator=(const Wakes&) = delete;
    ~Wakes()
    {
        if (control_ != nullptr) control_->wakes(nullptr);
    }

private:
    CallControl* control_;
};

}  // namespace

bool transport(HttpExchange& exchange)
{
    const auto signal = std::make_shared<HttpSignal>();
    const HINTERNET standing = *signal ? session() : nullptr;
    if (standing == nullptr) return failHere(exchange);
    const Wakes wakes(exchange.control, *signal);
    const Internet connection{
        WinHttpConnect(standing, stringex::FromUtf8(exchange.url.host).c_str(), exchange.url.port, 0)};
    if (!connection) return failHere(exchange);
    return perform(connection.get(), exchange, signal);
}

// The session itself reports to nobody, and every request has ended; one that the system holds on to keeps the library
// from being unloaded.
void shutDownTransport() noexcept
{
    Internet standing(g_session.exchange(nullptr));
    if (!standing) return;
    standing.reset();
    awaitReports();
}

}  // namespace kzn::pvutil
