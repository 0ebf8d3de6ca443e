#include "bench/Reach.h"

namespace kzn::bench {

// The processor has half the registers for it here, and the sources are optimised for size.
const double kReadingLimit = 2.3;
// A call by WinHTTP waits for an acknowledgement between its head and its body, a twentieth of a second under Wine.
const int kCallPairs = 100;

}  // namespace kzn::bench
