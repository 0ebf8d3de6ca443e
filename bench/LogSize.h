// The log that a timed call writes.
#pragma once

#include <cstdint>
#include <string>

namespace kzn::bench {

/// Natively it stands below XDG_DATA_HOME, which has to be set: a benchmark does not empty the user's own log.
std::string logFile();

/// How long it is; 0 where there is none.
std::uintmax_t logSize();

}  // namespace kzn::bench
