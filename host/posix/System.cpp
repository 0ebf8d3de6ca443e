#include "host/System.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/Encoding.h"
#include "host/Errors.h"
#include "host/posix/Interrupts.h"

namespace host::system {

namespace {

constexpr const char* kNoText = "not UTF-8";

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
    if (S_ISFIFO(status.st_mode)) return;  // read once and gone
    if (!S_ISREG(status.st_mode)) refuse(path, "neither a regular file nor a pipe");
    if (status.st_uid != ::geteuid()) refuse(path, "belongs to another user");
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) refuse(path, "others have access to it; chmod 600 closes it");
}

std::string readAll(int file, const std::string& path, std::size_t limit)
{
    std::string text(limit + 1, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        waitForInput(file);
        const ssize_t got = ::read(file, text.data() + length, text.size() - length);
        if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (got < 0) refuseForErrno(path);
        if (got == 0) break;
        length += static_cast<std::size_t>(got);
    }
    if (length > limit) refuse(path, "too large for a file of credentials");
    text.resize(length);
    return text;
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
    std::vector<std::string> words;
    for (int index = 1; index < argc; ++index) {
        if (!isUtf8(argv[index])) refuse("argument " + std::to_string(index), kNoText);
        words.emplace_back(argv[index]);
    }
    return words;
}

std::string environment(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    if (value == nullptr) return {};
    if (!isUtf8(value)) refuse(name, kNoText);
    return value;
}

std::string configFolder()
{
    if (std::string folder = environment("XDG_CONFIG_HOME"); !folder.empty()) return folder;
    const std::string home = environment("HOME");
    return home.empty() ? home : home + "/.config";
}

void prepareOutput() {}

std::string readPrivateFile(const std::string& path, std::size_t limit)
{
    if (path == "-") return readAll(STDIN_FILENO, "standard input", limit);
    // A pipe that nobody writes to yet must not hold the program up where nobody can stop it.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK), path);
    requirePrivate(file.get(), path);
    return readAll(file.get(), path, limit);
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
