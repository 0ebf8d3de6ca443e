#include "pvtrace/pvtrace.h"

#include <atomic>

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

void defaultSink([[maybe_unused]] int level, [[maybe_unused]] const PvTraceUnit* text)
{
#ifdef _WIN32
    OutputDebugStringW(text);
    OutputDebugStringW(L"\n");
#endif
}

// A program that reads the debugger's output of others holds a mapping of this name. To promise that nothing is thrown
// here would bring the compiler's runtime into a library that has none.
bool defaultListens()
{
#ifdef _WIN32
    if (IsDebuggerPresent()) return true;
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_READ, FALSE, L"DBWIN_BUFFER");
    if (mapping == nullptr) return false;
    CloseHandle(mapping);
    return true;
#else
    return false;
#endif
}

constinit std::atomic<PvTraceSink> theSink{&defaultSink};

}  // namespace

void PvTraceWrite(int level, const PvTraceUnit* text)
{
    if (text) theSink.load(std::memory_order_acquire)(level, text);
}

void PvTraceSetSink(PvTraceSink sink)
{
    theSink.store(sink ? sink : &defaultSink, std::memory_order_release);
}

int PvTraceListens(void)
{
    return theSink.load(std::memory_order_acquire) != &defaultSink || defaultListens() ? 1 : 0;
}
