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
