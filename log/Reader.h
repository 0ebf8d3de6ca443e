// Reads a log and prints its calls.
#pragma once

#include "log/Options.h"

namespace logreader {

/// Throws Problem.
void readLog(const Options& options);

}  // namespace logreader
