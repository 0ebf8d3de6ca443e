// What the compiler calls for where it guards a stack. GCC's own library loads a provider of cryptography for its one
// number, and that while a module is being loaded, where no other may be; and it would end the process in a way that
// nobody is told of. In each module for itself, and in C, so that a module in C needs nothing of C++.
#include <windows.h>

#include <stdint.h>

uintptr_t __stack_chk_guard = 0;
__attribute__((noreturn)) void __stack_chk_fail(void);
__attribute__((noreturn)) void __chk_fail(void);

// The system says which one it was, and ends the process at once: what runs on can no longer be trusted.
__attribute__((noreturn)) static void failFast(void)
{
    const int stackCookieCheckFailure = 2;
    __asm__ volatile("int $0x29" : : "c"(stackCookieCheckFailure) : "memory");
    TerminateProcess(GetCurrentProcess(), (UINT)STATUS_STACK_BUFFER_OVERRUN);
    __builtin_unreachable();
}

// As unforeseeable as Visual C++'s own: the moment, the process, and where the system has put the module and the stack.
// Whoever calls this has no guard on its stack yet.
__attribute__((constructor(101), optimize("no-stack-protector"))) static void makeGuard(void)
{
    const uint64_t odd = 0x9E3779B97F4A7C15;  // spreads what little differs over all bits
    FILETIME time;
    LARGE_INTEGER counter;
    GetSystemTimeAsFileTime(&time);
    QueryPerformanceCounter(&counter);
    uint64_t number = (uintptr_t)&time;
    const uint64_t parts[] = {(uintptr_t)&__stack_chk_guard, time.dwLowDateTime,    time.dwHighDateTime,
                              (uint64_t)counter.QuadPart,    GetCurrentProcessId(), GetCurrentThreadId()};
    for (size_t at = 0; at < sizeof parts / sizeof *parts; ++at) {
        number = (number ^ parts[at]) * odd;
        number ^= number >> 32;
    }
    // A zero in it stops a string that runs over.
    __stack_chk_guard = (uintptr_t)number & ~(uintptr_t)0xFF;
}

void __stack_chk_fail(void)
{
    failFast();
}

void __chk_fail(void)
{
    failFast();
}
