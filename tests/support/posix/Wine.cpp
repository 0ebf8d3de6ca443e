#include "tests/support/Wine.h"

namespace kzn::test {

bool runsUnderWine() noexcept
{
    return false;
}

}  // namespace kzn::test
