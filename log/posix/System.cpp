#include "log/System.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "log/Problem.h"

namespace logreader::system {

namespace {

[[noreturn]] void refuse(const std::string& path)
{
    throw Problem(path + ": " + std::generic_category().message(errno));
}

int openFile(const std::string& path)
{
    if (path == "-") return STDIN_FILENO;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) refuse(path);
    struct stat status {};
    if (::fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(file);
        throw Problem(path + ": this is a folder");
    }
    return file;
}

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

std::vector<std::string> arguments(int argc, const char* const* argv)
{
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void prepareOutput() {}

std::size_t outputColumns()
{
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::string libraryLog()
{
    std::string data = environment("XDG_DATA_HOME");
    if (!data.starts_with('/')) {
        data = environment("HOME");
        if (!data.starts_with('/')) return "pvwapi.txt";
        data += "/.local/share";
    }
    return data + "/Pravik/Log/pvwapi.txt";
}

Input::Input(std::string path) : path_(std::move(path)), handle_(openFile(path_)) {}

Input::~Input()
{
    if (isFile()) ::close(static_cast<int>(handle_));
}

std::size_t Input::read(std::span<char> bytes)
{
    for (;;) {
        const ssize_t got = ::read(static_cast<int>(handle_), bytes.data(), bytes.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) refuse(path_);
        position_ += static_cast<std::uint64_t>(got);
        return static_cast<std::size_t>(got);
    }
}

Change Input::change() const
{
    struct stat mine {};
    struct stat named {};
    if (!isFile() || ::fstat(static_cast<int>(handle_), &mine) != 0) return Change::none;
    const bool isThere = ::stat(path_.c_str(), &named) == 0;  // between two files there is none for a moment
    if (isThere && (named.st_dev != mine.st_dev || named.st_ino != mine.st_ino)) return Change::replaced;
    const bool isRegular = S_ISREG(mine.st_mode);
    return isRegular && static_cast<std::uint64_t>(mine.st_size) < position_ ? Change::cut : Change::none;
}

Mark Input::mark() const
{
    struct stat status {};
    if (::fstat(static_cast<int>(handle_), &status) != 0) refuse(path_);
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    return {status.st_dev, status.st_ino, status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec};
}

}  // namespace logreader::system
