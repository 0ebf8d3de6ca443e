#include "pvutil/LogFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "pvutil/posix/Descriptor.h"

namespace kzn::pvutil {

const std::string_view LogFile::kEndOfLine = "\n";

namespace {

// What is logged is the user's alone: a link, a device, a pipe or somebody else's file in this place is not written to.
bool makePrivate(int file) noexcept
{
    struct stat found {};
    return fstat(file, &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid() &&
           fchmod(file, S_IRUSR | S_IWUSR) == 0 && ftruncate(file, 0) == 0;
}

}  // namespace

bool LogFile::open(const stringex::CStringT& path) noexcept
try {
    close();
    const std::string name = stringex::ToUtf8(path);
    if (name.find('\0') != std::string::npos) return false;
    // Opening a pipe that nobody reads would wait without O_NONBLOCK; a plain file does not know the difference.
    constexpr int kFlags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    Descriptor file(::open(name.c_str(), kFlags, S_IRUSR | S_IWUSR));
    if (!file || !makePrivate(file.get())) return false;
    handle_ = file.release();
    return true;
} catch (...) {
    return false;
}

void LogFile::write(std::string_view bytes) noexcept
{
    if (!isOpen()) return;
    while (!bytes.empty()) {
        const ssize_t written = ::write(static_cast<int>(handle_), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void LogFile::close() noexcept
{
    Descriptor(static_cast<int>(std::exchange(handle_, kClosed)));
}

}  // namespace kzn::pvutil
