#include "bench/LogSize.h"

#include <filesystem>
#include <system_error>

namespace kzn::bench {

std::uintmax_t logSize()
{
    const std::string file = logFile();
    if (file.empty()) return 0;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

}  // namespace kzn::bench
