#include "tests/support/Wine.h"

#include <windows.h>

namespace kzn::test {

bool runsUnderWine() noexcept
{
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace kzn::test
