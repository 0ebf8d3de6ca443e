#include "pvutil/SystemLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <span>
#include <string>

#include "pvutil/posix/Descriptor.h"

namespace kzn::pvutil {

const std::string_view kLogEndOfLine = "\n";

namespace {

int asDescriptor(SystemLog log) noexcept
{
    return static_cast<int>(log);
}

bool isUsersOwn(const struct stat& found) noexcept
{
    return S_ISREG(found.st_mode) && found.st_uid == geteuid();
}

// What is logged is the user's alone: a link, a device, a pipe or somebody else's file in this place is not written to.
bool makePrivate(int file) noexcept
{
    struct stat found {};
    return fstat(file, &found) == 0 && isUsersOwn(found) && fchmod(file, S_IRUSR | S_IWUSR) == 0;
}

// The pieces that hold anything, as the system takes them.
std::span<iovec> vectorsOf(LogPieces pieces, std::span<iovec> room) noexcept
{
    std::size_t count = 0;
    for (const std::string_view piece : pieces.first(std::min(pieces.size(), room.size()))) {
        if (piece.empty()) continue;
        room[count].iov_base = const_cast<char*>(piece.data());  // NOLINT(*-const-cast): nobody writes to it
        room[count++].iov_len = piece.size();
    }
    return room.first(count);
}

// What is left when so many bytes are out.
std::span<iovec> behind(std::size_t written, std::span<iovec> rest) noexcept
{
    for (; !rest.empty() && written >= rest.front().iov_len; rest = rest.subspan(1)) written -= rest.front().iov_len;
    if (rest.empty()) return rest;
    rest.front().iov_base = static_cast<char*>(rest.front().iov_base) + written;
    rest.front().iov_len -= written;
    return rest;
}

}  // namespace

SystemLog openLog(const stringex::CStringT& path) noexcept
try {
    const std::string name = stringex::ToUtf8(path);
    if (name.find('\0') != std::string::npos) return kNoLog;
    // Opening a pipe that nobody reads would wait without O_NONBLOCK; a plain file does not know the difference.
    constexpr int kFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    Descriptor file = aboveStandard(Descriptor(::open(name.c_str(), kFlags, S_IRUSR | S_IWUSR)));
    if (!file || !makePrivate(file.get())) return kNoLog;
    return file.release();
} catch (...) {
    return kNoLog;
}

void closeLog(SystemLog log) noexcept
{
    Descriptor(asDescriptor(log));
}

// The lock belongs to the opening and not to the process: no other opening of the file in this process ends it, and a
// child made by fork holds it too, until it ends or starts another program. The child writes the same file meanwhile,
// so it is held with good reason.
Held holdLog(SystemLog log, Hold hold) noexcept
{
    struct flock lock {};
    lock.l_type = hold == Hold::alone ? F_WRLCK : F_RDLCK;
    lock.l_whence = SEEK_SET;
    if (fcntl(asDescriptor(log), F_OFD_SETLK, &lock) == 0) return Held::yes;
    return errno == EAGAIN || errno == EACCES ? Held::byAnother : Held::unknown;
}

void shareLog(SystemLog log) noexcept
{
    holdLog(log, Hold::shared);
}

bool isEmptyLog(SystemLog log) noexcept
{
    struct stat found {};
    return fstat(asDescriptor(log), &found) == 0 && found.st_size == 0;
}

bool isLogAt(SystemLog log, const stringex::CStringT& path) noexcept
try {
    struct stat here {};
    struct stat there {};
    return fstat(asDescriptor(log), &here) == 0 && lstat(stringex::ToUtf8(path).c_str(), &there) == 0 &&
           here.st_dev == there.st_dev && here.st_ino == there.st_ino;
} catch (...) {
    return false;
}

bool renameLog(const stringex::CStringT& path, const stringex::CStringT& earlier) noexcept
try {
    const std::string name = stringex::ToUtf8(earlier);
    struct stat found {};
    const bool stands = lstat(name.c_str(), &found) == 0;
    if (stands ? !isUsersOwn(found) : errno != ENOENT) return false;
    return std::rename(stringex::ToUtf8(path).c_str(), name.c_str()) == 0;
} catch (...) {
    return false;
}

void appendToLog(SystemLog log, LogPieces pieces) noexcept
{
    std::array<iovec, kLogPieces> room;
    for (std::span<iovec> rest = vectorsOf(pieces, room); !rest.empty();) {
        const ssize_t written = ::writev(asDescriptor(log), rest.data(), static_cast<int>(rest.size()));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        rest = behind(static_cast<std::size_t>(written), rest);
    }
}

}  // namespace kzn::pvutil
