// What a kept libcurl handle is told of a request's address and header lines, and is not told again.
#pragma once

#include <memory>
#include <optional>

#include "pvutil/HttpHeaders.h"
#include "pvutil/Url.h"
#include "pvutil/posix/CurlApi.h"

namespace kzn::pvutil {

struct HttpExchange;

/// Most requests go to one address with the same lines. The handle has to go before this does.
class CurlAim {
public:
    /// False where there is no memory for it.
    bool set(CURL* easy, const HttpExchange& exchange);

    /// Lets go of what is the caller's own.
    void forget(CURL* easy) noexcept;

private:
    struct Free {
        void operator()(curl_slist* list) const noexcept { curl.slistFreeAll(list); }
    };

    bool setAddress(CURL* easy, const Url& url);
    bool setHeaders(CURL* easy, const HttpExchange& exchange);
    void drop(CURL* easy) noexcept;

    std::optional<Url> url_;
    bool isForProxy_ = false;
    HeaderLines lines_;
    bool isForm_ = false;
    std::unique_ptr<curl_slist, Free> list_;
};

}  // namespace kzn::pvutil
