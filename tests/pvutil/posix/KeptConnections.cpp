#include "tests/pvutil/KeptConnections.h"

namespace kzn::test {

bool keepsConnections() noexcept
{
    return true;
}

}  // namespace kzn::test
