// A wire example again and again, each time with another allocation of the call failing.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/WireCall.h"
#include "tests/support/WireFile.h"

struct SweepResult {
    std::size_t allocations = 0;  // of the call when none fails
    std::size_t calls = 0;        // that were made with one failing
    std::vector<std::string> faults;
};

/// Fails about `most` allocations of the call, spread evenly (0: all of them), each alone and with all behind it. The
/// call has to fail without a trace, or to do what it does otherwise; the call after it has to do that.
SweepResult sweepWireCase(const WireCase& wire, const WireOperations& operations, std::size_t most);
