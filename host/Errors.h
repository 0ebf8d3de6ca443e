// How a command ends when it does not succeed; the exit status follows from the class.
#pragma once

#include <stdexcept>

namespace host {

/// The service or the library said no: exit status 1.
class OperationFailed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The command line, a file or the machine is at fault, nothing the service could help: exit status 2.
class LocalProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
