#include "bench/ServedProcess.h"

#include <unistd.h>

#include <ctime>
#include <fstream>

#include "tests/support/ChildProcess.h"

namespace kzn::bench {

double ServedProcess::processorTime() const
{
    clockid_t clock{};
    std::timespec now{};
    if (clock_getcpuclockid(static_cast<pid_t>(child_->id()), &clock) != 0 || clock_gettime(clock, &now) != 0) return 0;
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double ServedProcess::memory() const
{
    std::ifstream file("/proc/" + std::to_string(child_->id()) + "/statm");
    double all = 0;
    double resident = 0;
    file >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

}  // namespace kzn::bench
