// Who writes a line, and when.
#pragma once

#include <ctime>

namespace kzn::pvutil {

unsigned long processId() noexcept;
unsigned long threadId() noexcept;

/// Whether the whole process comes to its end, as far as the system tells: what other threads held then stays held.
bool processIsEnding() noexcept;

/// The wall clock in the user's time zone.
std::tm localTime() noexcept;

}  // namespace kzn::pvutil
