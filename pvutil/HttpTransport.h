// The seam under the HTTP client: one request and its reply over the system's own HTTP. What a request says and what
// becomes of a reply is decided above it, in the same way on every system.
#pragma once

#include "pvutil/HttpExchange.h"

namespace kzn::pvutil {

/// Follows nothing, keeps no cookie, answers no demand for a password, and verifies certificates and host names.
/// True when a whole reply stands: `status`, `contentType`, `location` and `reply` are filled.
bool transport(HttpExchange& exchange);

/// Gives back what is kept between exchanges; the library calls it when it is unloaded, while no exchange is under way.
void shutDownTransport() noexcept;

}  // namespace kzn::pvutil
