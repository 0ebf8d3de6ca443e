// A server that is measured: what it takes of the processor and of memory, whatever its clients take.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

class ChildProcess;

namespace kzn::bench {

class ServedProcess {
public:
    /// Starts a program whose first line of output says "listening on 127.0.0.1:PORT", and waits for that.
    ServedProcess(const std::string& program, const std::vector<std::string>& words);
    ServedProcess(const ServedProcess&) = delete;
    ServedProcess& operator=(const ServedProcess&) = delete;
    ~ServedProcess();

    /// Where it is reached; without a path.
    const std::string& address() const noexcept { return address_; }

    /// Processor time of all its threads so far, in seconds.
    double processorTime() const;

    /// Memory that it holds now, in MiB.
    double memory() const;

private:
    std::filesystem::path folder_;
    std::unique_ptr<ChildProcess> child_;
    std::string address_;
};

}  // namespace kzn::bench
