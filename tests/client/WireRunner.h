// Runs a wire example against a server of the test's own and says in what it differs from what its file promises.
#pragma once

#include <string>
#include <vector>

#include "tests/support/WireCall.h"
#include "tests/support/WireFile.h"

/// One entry a difference; none where everything is as the file says. The operation is looked up in `operations`.
std::vector<std::string> runWireCase(const WireCase& wire, const WireOperations& operations);

/// The operation that the example calls; WireFileError where there is none of that name.
const WireOperation& operationOf(const WireCase& wire, const WireOperations& operations);

/// A text of the example with its placeholders filled in, for a server at `address`.
std::string filledWith(const WireCase& wire, const std::string& address, std::string text);
