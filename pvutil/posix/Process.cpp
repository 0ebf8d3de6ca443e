#include "pvutil/Process.h"

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

std::tm localTime() noexcept
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return parts;
}

}  // namespace kzn::pvutil
