#include "host/System.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/Errors.h"

namespace host::system {

namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw LocalProblem(path + ": " + why);
}

[[noreturn]] void refuseForErrno(const std::string& path)
{
    refuse(path, std::generic_category().message(errno));
}

class Descriptor {
public:
    Descriptor(int number, const std::string& path) : number_(number)
    {
        if (number_ < 0) refuseForErrno(path);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { ::close(number_); }

    int get() const { return number_; }

private:
    int number_;
};

void requirePrivate(int file, const std::string& path)
{
    struct stat status {};
    if (::fstat(file, &status) != 0) refuseForErrno(path);
    if (!S_ISREG(status.st_mode)) refuse(path, "not a regular file");
    if (status.st_uid != ::geteuid()) refuse(path, "belongs to another user");
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) refuse(path, "others have access to it; chmod 600 closes it");
}

void writeAll(int file, const std::string& path, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) refuseForErrno(path);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    if (::fsync(file) != 0) refuseForErrno(path);
}

}  // namespace

std::vector<std::string> arguments(int argc, const char* const* argv)
{
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

std::string environment(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    return value != nullptr ? value : "";
}

std::string configFolder()
{
    if (const std::string folder = environment("XDG_CONFIG_HOME"); !folder.empty()) return folder;
    const std::string home = environment("HOME");
    return home.empty() ? home : home + "/.config";
}

void prepareOutput() {}

bool errorIsTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

std::string readPrivateFile(const std::string& path, std::size_t limit)
{
    // A pipe without a writer must not hold the program up before it is refused.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK), path);
    requirePrivate(file.get(), path);

    std::string text(limit + 1, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        const ssize_t got = ::read(file.get(), text.data() + length, text.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) refuseForErrno(path);
        if (got == 0) break;
        length += static_cast<std::size_t>(got);
    }
    if (length > limit) refuse(path, "too large for a file of credentials");
    text.resize(length);
    return text;
}

void writePrivateFile(const std::string& path, const std::string& text)
{
    std::string temporary = path + ".XXXXXX";
    const Descriptor file(::mkstemp(temporary.data()), path);
    try {
        writeAll(file.get(), path, text);
        if (::rename(temporary.c_str(), path.c_str()) != 0) refuseForErrno(path);
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
}

}  // namespace host::system
