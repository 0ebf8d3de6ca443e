#include <windows.h>

#include "bench/Timing.h"

namespace kzn::bench {

// The times of threads move in steps of many milliseconds here.
double threadTime()
{
    return wallTime();
}

// This system's heap keeps what it once had, up to blocks of half a megabyte.
void keepHeap() {}

bool stayOnOneProcessor()
{
    return SetProcessAffinityMask(GetCurrentProcess(), 1) != FALSE;
}

}  // namespace kzn::bench
