// What holds on this system.
#pragma once

namespace kzn::bench {

/// What reading a listing may cost of the bare parser's work.
extern const double kReadingLimit;

}  // namespace kzn::bench
