// A trace library that a host brings itself, in the place of the one that comes with the package.
#include <pvtrace/pvtrace.h>

#include <cstdio>

void PvTraceWrite(int, const PvTraceUnit*)
{
    std::puts("a line in the host's own trace library");
}

void PvTraceSetSink(PvTraceSink) {}

int PvTraceListens()
{
    return 1;
}
