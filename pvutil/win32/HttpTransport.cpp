#include "pvutil/HttpTransport.h"

#include <windows.h>
#include <winhttp.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <memory>
#include <new>

#include "pvutil/Ascii.h"
#include "pvutil/StringEx.h"

namespace kzn::pvutil {

namespace {

struct Close {
    using pointer = HINTERNET;
    void operator()(HINTERNET handle) const noexcept { WinHttpCloseHandle(handle); }
};

using Internet = std::unique_ptr<HINTERNET, Close>;

// Large bodies go out in slices, so that the caller hears of the progress.
constexpr std::size_t kSlice = std::size_t{64} << 10;

// The one session of the process; the connections that it keeps open serve every thread.
constinit std::atomic<HINTERNET> g_session = nullptr;

void setOption(HINTERNET handle, DWORD option, DWORD value) noexcept
{
    WinHttpSetOption(handle, option, &value, sizeof value);
}

Internet openSession() noexcept
{
    Internet session{
        WinHttpOpen(nullptr, WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0)};
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

void setLimits(HINTERNET request, const HttpLimits& limits) noexcept
{
    const auto connect = static_cast<int>(limits.connect.count());
    const auto silence = static_cast<int>(limits.silence.count());
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

Internet openRequest(HINTERNET connection, const HttpExchange& exchange)
{
    const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | WINHTTP_FLAG_ESCAPE_DISABLE_QUERY |
                        (exchange.url.secure ? DWORD{WINHTTP_FLAG_SECURE} : 0);
    Internet request{WinHttpOpenRequest(connection, exchange.method == HTTP_METHOD::POST ? L"POST" : L"GET",
                                        stringex::FromUtf8(exchange.url.target).c_str(), nullptr, WINHTTP_NO_REFERER,
                                        WINHTTP_DEFAULT_ACCEPT_TYPES, flags)};
    if (!request) return request;
    setOption(request.get(), WINHTTP_OPTION_DISABLE_FEATURE,
              WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION);
    setLimits(request.get(), exchange.limits);
    return addHeaders(request.get(), exchange) ? std::move(request) : nullptr;
}

// A body in one piece that nobody watches goes along with the head; the system can send it again by itself then.
bool sendWhole(HINTERNET request, std::string_view body)
{
    const auto size = static_cast<DWORD>(body.size());
    return WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, const_cast<char*>(body.data()), size, size, 0);
}

bool sendSlices(HINTERNET request, HttpExchange& exchange)
{
    const auto whole = static_cast<DWORD>(exchange.bodyBytes());
    if (!WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0, whole, 0))
        return false;
    std::size_t done = 0;
    for (auto rest : exchange.body) {
        while (!rest.empty()) {
            const auto slice = rest.substr(0, kSlice);
            DWORD written = 0;
            if (!WinHttpWriteData(request, slice.data(), static_cast<DWORD>(slice.size()), &written) || written == 0)
                return false;
            rest.remove_prefix(std::min<std::size_t>(written, rest.size()));
            done += written;
            if (!exchange.sent(done)) return false;
        }
    }
    return true;
}

bool send(HINTERNET request, HttpExchange& exchange)
{
    const bool isWatched = exchange.onSent != nullptr && *exchange.onSent;
    if (exchange.body.empty()) return sendWhole(request, {});
    if (exchange.body.size() == 1 && !isWatched) return sendWhole(request, exchange.body.front());
    return sendSlices(request, exchange);
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

// A head that breaks off is no failure to every version of the system's HTTP; a whole one ends with an empty line.
bool headStands(HINTERNET request)
{
    return headerOf(request, WINHTTP_QUERY_RAW_HEADERS_CRLF).ends_with("\r\n\r\n");
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

// The declared length of the body; false where what is declared is no number. Chunks count without it, and two statuses
// come without a body whatever their head says.
bool lengthOf(HINTERNET request, std::optional<std::uint64_t>& length)
{
    const int status = statusOf(request);
    if (status == HTTP_STATUS_NO_CONTENT || status == HTTP_STATUS_NOT_MODIFIED) return true;
    if (!headerOf(request, WINHTTP_QUERY_TRANSFER_ENCODING).empty()) return true;
    const std::string text = headerOf(request, WINHTTP_QUERY_CONTENT_LENGTH);
    if (text.empty()) return true;
    const auto digits = ascii::trimmed(text);
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    length = value;
    return error == std::errc() && end == digits.data() + digits.size();
}

// No more than what was declared is asked for: some versions of the system's HTTP wait for what follows behind it.
DWORD pieceOf(std::size_t room, const std::optional<std::uint64_t>& length, std::size_t done) noexcept
{
    return static_cast<DWORD>(std::min<std::uint64_t>(room, length ? *length - done : room));
}

bool receive(HINTERNET request, HttpExchange& exchange)
{
    if (!WinHttpReceiveResponse(request, nullptr) || !headStands(request)) return false;
    std::optional<std::uint64_t> length;
    if (!lengthOf(request, length) || !exchange.begin(statusOf(request), length)) return false;
    exchange.contentType = headerOf(request, WINHTTP_QUERY_CONTENT_TYPE);
    exchange.location = headerOf(request, WINHTTP_QUERY_LOCATION);

    std::array<char, 16384> buffer;
    while (!length || exchange.reply.size() < *length) {
        DWORD count = 0;
        if (!WinHttpReadData(request, buffer.data(), pieceOf(buffer.size(), length, exchange.reply.size()), &count))
            return false;
        if (count == 0) return !length;
        if (!exchange.receive({buffer.data(), count})) return false;
    }
    return true;
}

enum class Outcome { whole, failed, sendAgain };

Outcome attempt(HINTERNET connection, HttpExchange& exchange)
{
    const Internet request = openRequest(connection, exchange);
    if (!request) return Outcome::failed;
    SetLastError(ERROR_SUCCESS);
    if (send(request.get(), exchange) && receive(request.get(), exchange)) return Outcome::whole;
    return GetLastError() == ERROR_WINHTTP_RESEND_REQUEST ? Outcome::sendAgain : Outcome::failed;
}

}  // namespace

bool transport(HttpExchange& exchange)
{
    const HINTERNET standing = session();
    if (standing == nullptr) return false;
    const Internet connection{
        WinHttpConnect(standing, stringex::FromUtf8(exchange.url.host).c_str(), exchange.url.port, 0)};
    if (!connection) return false;
    // The system asks for this where the other end had closed a kept connection before it read anything.
    Outcome outcome = attempt(connection.get(), exchange);
    if (outcome == Outcome::sendAgain) outcome = attempt(connection.get(), exchange);
    return outcome == Outcome::whole;
}

void shutDownTransport() noexcept
{
    Internet(g_session.exchange(nullptr)).reset();
}

}  // namespace kzn::pvutil
