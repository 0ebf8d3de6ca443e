#include "pvutil/Process.h"

#include <windows.h>
#include <winternl.h>

extern "C" NTSYSAPI BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace kzn::pvutil {

unsigned long processId() noexcept
{
    return GetCurrentProcessId();
}

unsigned long threadId() noexcept
{
    return GetCurrentThreadId();
}

bool processIsEnding() noexcept
{
    return RtlDllShutdownInProgress() != 0;
}

std::tm localTime() noexcept
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_s(&parts, &now);
    return parts;
}

}  // namespace kzn::pvutil
