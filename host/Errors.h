// How a command ends when it does not succeed.
#pragma once

#include <stdexcept>
#include <string>

namespace host {

/// The program's exit status.
enum class Status : int {
    done = 0,
    refused = 1,      ///< the service or the library said no
    local = 2,        ///< the command line, a file or the machine is at fault, nothing the service could help
    unconnected = 3,  ///< no whole reply came
    stopped = 4       ///< by a time limit or by the user
};

/// Why the network was no help, in a word for programs and in the system's words.
struct NetworkCause {
    std::string kind;
    std::string text;
};

class Failure : public std::runtime_error {
public:
    Failure(Status status, const std::string& reason) : std::runtime_error(reason), status_(status) {}
    Failure(Status status, const std::string& reason, NetworkCause network)
        : std::runtime_error(reason), status_(status), network_(std::move(network))
    {
    }

    Status status() const { return status_; }
    const std::string& exceptionID() const { return exceptionID_; }
    const NetworkCause& network() const { return network_; }

protected:
    Failure(Status status, const std::string& reason, std::string exceptionID)
        : std::runtime_error(reason), status_(status), exceptionID_(std::move(exceptionID))
    {
    }

private:
    Status status_;
    std::string exceptionID_;
    NetworkCause network_;
};

class OperationFailed : public Failure {
public:
    explicit OperationFailed(const std::string& reason, const std::string& exceptionID = {})
        : Failure(Status::refused, reason, exceptionID)
    {
    }
};

class LocalProblem : public Failure {
public:
    explicit LocalProblem(const std::string& reason) : Failure(Status::local, reason) {}
};

}  // namespace host
