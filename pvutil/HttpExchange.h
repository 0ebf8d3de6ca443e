// One request on its way and the reply to it, between the HTTP client and the system's own HTTP.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

    int status = 0;
    std::string contentType;
    std::string location;
    std::string reply;

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
