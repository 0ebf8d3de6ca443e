#include "bench/Reach.h"

namespace kzn::bench {

const double kReadingLimit = 1.5;

}  // namespace kzn::bench
