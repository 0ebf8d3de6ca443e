#include <malloc.h>
#include <sched.h>

#include <ctime>
#include <limits>

#include "bench/Timing.h"

namespace kzn::bench {

double threadTime()
{
    std::timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void keepHeap()
{
    constexpr int kLargest = 32 << 20;  // that may be kept
    mallopt(M_MMAP_THRESHOLD, kLargest);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

bool stayOnOneProcessor()
{
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
    return sched_setaffinity(0, sizeof one, &one) == 0;
}

}  // namespace kzn::bench
