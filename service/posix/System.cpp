#include "service/base/System.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace service {

namespace {

// Who started this process, seen before anything else runs.
const pid_t kStartedBy = getppid();

}  // namespace

long long processID()
{
    return getpid();
}

// The one that started this process may have ended before the system was asked to tell of it: then it has another
// parent by now.
void endWithParent()
{
    if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) throw std::runtime_error("the system does not tell of the parent's end");
    if (getppid() != kStartedBy) throw std::runtime_error("the process that started it has ended");
}

std::optional<long long> lockHolder(const std::string& file)
{
    const int descriptor = open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0) return std::nullopt;
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    const bool told = fcntl(descriptor, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK && lock.l_pid > 0;
    close(descriptor);
    return told ? std::optional<long long>(lock.l_pid) : std::nullopt;
}

}  // namespace service
