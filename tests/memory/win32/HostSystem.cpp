#include "tests/memory/HostSystem.h"

#include <windows.h>

const std::size_t kSlowness = 6;

std::size_t openFiles()
{
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return handles;
}
