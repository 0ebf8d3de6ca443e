#include "pvutil/HttpClient.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <utility>

#include "pvutil/Charset.h"
#include "pvutil/HttpHeaders.h"
#include "pvutil/HttpTransport.h"
#include "pvutil/IdlePool.h"
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

// What forms are alike in: most go to one address, and all with the same header lines.
struct Alike {
    CStringT address;
    Url url;
    HeaderLines lines;
};
constinit IdlePool<Alike> g_alike;

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
    constexpr std::size_t kOwn = 3;
    HeaderLines lines;
    if ((option & HttpOption::kCallerHeaders) != 0) lines = callerHeaders(stringex::ToUtf8(callers));
    lines.reserve(lines.size() + kOwn);
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

// Where a request goes, and with which header lines. False where the address is none.
bool aim(HttpExchange& exchange, const CStringT& url, const CStringT& headers, unsigned long option)
{
    auto address = parseUrl(stringex::ToUtf8(url));
    if (!address) return false;
    exchange.url = std::move(*address);
    exchange.headers = headersOf(exchange.method, headers, option);
    return true;
}

void recall(Alike& alike, HttpExchange& exchange) noexcept
{
    exchange.url = std::move(alike.url);
    exchange.headers = std::move(alike.lines);
}

// For the next form. `address` is a new one; null where it is the one that is known.
void keep(std::unique_ptr<Alike> alike, const CStringT* address, HttpExchange& exchange) noexcept
try {
    if (!alike) alike = std::make_unique<Alike>();
    if (address != nullptr) alike->address = *address;
    alike->url = std::move(exchange.url);
    alike->lines = std::move(exchange.headers);
    g_alike.giveBack(std::move(alike));
} catch (...) {  // no memory to keep it
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
    isUtf8_ = false;
    failForWantOfMemory();
    return kNoConnection;
}

int CZelHttpClient::Request(const CStringT& url, HTTP_METHOD method, std::span<const std::string_view> body,
                            const CStringT& headers, unsigned long option) noexcept
try {
    reply_.clear();
    contentType_.clear();
    isUtf8_ = false;
    failure_ = {};
    return run(url, method, body, headers, option);
} catch (...) {
    failForWantOfMemory();
    return kNoConnection;
}

int CZelHttpClient::run(const CStringT& url, HTTP_METHOD method, std::span<const std::string_view> body,
                        const CStringT& headers, unsigned long option)
{
    const bool isForm = method == HTTP_METHOD::POST && option == HttpOption::kForm;
    auto alike = isForm ? g_alike.take() : nullptr;
    const bool isKnown = alike && alike->address == url;
    HttpExchange exchange;
    exchange.method = method;
    if (isKnown) recall(*alike, exchange);
    else if (!aim(exchange, url, headers, option)) {
        failure_.fault = HttpFault::badAddress;
        return kNoConnection;
    }
    equip(exchange, body, option);
    const int status = outcomeOf(exchange, option);
    if (isForm) keep(std::move(alike), isKnown ? nullptr : &url, exchange);
    return status;
}

void CZelHttpClient::equip(HttpExchange& exchange, std::span<const std::string_view> body, unsigned long option)
{
    exchange.limits = limitsInForce();
    exchange.control = control_;
    if ((option & HttpOption::kBytesReply) != 0) exchange.onReceived = &progress_;
    if (exchange.method != HTTP_METHOD::POST) return;
    exchange.body = body;
    exchange.onSent = &progress_;
}

int CZelHttpClient::outcomeOf(HttpExchange& exchange, unsigned long option)
{
    if (!exchangeAll(exchange)) {
        exchange.fail(HttpFault::local, HttpPhase::connect);
        failure_ = std::move(exchange.failure);
        return kNoConnection;
    }
    reply_ = std::move(exchange.reply);
    contentType_ = std::move(exchange.contentType);
    const bool isText = (option & HttpOption::kTextReply) != 0;
    isUtf8_ = isText && charsetOf(contentType_) == Charset::utf8 && utf::isWellFormed(reply_);
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
    utf8 = isUtf8_ ? withoutUtf8Mark(reply_) : std::string_view();
    return isUtf8_;
}

void CZelHttpClient::DropKept() noexcept
{
    g_alike.drop();
    shutDownTransport();
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
