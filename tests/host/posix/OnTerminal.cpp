#include "tests/host/posix/OnTerminal.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace {

[[noreturn]] void become(std::vector<std::string>& words, const Environment& environment)
{
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

/// The end shows as an error once the child has closed its side.
std::string readAll(int terminal)
{
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t got = 0; (got = read(terminal, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(got));
    }
    return text;
}

}  // namespace

Ended onTerminal(std::vector<std::string> words, const Environment& environment, const std::string& typed,
                 unsigned short columns)
{
    words.insert(words.begin(), PVWAPI_HOST_PROGRAM);
    const winsize size{24, columns, 0, 0};
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child < 0) throw std::runtime_error("no terminal");
    if (child == 0) become(words, environment);

    Ended ended;
    if (write(terminal, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size())) {
        throw std::runtime_error("the terminal takes nothing");
    }
    ended.out = readAll(terminal);
    close(terminal);
    int status = 0;
    if (waitpid(child, &status, 0) == child) ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return ended;
}
