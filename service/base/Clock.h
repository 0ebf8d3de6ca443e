#pragma once

#include <string>

namespace service {

// Milliseconds since 1970.
long long nowMs();

// How a moment looks in a reply, for example "2026-02-01T09:30:00Z".
std::string timeText(long long ms);

}  // namespace service
