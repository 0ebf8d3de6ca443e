// The log that a timed call writes.
#pragma once

#include <cstdint>
#include <string>

namespace kzn::bench {

/// How long the log file of this process is; 0 where there is none. It stands below XDG_DATA_HOME, which has to be set:
/// a benchmark does not empty the user's own log.
std::uintmax_t logSize();

std::string logFile();

}  // namespace kzn::bench
