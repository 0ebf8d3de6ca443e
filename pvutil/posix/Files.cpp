#include "pvutil/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "pvutil/posix/Descriptor.h"

namespace kzn::pvutil {

namespace {

bool readAll(int fd, std::string& bytes)
{
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = ::read(fd, bytes.data() + filled, bytes.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;  // an error, or a file that shrank meanwhile
        filled += static_cast<std::size_t>(got);
    }
    return true;
}

bool writeAll(int fd, std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        const ssize_t put = ::write(fd, bytes.data(), bytes.size());
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

}  // namespace

stringex::CStringT fileNameOf(const stringex::CStringT& path)
{
    return path.substr(path.rfind(u'/') + 1);
}

FileResult readFile(const stringex::CStringT& path, std::size_t most, std::string& bytes)
{
    if (path.find(u'\0') != stringex::CStringT::npos) return FileResult::failed;
    // Not blocking, so that a pipe of that name cannot hold the caller.
    Descriptor file(::open(stringex::ToUtf8(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return FileResult::failed;

    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > most) return FileResult::tooLarge;
    bytes.resize(size);
    return readAll(file.get(), bytes) ? FileResult::done : FileResult::failed;
}

FileResult replaceFile(const stringex::CStringT& path, std::string_view bytes)
{
    if (path.find(u'\0') != stringex::CStringT::npos) return FileResult::failed;
    // A name of its own, so that the file's may be as long as the system allows.
    const std::string target = stringex::ToUtf8(path);
    std::string passing = target.substr(0, target.rfind('/') + 1) + ".pvwapi-XXXXXX";
    Descriptor file(::mkostemp(passing.data(), O_CLOEXEC));
    if (!file) return FileResult::failed;

    const bool whole = writeAll(file.get(), bytes) && ::close(file.release()) == 0;
    if (whole && ::rename(passing.c_str(), target.c_str()) == 0) return FileResult::done;
    ::unlink(passing.c_str());
    return FileResult::failed;
}

}  // namespace kzn::pvutil
