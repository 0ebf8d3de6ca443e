#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace service::test {

// A folder that goes with the test.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(const std::string& name) const;

private:
    std::filesystem::path path_;
};

// The real program, started with these arguments.
class ServiceProcess {
public:
    explicit ServiceProcess(std::vector<std::string> arguments);
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    // Starts it on a data file, on a free port.
    static std::vector<std::string> on(const std::string& dataFile, std::vector<std::string> more = {});

    // The first line of its standard output, once it is there; empty where it ended without one.
    std::string firstLine();

    // The port of that line, which may be one of JSON.
    unsigned short port();

    pid_t pid() const { return pid_; }
    void signal(int number) const;

    // Waits for its end; the exit status, or minus the signal that ended it.
    int wait();

    // All of its standard output that was not read before.
    std::string output() const;

    // The next line of standard error.
    std::string errorLine() const;

    // What stood on standard error when it ended.
    std::string errors();

private:
    pid_t pid_ = -1;
    int output_ = -1;
    int errors_ = -1;
    std::string line_;
};

}  // namespace service::test
