// Asks before something is done that cannot be undone.
#pragma once

#include "host/CommandLine.h"

namespace host {

/// Asks the command's question, if it has one, somebody is there to answer, and --yes was not given. Throws
/// LocalProblem where the answer is anything but yes.
void requireYes(const Request& request);

}  // namespace host
