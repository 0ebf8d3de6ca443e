#include "bench/Reach.h"

namespace kzn::bench {

const double kReadingLimit = 1.5;
const int kCallPairs = 15'000;

}  // namespace kzn::bench
