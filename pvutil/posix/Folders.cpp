#include "pvutil/Folders.h"

#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <string_view>

namespace kzn::pvutil {

const stringex::CharT kPathSeparator = u'/';

namespace {

std::string_view environment(const char* name) noexcept
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

CStringT asFolder(std::string_view path)
{
    CStringT folder = stringex::FromUtf8(path);
    if (folder.back() != kPathSeparator) folder += kPathSeparator;
    return folder;
}

bool isFolder(const std::string& path) noexcept
{
    struct stat found {};
    return stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

}  // namespace

std::optional<CStringT> applicationDataFolder()
{
    std::string path(environment("XDG_DATA_HOME"));
    if (!path.starts_with('/')) {
        path = environment("HOME");
        if (!path.starts_with('/')) return std::nullopt;
        path += "/.local/share";
    }
    CStringT folder = asFolder(path);
    if (!createFolders(folder)) return std::nullopt;
    return folder;
}

std::optional<CStringT> temporaryFolder()
{
    const auto named = environment("TMPDIR");
    const std::string path(named.empty() ? "/tmp" : named);
    if (!isFolder(path)) return std::nullopt;
    return asFolder(path);
}

bool createFolders(const CStringT& folder)
{
    constexpr mode_t kOwnerOnly = S_IRWXU;
    const std::string path = stringex::ToUtf8(folder);
    if (path.empty() || path.find('\0') != std::string::npos) return false;
    // A folder that stands already, or that somebody makes at the same time, is as good; the last look tells.
    for (std::size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1))
        mkdir(path.substr(0, at).c_str(), kOwnerOnly);
    mkdir(path.c_str(), kOwnerOnly);
    return isFolder(path);
}

}  // namespace kzn::pvutil
