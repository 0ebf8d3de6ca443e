#pragma once

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace service::test {

// A folder that goes with the test.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // Its path in UTF-8.
    std::string file(const std::string& name) const;

private:
    std::filesystem::path path_;
};

// Wine takes the list of who may do what from a program of 32 bits for none at all, which is all for everybody.
bool isKeptFromOthers(const std::string& file);

// The names of what is in a folder.
std::vector<std::string> namesIn(const std::filesystem::path& folder);

// The real program, started with these arguments.
class ServiceProcess {
public:
    explicit ServiceProcess(const std::vector<std::string>& arguments);

    // Starts it on a data file, on a free port.
    static std::vector<std::string> on(const std::string& dataFile, std::vector<std::string> more = {});

    // The first line of its standard output, once it is there; empty where it ended without one.
    std::string firstLine();

    // The port of that line, which may be one of JSON.
    unsigned short port();

    unsigned long pid() const { return child_.id(); }

    // Asks it to end: by SIGTERM or SIGINT, on Windows by its event.
    void signal(int number) const;

    // Ends it as a crash would, and waits until it has gone.
    void kill() { child_.kill(); }

    // Waits for its end; the exit status, and -1 where it was killed.
    int wait();

    // What else stood on standard output when it ended.
    std::string output();

    // The next line of standard error.
    std::string errorLine();

    // What else stood on standard error when it ended.
    std::string errors();

private:
    // The line of the file that begins there, once it is whole; empty where the service ended without one.
    std::string nextLine(const char* file, std::size_t begin) const;
    void waitUntilEnded() const;

    TemporaryFolder output_;
    ChildProcess child_;
    std::optional<int> status_;
    std::string line_;
    std::size_t errorsRead_ = 0;
};

}  // namespace service::test
