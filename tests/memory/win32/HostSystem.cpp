#include "tests/memory/HostSystem.h"

#include <windows.h>

const std::size_t kSlowness = 6;
// Every one of them would take Wine an hour and a half.
const std::size_t kLongShare = 24;

std::size_t openFiles()
{
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return handles;
}
