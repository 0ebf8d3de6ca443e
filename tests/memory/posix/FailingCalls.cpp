#include "tests/memory/posix/FailingCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace kzn::test {

namespace {

thread_local bool theIsOn = false;
thread_local std::size_t theNth = 0;
thread_local std::size_t theMade = 0;
thread_local Wrong theWrong = Wrong::fails;

// Whether the call that is made now goes wrong, and with which error: 0 is none.
int errorOf(int likeliest, bool canBeInterrupted) noexcept
{
    if (!theIsOn || theWrong == Wrong::movesOneByte) return 0;
    if (theWrong == Wrong::isInterrupted && !canBeInterrupted) return 0;
    ++theMade;
    if (theNth == 0) return 0;
    if (theWrong == Wrong::isInterrupted) return theMade == theNth ? EINTR : 0;
    return theMade == theNth || (theWrong == Wrong::failsFromThen && theMade > theNth) ? likeliest : 0;
}

std::size_t movable(std::size_t bytes) noexcept
{
    return theIsOn && theWrong == Wrong::movesOneByte ? std::min<std::size_t>(bytes, 1) : bytes;
}

template <typename Function>
Function* systems(const char* name) noexcept
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <typename Result, typename... Arguments>
Result pass(Result (*call)(Arguments...), int error, Arguments... arguments) noexcept
{
    if (error == 0) return call(arguments...);
    errno = error;
    return -1;
}

}  // namespace

FailingCalls::FailingCalls(std::size_t nth, Wrong wrong) noexcept
{
    theNth = nth;
    theMade = 0;
    theWrong = wrong;
    theIsOn = true;
}

FailingCalls::~FailingCalls()
{
    theIsOn = false;
}

std::size_t FailingCalls::made() noexcept
{
    return theMade;
}

}  // namespace kzn::test

// Each stands before the C library's own of that name, for all that is linked to this program.
using namespace kzn::test;

#define PV_SHOWN extern "C" [[gnu::visibility("default")]]

PV_SHOWN ssize_t read(int file, void* bytes, std::size_t size)
{
    static const auto call = systems<ssize_t(int, void*, std::size_t)>("read");
    return pass(call, errorOf(EIO, true), file, bytes, movable(size));
}

PV_SHOWN ssize_t write(int file, const void* bytes, std::size_t size)
{
    static const auto call = systems<ssize_t(int, const void*, std::size_t)>("write");
    return pass(call, errorOf(ENOSPC, true), file, bytes, movable(size));
}

PV_SHOWN ssize_t writev(int file, const iovec* pieces, int count)
{
    static const auto call = systems<ssize_t(int, const iovec*, int)>("writev");
    iovec first = pieces[0];
    first.iov_len = movable(first.iov_len);
    const bool isWhole = first.iov_len == pieces[0].iov_len;
    return isWhole ? pass(call, errorOf(ENOSPC, true), file, pieces, count)
                   : pass(call, errorOf(ENOSPC, true), file, static_cast<const iovec*>(&first), 1);
}

PV_SHOWN ssize_t recv(int socket, void* bytes, std::size_t size, int flags)
{
    static const auto call = systems<ssize_t(int, void*, std::size_t, int)>("recv");
    return pass(call, errorOf(ECONNRESET, true), socket, bytes, movable(size), flags);
}

PV_SHOWN ssize_t send(int socket, const void* bytes, std::size_t size, int flags)
{
    static const auto call = systems<ssize_t(int, const void*, std::size_t, int)>("send");
    return pass(call, errorOf(ECONNRESET, true), socket, bytes, movable(size), flags);
}

PV_SHOWN int poll(pollfd* files, nfds_t count, int milliseconds)
{
    static const auto call = systems<int(pollfd*, nfds_t, int)>("poll");
    return pass(call, errorOf(ENOMEM, true), files, count, milliseconds);
}

PV_SHOWN int socket(int family, int type, int protocol) noexcept
{
    static const auto call = systems<int(int, int, int)>("socket");
    return pass(call, errorOf(EMFILE, false), family, type, protocol);
}

PV_SHOWN int socketpair(int family, int type, int protocol, int* two) noexcept
{
    static const auto call = systems<int(int, int, int, int*)>("socketpair");
    return pass(call, errorOf(EMFILE, false), family, type, protocol, two);
}

PV_SHOWN int connect(int socket, const sockaddr* address, socklen_t size)
{
    static const auto call = systems<int(int, const sockaddr*, socklen_t)>("connect");
    return pass(call, errorOf(ENOBUFS, false), socket, address, size);
}

PV_SHOWN int getsockopt(int socket, int level, int name, void* value, socklen_t* size) noexcept
{
    static const auto call = systems<int(int, int, int, void*, socklen_t*)>("getsockopt");
    return pass(call, errorOf(ENOBUFS, false), socket, level, name, value, size);
}

PV_SHOWN int setsockopt(int socket, int level, int name, const void* value, socklen_t size) noexcept
{
    static const auto call = systems<int(int, int, int, const void*, socklen_t)>("setsockopt");
    return pass(call, errorOf(ENOBUFS, false), socket, level, name, value, size);
}

PV_SHOWN int epoll_create1(int flags) noexcept
{
    static const auto call = systems<int(int)>("epoll_create1");
    return pass(call, errorOf(EMFILE, false), flags);
}

PV_SHOWN int epoll_ctl(int epoll, int what, int file, epoll_event* event) noexcept
{
    static const auto call = systems<int(int, int, int, epoll_event*)>("epoll_ctl");
    return pass(call, errorOf(ENOSPC, false), epoll, what, file, event);
}

PV_SHOWN int timerfd_create(clockid_t clock, int flags) noexcept
{
    static const auto call = systems<int(clockid_t, int)>("timerfd_create");
    return pass(call, errorOf(EMFILE, false), clock, flags);
}

PV_SHOWN int open(const char* path, int flags, ...)
{
    std::va_list rest;
    va_start(rest, flags);
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    static const auto call = systems<int(const char*, int, ...)>("open");
    const int error = errorOf(EMFILE, false);
    if (error == 0) return call(path, flags, mode);
    errno = error;
    return -1;
}

PV_SHOWN int mkostemp(char* path, int flags)
{
    static const auto call = systems<int(char*, int)>("mkostemp");
    return pass(call, errorOf(EMFILE, false), path, flags);
}

PV_SHOWN int rename(const char* from, const char* to) noexcept
{
    static const auto call = systems<int(const char*, const char*)>("rename");
    return pass(call, errorOf(ENOSPC, false), from, to);
}

PV_SHOWN int mkdir(const char* path, mode_t mode) noexcept
{
    static const auto call = systems<int(const char*, mode_t)>("mkdir");
    return pass(call, errorOf(ENOSPC, false), path, mode);
}

PV_SHOWN int fstat(int file, struct stat* found) noexcept
{
    static const auto call = systems<int(int, struct stat*)>("fstat");
    return pass(call, errorOf(EIO, false), file, found);
}

// A file is closed even where that gives an error: what was written may not be on the disk.
PV_SHOWN int close(int file)
{
    static const auto call = systems<int(int)>("close");
    const int error = errorOf(EIO, false);
    const int result = call(file);
    if (error == 0) return result;
    errno = error;
    return -1;
}

#undef PV_SHOWN
