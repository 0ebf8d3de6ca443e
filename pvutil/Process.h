// What the system says of the process, and of the time.
#pragma once

#include <cstdint>
#include <ctime>
#include <span>

namespace kzn::pvutil {

unsigned long processId() noexcept;
unsigned long threadId() noexcept;

/// Whether the whole process comes to its end, as far as the system tells: what other threads held then stays held.
bool processIsEnding() noexcept;

/// In the user's time zone.
std::tm localTime(std::time_t time) noexcept;

/// Fills `bytes` with what nobody can guess; false where the system has none now.
bool fillAtRandom(std::span<std::uint8_t> bytes) noexcept;

}  // namespace kzn::pvutil
