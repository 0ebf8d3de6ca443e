// Another process, which a test starts, looks after and ends.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

class ChildProcess {
public:
    /// The files that take what it writes. The end of a file is there for certain, which the end of a pipe is not under
    /// Wine.
    struct Output {
        std::filesystem::path out;
        std::filesystem::path err;
    };

    /// Where it cannot be started, its number is 0. `words` are UTF-8.
    ChildProcess(const std::string& program, const std::vector<std::string>& words);
    ChildProcess(const std::string& program, const std::vector<std::string>& words, const Output& output);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { kill(); }

    unsigned long id() const { return id_; }

    bool isRunning() const;

    /// Waits for its end; its exit status, and -1 where it was killed.
    int wait();

    /// Ends it as a crash would, at once and without a word to it.
    void kill();

private:
    unsigned long id_ = 0;
    std::intptr_t handle_ = 0;  // 0 once it has been waited for
};
