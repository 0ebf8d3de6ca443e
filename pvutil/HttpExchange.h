// One request on its way and the reply to it, between the HTTP client and the system's own HTTP.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pvutil/CallControl.h"
#include "pvutil/HttpClient.h"
#include "pvutil/Url.h"

namespace kzn::pvutil {

/// One request on its way and the reply to it. The transport moves the bytes; at each step it asks here whether to go
/// on, and ends the exchange where the answer is false.
struct HttpExchange {
    Url url;
    HTTP_METHOD method = HTTP_METHOD::GET;
    std::span<const std::string_view> body;  // of a post
    std::vector<std::string> headers;        // "Name: value" each, the one list of what is sent
    HttpLimits limits;
    const CZelHttpClient::Progress* onSent = nullptr;
    const CZelHttpClient::Progress* onReceived = nullptr;
    CallControl* control = nullptr;  // null where nothing can end it from outside

    int status = 0;
    std::string contentType;
    std::string location;
    std::string reply;
    HttpFailure failure;  // the first cause that was found

    /// Keeps the cause unless one is kept already. Always false.
    bool fail(HttpFault fault, HttpPhase phase, std::string_view words = {}) noexcept;
    /// The same where another than the server was meant.
    bool fail(HttpFault fault, HttpPhase phase, std::string_view words, std::string_view peer) noexcept;

    /// Whether the call may go on; keeps the cause where it may not.
    bool mayGoOn(HttpPhase phase) noexcept;

    std::size_t bodyBytes() const noexcept;

    /// `bytes` of the body are out.
    bool sent(std::size_t bytes) noexcept;

    /// The reply's head stands; `length` is its body's, where it is declared.
    bool begin(int replyStatus, std::optional<std::uint64_t> length) noexcept;

    /// A piece of the reply's body; a failure to keep it ends the exchange too.
    bool receive(std::string_view bytes) noexcept;

private:
    std::size_t sent_ = 0;
    std::size_t expected_ = 0;
};

}  // namespace kzn::pvutil
