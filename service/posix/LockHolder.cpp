#include "service/store/LockHolder.h"

#include <fcntl.h>
#include <unistd.h>

namespace service::store {

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

// The lock on the file stays this process's from the first use on, and all its connections share it, with the log's
// index in the process's own memory.
const char* exclusiveFiles()
{
    return "unix-excl";
}

// The system tells of every lock who has it.
struct LockNote::Note {};

LockNote::LockNote() = default;
LockNote::~LockNote() = default;

void LockNote::write(const std::string& /*file*/) {}

}  // namespace service::store
