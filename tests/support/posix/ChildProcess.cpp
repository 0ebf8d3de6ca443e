#include "tests/support/ChildProcess.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& words)
{
    std::vector<std::string> all = words;
    all.insert(all.begin(), program);
    std::vector<char*> pointers;
    for (std::string& word : all) pointers.push_back(word.data());
    pointers.push_back(nullptr);

    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, pointers.data(), environ) != 0) return;
    id_ = static_cast<unsigned long>(child);
    handle_ = child;
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
