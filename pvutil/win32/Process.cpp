#define _CRT_RAND_S  // asks for rand_s
#include "pvutil/Process.h"

#include <windows.h>
#include <winternl.h>

#include <algorithm>
#include <cstdlib>

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

std::tm localTime(std::time_t time) noexcept
{
    std::tm parts{};
    localtime_s(&parts, &time);
    return parts;
}

bool fillAtRandom(std::span<std::uint8_t> bytes) noexcept
{
    return std::ranges::all_of(bytes, [](std::uint8_t& byte) {
        unsigned int number = 0;
        const bool isMade = rand_s(&number) == 0;
        byte = static_cast<std::uint8_t>(number);
        return isMade;
    });
}

}  // namespace kzn::pvutil
