// What libcurl's findings mean.
#pragma once

#include <string_view>

#include "pvutil/posix/CurlApi.h"
#include "pvutil/posix/CurlRun.h"

namespace kzn::pvutil {

/// Keeps why `code` came of the exchange, unless a cause is kept already. `words` is what libcurl wrote of it.
void keepCause(CURL* easy, CURLcode code, std::string_view words, const CurlRun& run, HttpExchange& exchange);

}  // namespace kzn::pvutil
