// What a caller of libcurl owns.
#pragma once

#include <curl/curl.h>

#include <memory>

namespace kzn::bench {

struct FreeHandle {
    void operator()(CURL* handle) const noexcept { curl_easy_cleanup(handle); }
};
using CurlHandle = std::unique_ptr<CURL, FreeHandle>;

struct FreeLines {
    void operator()(curl_slist* lines) const noexcept { curl_slist_free_all(lines); }
};
using CurlLines = std::unique_ptr<curl_slist, FreeLines>;

}  // namespace kzn::bench
