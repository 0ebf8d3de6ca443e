#include "tests/pvutil/KeptConnections.h"

namespace kzn::test {

bool keepsConnections() noexcept
{
    return false;
}

}  // namespace kzn::test
