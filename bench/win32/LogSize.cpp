#include "bench/LogSize.h"

#include <windows.h>

#include <shlobj.h>

#include <array>

namespace kzn::bench {

std::string logFile()
{
    std::array<char, MAX_PATH> folder{};
    if (SHGetSpecialFolderPathA(nullptr, folder.data(), CSIDL_APPDATA, FALSE) == FALSE) return {};
    return std::string(folder.data()) + "\\Pravik\\Log\\pvwapi.txt";
}

}  // namespace kzn::bench
