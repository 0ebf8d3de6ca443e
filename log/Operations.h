// Which operation of the library a request is.
#pragma once

#include <string>

#include "log/Form.h"

namespace logreader {

/// The operation whose body this is. Where no operation has such a body, or several have, its command and what the
/// command is about, such as "get user".
std::string operationOf(const Fields& fields);

/// A reply alone: of the library's operations only a proxied call keeps its request from the log.
constexpr std::string_view kProxyCall = "WapiProxyCall";

/// Whether a name is what `pattern` asks for, without regard to case: a part of it, or all of it where the pattern has
/// "*" for any letters or "?" for one.
bool matchesOperation(std::string_view name, std::string_view pattern);

}  // namespace logreader
