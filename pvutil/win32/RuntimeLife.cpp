// The compiler's runtime lives in each module by itself and is told of threads that end, but gives nothing back of the
// thread that unloads its module: two handles, some memory, and a thread-local slot, of which a process has 1088. It
// ends the process that has none left. Nor does it give back what it keeps for exceptions when memory is short.
//
// So a library that may be loaded again and again has this file in it; a program does not, for its threads may still be
// running when it ends.
#include <windows.h>

#include <pthread.h>

#include <array>

#include "pvutil/Process.h"

/// How the runtime is told of threads and modules.
extern "C" PIMAGE_TLS_CALLBACK __xl_f;

namespace __gnu_cxx {
void __freeres();
}

namespace {

constexpr DWORD kSlots = TLS_MINIMUM_AVAILABLE + 1024;  // of any Windows

// The slot has no name: it is the one that the runtime empties as the thread ends. Behind everything of the library's
// own; whatever is below 101 is the compiler's.
[[gnu::destructor(101)]] void onUnloaded() noexcept
{
    if (kzn::pvutil::processIsEnding()) return;
    __gnu_cxx::__freeres();
    static_cast<void>(pthread_self());  // it has a slot from now on, if it had none
    std::array<void*, kSlots> before{};
    for (DWORD slot = 0; slot < kSlots; ++slot) before[slot] = TlsGetValue(slot);
    __xl_f(nullptr, DLL_THREAD_DETACH, nullptr);
    __xl_f(nullptr, DLL_PROCESS_DETACH, nullptr);
    for (DWORD slot = 0; slot < kSlots; ++slot)
        if (before[slot] != nullptr && TlsGetValue(slot) == nullptr) TlsFree(slot);
}

}  // namespace
