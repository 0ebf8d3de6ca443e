#include "bench/Reach.h"

namespace kzn::bench {

// The processor has half the registers for it here, and the sources are optimised for size.
const double kReadingLimit = 2.3;
// A call by WinHTTP waits for an acknowledgement between its head and its body, a twentieth of a second under Wine.
const int kCallPairs = 100;
// A thread's time moves in hundredths of a second.
const int kServedBatch = 1'000;
const int kServedPairs = 9;
const ServedLimits kServedLimits = {0.50, 0.45, 0.45, 0.30};

}  // namespace kzn::bench
