#include "tests/pvutil/SlowLookUp.h"

namespace kzn::test {

// The system looks names up in a library of its own, where a program cannot stand before it.
const bool kHasSlowLookUp = false;

int slowLookUps() noexcept
{
    return 0;
}

}  // namespace kzn::test
