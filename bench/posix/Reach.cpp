#include "bench/Reach.h"

namespace kzn::bench {

const double kReadingLimit = 1.5;
const int kCallPairs = 15'000;
const int kServedBatch = 1'000;
const int kServedPairs = 27;
const ServedLimits kServedLimits = {0.40, 0.28, 0.27, 0.14};

}  // namespace kzn::bench
