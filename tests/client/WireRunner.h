// Runs a wire example against a server of the test's own and says in what it differs from what its file promises.
#pragma once

#include <string>
#include <vector>

#include "tests/support/WireCall.h"
#include "tests/support/WireFile.h"

/// One entry a difference; none where everything is as the file says. The operation is looked up in `operations`.
std::vector<std::string> runWireCase(const WireCase& wire, const WireOperations& operations);
