#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace {

pid_t start(const std::string& program, std::vector<std::string> words, const posix_spawn_file_actions_t* actions)
{
    words.insert(words.begin(), program);
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);

    pid_t child = 0;
    const bool isStarted = posix_spawn(&child, program.c_str(), actions, nullptr, pointers.data(), environ) == 0;
    return isStarted ? child : 0;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& words)
    : id_(static_cast<unsigned long>(start(program, words, nullptr))), handle_(static_cast<std::intptr_t>(id_))
{
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& words, const Output& output)
{
    constexpr int kHow = O_WRONLY | O_CREAT | O_TRUNC | O_APPEND;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.out.c_str(), kHow, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, output.err.c_str(), kHow, 0600);
    handle_ = start(program, words, &actions);
    id_ = static_cast<unsigned long>(handle_);
    posix_spawn_file_actions_destroy(&actions);
}

bool ChildProcess::isRunning() const
{
    siginfo_t ended{};
    return handle_ != 0 && waitid(P_PID, static_cast<id_t>(handle_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
}

int ChildProcess::wait()
{
    const auto child = static_cast<pid_t>(std::exchange(handle_, 0));
    if (child == 0) return -1;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ChildProcess::kill()
{
    if (handle_ == 0) return;
    ::kill(static_cast<pid_t>(handle_), SIGKILL);
    wait();
}
