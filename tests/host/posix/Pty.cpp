#include "tests/host/posix/Pty.h"

#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace {

[[noreturn]] void become(std::vector<std::string>& words, const Environment& environment)
{
    for (const char* const name : {"PVWAPI_USER", "PVWAPI_PASSWORD", "PVWAPI_TOKEN", "PVWAPI_CRED"}) unsetenv(name);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

}  // namespace

Pty::Pty(std::vector<std::string> words, const Environment& environment, unsigned short columns)
{
    words.insert(words.begin(), PVWAPI_HOST_PROGRAM);
    const winsize size{24, columns, 0, 0};
    child_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (child_ < 0) throw std::runtime_error("no terminal");
    if (child_ == 0) become(words, environment);
}

Pty::~Pty()
{
    if (child_ > 0) {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }
    close(terminal_);
}

void Pty::type(const std::string& keys) const
{
    if (write(terminal_, keys.data(), keys.size()) < 0) throw std::runtime_error("nobody is at the terminal");
}

void Pty::signal(int number) const
{
    kill(child_, number);
}

bool Pty::readMore()
{
    std::array<char, 4096> piece{};
    // The end shows as an error once the program has closed its side.
    const ssize_t got = read(terminal_, piece.data(), piece.size());
    if (got > 0) text_.append(piece.data(), static_cast<std::size_t>(got));
    return got > 0;
}

bool Pty::shows(const std::string& text)
{
    while (text_.find(text) == std::string::npos) {
        if (!readMore()) return false;
    }
    return true;
}

bool Pty::echoes() const
{
    termios settings{};
    if (tcgetattr(terminal_, &settings) != 0) throw std::runtime_error("no settings");
    return (settings.c_lflag & ECHO) != 0;
}

int Pty::end()
{
    while (readMore()) {
    }
    int status = 0;
    while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
    }
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
