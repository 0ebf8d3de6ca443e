#include "tests/host/Program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace {

/// The two ends of a pipe that no other child inherits by accident.
struct Pipe {
    Pipe()
    {
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe()
    {
        close(ends[0]);
        closeWriter();
    }
    void closeWriter()
    {
        if (ends[1] >= 0) close(ends[1]);
        ends[1] = -1;
    }
    std::array<int, 2> ends{};
};

/// Of two lines for one variable, a program finds the first.
bool isInherited(std::string_view line, const Environment& environment)
{
    return !line.starts_with("PVWAPI_") && !environment.contains(std::string(line.substr(0, line.find('='))));
}

std::vector<std::string> variables(const Environment& environment)
{
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (isInherited(*entry, environment)) result.emplace_back(*entry);
    }
    for (const auto& [name, value] : environment) result.push_back(name + "=" + value);
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// Appends what there is; false at the end.
bool take(int from, std::string& to)
{
    std::array<char, 4096> piece;
    const ssize_t got = read(from, piece.data(), piece.size());
    if (got > 0) to.append(piece.data(), static_cast<std::size_t>(got));
    return got > 0 || (got < 0 && errno == EINTR);
}

void collect(const Pipe& out, const Pipe& err, Ended& ended)
{
    std::array<pollfd, 2> watched{{{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}}};
    const std::array<std::string*, 2> texts{&ended.out, &ended.err};
    for (int open = 2; open > 0;) {
        if (poll(watched.data(), watched.size(), -1) < 0) continue;
        for (std::size_t at = 0; at < watched.size(); ++at) {
            if (watched[at].revents == 0 || take(watched[at].fd, *texts[at])) continue;
            watched[at].fd = -1;
            --open;
        }
    }
}

pid_t start(const std::string& program, std::vector<std::string> words, const Environment& environment, Pipe& out,
            Pipe& err)
{
    words.insert(words.begin(), program);
    std::vector<std::string> settings = variables(environment);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
    pid_t child = 0;
    const int error =
        posix_spawn(&child, program.c_str(), &actions, nullptr, pointers(words).data(), pointers(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error(program + " cannot be started");
    return child;
}

}  // namespace

Ended runProgram(const std::string& program, const std::vector<std::string>& words, const Environment& environment)
{
    Pipe out;
    Pipe err;
    const pid_t child = start(program, words, environment, out, err);
    out.closeWriter();
    err.closeWriter();

    Ended ended;
    collect(out, err, ended);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    // A signal is no exit status: it must not pass for one.
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return ended;
}

void writeFile(const std::string& path, const std::string& text, bool privately)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    chmod(path.c_str(), privately ? 0600 : 0644);
}

bool isPrivate(const std::string& path)
{
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && (status.st_mode & 07777) == 0600;
}
