// Another process, which a test starts, looks after and ends.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class ChildProcess {
public:
    /// Where it cannot be started, its number is 0. `words` are ASCII, without quotation marks.
    ChildProcess(const std::string& program, const std::vector<std::string>& words);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { kill(); }

    unsigned long id() const { return id_; }

    /// Waits for its end; its exit status, and -1 where it was killed.
    int wait();

    /// Ends it as a crash would, at once and without a word to it.
    void kill();

private:
    unsigned long id_ = 0;
    std::intptr_t handle_ = 0;  // 0 once it has been waited for
};
