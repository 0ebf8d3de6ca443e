// Who writes a line, and when.
#pragma once

#include <ctime>

namespace kzn::pvutil {

unsigned long processId() noexcept;
unsigned long threadId() noexcept;

/// The wall clock in the user's time zone.
std::tm localTime() noexcept;

}  // namespace kzn::pvutil
