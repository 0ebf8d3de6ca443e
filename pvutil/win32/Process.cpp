#include "pvutil/Process.h"

#include <windows.h>

namespace kzn::pvutil {

unsigned long processId() noexcept
{
    return GetCurrentProcessId();
}

unsigned long threadId() noexcept
{
    return GetCurrentThreadId();
}

std::tm localTime() noexcept
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_s(&parts, &now);
    return parts;
}

}  // namespace kzn::pvutil
