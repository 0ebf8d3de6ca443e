#include "pvutil/HttpClient.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "pvutil/Charset.h"
#include "pvutil/HttpHeaders.h"
#include "pvutil/HttpTransport.h"
#include "pvutil/Utf.h"

namespace kzn::pvutil {

namespace {

// The limits in force. Each is read and written by itself: two threads that set them at once is no case to serve.
constexpr HttpLimits kDefaults;
constinit std::atomic<int> g_connectMs = static_cast<int>(kDefaults.connect.count());
constinit std::atomic<int> g_silenceMs = static_cast<int>(kDefaults.silence.count());
constinit std::atomic<std::size_t> g_replyBytes = kDefaults.replyBytes;
constinit std::atomic<std::size_t> g_headBytes = kDefaults.headBytes;
constinit std::atomic<int> g_redirects = kDefaults.redirects;

HttpLimits limitsInForce() noexcept
{
    HttpLimits limits;
    limits.connect = std::chrono::milliseconds(g_connectMs);
    limits.silence = std::chrono::milliseconds(g_silenceMs);
    limits.replyBytes = g_replyBytes;
    limits.headBytes = g_headBytes;
    limits.redirects = g_redirects;
    return limits;
}

HeaderLines headersOf(HTTP_METHOD method, const CStringT& callers, unsigned long option)
{
    HeaderLines lines;
    if ((option & HttpOption::kCallerHeaders) != 0) lines = callerHeaders(stringex::ToUtf8(callers));
    addHeader(lines, "Accept", "*/*");
    addHeader(lines, "User-Agent", "pvWapi/1.0");
    if (method == HTTP_METHOD::POST && (option & HttpOption::kFormBody) != 0)
        addHeader(lines, "Content-Type", "application/x-www-form-urlencoded");
    return lines;
}

bool isRedirect(const HttpExchange& exchange) noexcept
{
    constexpr std::array<int, 5> kStatuses = {301, 302, 303, 307, 308};
    return std::find(kStatuses.begin(), kStatuses.end(), exchange.status) != kStatuses.end() &&
           !exchange.location.empty();
}

// Where a get goes on to; nothing where the redirect itself is the reply.
std::optional<Url> redirectOf(const HttpExchange& exchange)
{
    if (exchange.method != HTTP_METHOD::GET || !isRedirect(exchange)) return std::nullopt;
    auto target = resolveUrl(exchange.url, exchange.location);
    if (target && exchange.url.secure && !target->secure) return std::nullopt;
    return target;
}

// Ill-formed is what reads as U+FFFD and is not the three bytes of that very character.
bool isUtf8(std::string_view bytes) noexcept
{
    auto at = reinterpret_cast<const unsigned char*>(bytes.data());
    for (const auto end = at + bytes.size(); at != end;) {
        if (*at < 0x80) {
            ++at;
            continue;
        }
        const auto start = at;
        if (utf::next(at, end) == utf::kReplacement && !(at - start == 3 && *start == 0xEF)) return false;
    }
    return true;
}

}  // namespace

int CZelHttpClient::Request(const CStringT& url, HTTP_METHOD method, const CStringT& body, const CStringT& headers,
                            unsigned long option) noexcept
try {
    const std::string text = method == HTTP_METHOD::POST ? stringex::ToUtf8(body) : std::string();
    const std::string_view piece = text;
    return Request(url, method, std::span(&piece, 1), headers, option);
} catch (...) {
    reply_.clear();
    failForWantOfMemory();
    return kNoConnection;
}

int CZelHttpClient::Request(const CStringT& url, HTTP_METHOD method, std::span<const std::string_view> body,
                            const CStringT& headers, unsigned long option) noexcept
try {
    reply_.clear();
    contentType_.clear();
    failure_ = {};
    return run(url, method, body, headers, option);
} catch (...) {
    failForWantOfMemory();
    return kNoConnection;
}

int CZelHttpClient::run(const CStringT& url, HTTP_METHOD method, std::span<const std::string_view> body,
                        const CStringT& headers, unsigned long option)
{
    HttpExchange exchange;
    auto address = parseUrl(stringex::ToUtf8(url));
    if (!address) {
        failure_.fault = HttpFault::badAddress;
        return kNoConnection;
    }
    exchange.url = std::move(*address);
    exchange.method = method;
    if (method == HTTP_METHOD::POST) exchange.body = body;
    exchange.headers = headersOf(method, headers, option);
    exchange.limits = limitsInForce();
    exchange.control = control_;
    if (method == HTTP_METHOD::POST) exchange.onSent = &progress_;
    if ((option & HttpOption::kBytesReply) != 0) exchange.onReceived = &progress_;
    if (!exchangeAll(exchange)) {
        exchange.fail(HttpFault::local, HttpPhase::connect);
        failure_ = std::move(exchange.failure);
        return kNoConnection;
    }
    reply_ = std::move(exchange.reply);
    contentType_ = std::move(exchange.contentType);
    return exchange.status;
}

bool CZelHttpClient::exchangeAll(HttpExchange& exchange)
{
    for (int followed = 0;; ++followed) {
        if (!exchangeOne(exchange)) return false;
        if (followed >= exchange.limits.redirects) return true;
        auto target = redirectOf(exchange);
        if (!target) return true;
        if (!target->sameOrigin(exchange.url)) removeCredentials(exchange.headers);
        exchange.url = std::move(*target);
    }
}

bool CZelHttpClient::exchangeOne(HttpExchange& exchange)
{
    using Clock = std::chrono::steady_clock;
    constexpr auto kPhase = HttpPhase::connect;
    if (!exchange.mayGoOn(kPhase)) return false;
    if (watch_ && !watch_(exchange, 0, {})) return exchange.fail(HttpFault::cancelled, kPhase);
    const auto begin = Clock::now();
    const bool whole = exchange.mayGoOn(kPhase) && transport(exchange);
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    if (watch_) watch_(exchange, whole ? exchange.status : kNoConnection, time);
    return whole;
}

void CZelHttpClient::failForWantOfMemory() noexcept
{
    failure_ = {};
    failure_.fault = HttpFault::local;
}

CStringT CZelHttpClient::ResponseContent() const
{
    return decoded(reply_, charsetOf(contentType_));
}

bool CZelHttpClient::ResponseUtf8(std::string_view& utf8) const noexcept
{
    const bool declared = charsetOf(contentType_) == Charset::utf8 && isUtf8(reply_);
    utf8 = declared ? withoutUtf8Mark(reply_) : std::string_view();
    return declared;
}

void CZelHttpClient::SetLimits(const HttpLimits& limits) noexcept
{
    g_connectMs = static_cast<int>(limits.connect.count());
    g_silenceMs = static_cast<int>(limits.silence.count());
    g_replyBytes = limits.replyBytes;
    g_headBytes = limits.headBytes;
    g_redirects = limits.redirects;
}

}  // namespace kzn::pvutil
