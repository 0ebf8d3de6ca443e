#include "bench/LogSize.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kzn::bench {

std::uintmax_t logSize()
{
    const char* const folder = std::getenv("XDG_DATA_HOME");
    if (!folder) return 0;
    std::error_code error;
    const std::uintmax_t size =
        std::filesystem::file_size(std::filesystem::path(folder) / "Pravik/Log/pvwapi.txt", error);
    return error ? 0 : size;
}

}  // namespace kzn::bench
