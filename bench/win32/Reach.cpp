#include "bench/Reach.h"

namespace kzn::bench {

// The processor has half the registers for it here, and the sources are optimised for size.
const double kReadingLimit = 2.3;

}  // namespace kzn::bench
