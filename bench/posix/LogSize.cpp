#include "bench/LogSize.h"

#include <cstdlib>

namespace kzn::bench {

std::string logFile()
{
    const char* const folder = std::getenv("XDG_DATA_HOME");
    return folder == nullptr ? std::string() : std::string(folder) + "/Pravik/Log/pvwapi.txt";
}

}  // namespace kzn::bench
