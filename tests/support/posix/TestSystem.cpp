#include "tests/support/TestSystem.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

const std::string kEndOfLine = "\n";
const std::size_t kHandlesKeptOfAModule = 0;

namespace {

using Variable = std::optional<std::string>;

Variable variable(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? Variable(value) : std::nullopt;
}

void setVariable(const char* name, const Variable& value)
{
    if (value) setenv(name, value->c_str(), 1);
    else unsetenv(name);
}

}  // namespace

std::filesystem::path dataFolder()
{
    if (const Variable data = variable("XDG_DATA_HOME"); data && !data->empty()) return *data;
    return std::filesystem::path(variable("HOME").value_or("")) / ".local/share";
}

std::filesystem::path logFile()
{
    return dataFolder() / "Pravik/Log/pvwapi.txt";
}

struct DataFolderSetting::Saved {
    Variable data = variable("XDG_DATA_HOME");
    Variable home = variable("HOME");
};

DataFolderSetting::DataFolderSetting(const std::optional<std::filesystem::path>& folder)
    : saved_(std::make_unique<Saved>())
{
    setVariable("XDG_DATA_HOME", folder ? Variable(folder->string()) : std::nullopt);
    if (!folder) setVariable("HOME", std::nullopt);
}

DataFolderSetting::~DataFolderSetting()
{
    setVariable("XDG_DATA_HOME", saved_->data);
    setVariable("HOME", saved_->home);
}

bool isOpenHere(const std::filesystem::path& file)
{
    const std::filesystem::path wanted = std::filesystem::canonical(file);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(entry.path(), gone) == wanted) return true;
    }
    return false;
}

bool isOwnersAlone(const std::filesystem::path& file)
{
    using std::filesystem::perms;
    return (std::filesystem::status(file).permissions() & perms::mask) == (perms::owner_read | perms::owner_write);
}

LoadedLibrary::LoadedLibrary(const std::filesystem::path& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
{
}

void LoadedLibrary::unload()
{
    if (handle_ != nullptr) dlclose(handle_);
    handle_ = nullptr;
}

LoadedLibrary::Function* LoadedLibrary::function(const char* name) const
{
    return reinterpret_cast<Function*>(dlsym(handle_, name));
}

void keepSystemHttp() {}

SystemUse systemUse()
{
    const auto entries = [](const char* folder) {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
    };
    std::size_t all = 0;
    std::size_t resident = 0;
    std::size_t shared = 0;
    std::ifstream("/proc/self/statm") >> all >> resident >> shared;
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return {(resident - shared) * page, entries("/proc/self/fd"), entries("/proc/self/task")};
}

void setVariable(const std::string& name, const std::string& value)
{
    if (value.empty()) unsetenv(name.c_str());
    else setenv(name.c_str(), value.c_str(), 1);
}

unsigned long currentProcessId()
{
    return static_cast<unsigned long>(getpid());
}
unsigned long currentThreadId()
{
    return static_cast<unsigned long>(gettid());
}
