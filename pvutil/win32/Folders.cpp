#include "pvutil/Folders.h"

#include <windows.h>

#include <shlobj.h>

#include <array>

namespace kzn::pvutil {

const stringex::CharT kPathSeparator = L'\\';

namespace {

CStringT asFolder(CStringT path)
{
    if (path.empty() || path.back() != kPathSeparator) path += kPathSeparator;
    return path;
}

}  // namespace

std::optional<CStringT> applicationDataFolder()
{
    std::array<wchar_t, MAX_PATH> path{};
    if (!SHGetSpecialFolderPathW(nullptr, path.data(), CSIDL_APPDATA, TRUE)) return std::nullopt;
    return asFolder(path.data());
}

std::optional<CStringT> temporaryFolder()
{
    std::array<wchar_t, MAX_PATH + 1> path{};
    const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
    if (length == 0 || length >= path.size()) return std::nullopt;
    return asFolder(CStringT(path.data(), length));
}

bool createFolders(const CStringT& folder)
{
    SHCreateDirectoryExW(nullptr, folder.c_str(), nullptr);
    const DWORD attributes = GetFileAttributesW(folder.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace kzn::pvutil
