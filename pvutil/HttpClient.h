// One HTTP exchange, as every request of the library makes it.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "pvutil/HttpFailure.h"
#include "pvutil/Limits.h"
#include "pvutil/StringEx.h"

namespace kzn::pvutil {

using stringex::CStringT;

class CallControl;
struct HttpExchange;

enum class HTTP_METHOD { GET = 0, POST = 1 };

/// The bits of an exchange's option value.
namespace HttpOption {
constexpr unsigned long kTextReply = 1;      // the reply is text: ResponseContent decodes it
constexpr unsigned long kFormBody = 2;       // the body is form text and is declared as such
constexpr unsigned long kCallerHeaders = 4;  // the caller's header lines are sent too
constexpr unsigned long kBinaryBody = 8;     // the body is bytes, in pieces, and goes out as it stands
constexpr unsigned long kBytesReply = 16;    // the reply is a file: GetResponse gives its bytes, nothing decodes it

constexpr unsigned long kForm = kTextReply | kFormBody;                       // 3, an operation's post
constexpr unsigned long kProxy = kTextReply | kFormBody | kCallerHeaders;     // 7, a caller-made request
constexpr unsigned long kUpload = kTextReply | kCallerHeaders | kBinaryBody;  // 13, a multipart upload
constexpr unsigned long kDownload = kBytesReply;                              // 16, a file
}  // namespace HttpOption

/// How long and how much an exchange may take; Limits.h says why.
struct HttpLimits {
    std::chrono::milliseconds connect{15'000};
    std::chrono::milliseconds silence{60'000};  // without a byte moving either way
    std::size_t replyBytes = limits::kReplyBytes;
    std::size_t headBytes = limits::kHeadBytes;
    int redirects = limits::kRedirects;
};

/// One object a request; what is dear to make is kept and used again underneath, connections only where they are clean.
/// A post never follows a redirect; a get follows `redirects` of them, and never from https to http: the redirect
/// itself is the reply then. Certificates and host names are always verified. Proxies are the system's own.
class CZelHttpClient {
public:
    /// The status of the reply, or kNoConnection: nothing connected, the exchange broke off before a whole reply stood,
    /// a limit was passed, or the address is none. Text goes out as UTF-8.
    static constexpr int kNoConnection = -1;

    int Request(const CStringT& url, HTTP_METHOD method, const CStringT& body, const CStringT& headers,
                unsigned long option) noexcept;

    /// The same with a body of bytes in pieces, sent one after the other and never copied together.
    int Request(const CStringT& url, HTTP_METHOD method, std::span<const std::string_view> body,
                const CStringT& headers, unsigned long option) noexcept;

    /// Called as the body goes out, with what is sent and the whole; for a download with what has arrived and the whole
    /// (0 while unknown). Returning false ends the exchange as kNoConnection.
    using Progress = std::function<bool(std::size_t done, std::size_t whole)>;
    void OnProgress(Progress progress) { progress_ = std::move(progress); }

    /// Told of each exchange before it begins (`status` 0) and when it is over (kNoConnection where it gave nothing),
    /// a redirect's by itself. Returning false before it begins ends it as one that was cancelled.
    using Watch = std::function<bool(const HttpExchange& exchange, int status, std::chrono::milliseconds time)>;
    void OnExchange(Watch watch) { watch_ = std::move(watch); }

    /// What can end the exchange from outside; it has to live as long as the request.
    void ControlledBy(CallControl* control) noexcept { control_ = control; }

    /// Why the request gave kNoConnection.
    const HttpFailure& Failure() const noexcept { return failure_; }

    /// The reply's body as text: decoded by its declared character set (UTF-8, UTF-16, ISO-8859-1, windows-1252 or
    /// US-ASCII), by UTF-8 where none of these is declared, without a byte order mark. Empty after kNoConnection.
    CStringT ResponseContent() const;

    /// The reply's body as it came.
    const std::string& GetResponse() const noexcept { return reply_; }

    /// The bytes of a reply that is text, without a byte order mark, where they are well-formed UTF-8 and declared (or
    /// taken) to be that; empty and false otherwise.
    bool ResponseUtf8(std::string_view& utf8) const noexcept;

    /// Stands for every exchange of the process that begins afterwards; for tests and hosts with needs of their own.
    static void SetLimits(const HttpLimits& limits) noexcept;

    /// Gives back what is kept for further requests: connections above all.
    static void DropKept() noexcept;

private:
    int run(const CStringT& url, HTTP_METHOD method, std::span<const std::string_view> body, const CStringT& headers,
            unsigned long option);
    void equip(HttpExchange& exchange, std::span<const std::string_view> body, unsigned long option);
    int outcomeOf(HttpExchange& exchange, unsigned long option);
    bool exchangeAll(HttpExchange& exchange);
    bool exchangeOne(HttpExchange& exchange);
    void failForWantOfMemory() noexcept;

    std::string reply_;
    std::string contentType_;
    bool isUtf8_ = false;
    HttpFailure failure_;
    Progress progress_;
    Watch watch_;
    CallControl* control_ = nullptr;
};

}  // namespace kzn::pvutil
