#include "bench/ServedProcess.h"

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <memory>

#include "tests/support/ChildProcess.h"

namespace kzn::bench {

namespace {

struct Close {
    void operator()(void* handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, Close>;

double secondsOf(const FILETIME& time)
{
    constexpr double kUnit = 1e-7;
    const auto high = static_cast<unsigned long long>(time.dwHighDateTime) << 32U;
    return static_cast<double>(high | time.dwLowDateTime) * kUnit;
}

double timeOfThread(DWORD id)
{
    const Handle thread(OpenThread(THREAD_QUERY_INFORMATION, FALSE, id));
    FILETIME begun{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    if (!thread || GetThreadTimes(thread.get(), &begun, &ended, &kernel, &user) == FALSE) return 0;
    return secondsOf(kernel) + secondsOf(user);
}

}  // namespace

// Thread by thread: of a process, Wine knows nobody's time but that of who asks. The servers keep their threads.
double ServedProcess::processorTime() const
{
    const Handle all(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    double time = 0;
    for (BOOL found = Thread32First(all.get(), &thread); found != FALSE; found = Thread32Next(all.get(), &thread))
        if (thread.th32OwnerProcessID == child_->id()) time += timeOfThread(thread.th32ThreadID);
    return time;
}

double ServedProcess::memory() const
{
    const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, child_->id()));
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    if (!process || GetProcessMemoryInfo(process.get(), &counters, sizeof counters) == FALSE) return 0;
    return static_cast<double>(counters.WorkingSetSize) / (1024.0 * 1024.0);
}

}  // namespace kzn::bench
