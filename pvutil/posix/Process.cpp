#include "pvutil/Process.h"

#include <sys/random.h>
#include <unistd.h>

namespace kzn::pvutil {

unsigned long processId() noexcept
{
    return static_cast<unsigned long>(getpid());
}

unsigned long threadId() noexcept
{
    return static_cast<unsigned long>(gettid());
}

// The system calls the same functions for an exit and for an unloading.
bool processIsEnding() noexcept
{
    return false;
}

std::tm localTime(std::time_t time) noexcept
{
    std::tm parts{};
    localtime_r(&time, &parts);
    return parts;
}

bool fillAtRandom(std::span<std::uint8_t> bytes) noexcept
{
    return ::getrandom(bytes.data(), bytes.size(), GRND_NONBLOCK) == static_cast<ssize_t>(bytes.size());
}

}  // namespace kzn::pvutil
