// The proxy that the system's settings have a request go through.
#pragma once

#include <string>
#include <string_view>

#include "pvutil/Url.h"

namespace kzn::pvutil {

/// As host:port; empty where the request goes to its server itself.
std::string proxyFor(const Url& url);

/// The same by settings in WinHTTP's notation: the proxies, and the hosts that need none.
std::string proxyFor(const Url& url, std::string_view proxies, std::string_view bypass);

}  // namespace kzn::pvutil
