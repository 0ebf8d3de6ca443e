// How far the measurements go on this system, and what holds there.
#pragma once

namespace kzn::bench {

/// What reading a listing may cost of the bare parser's work.
extern const double kReadingLimit;

/// How many pairs of whole calls are timed.
extern const int kCallPairs;

}  // namespace kzn::bench
