// What the tests need from the system beyond the library itself.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

/// The folder that a library loaded now takes for its data, and the log file in it.
std::filesystem::path dataFolder();
std::filesystem::path logFile();

/// What a line of the log ends in.
extern const std::string kEndOfLine;

/// Has the system name another data folder, or none, while one of these lives.
class DataFolderSetting {
public:
    explicit DataFolderSetting(const std::optional<std::filesystem::path>& folder);
    DataFolderSetting(const DataFolderSetting&) = delete;
    DataFolderSetting& operator=(const DataFolderSetting&) = delete;
    ~DataFolderSetting();

private:
    struct Saved;
    std::unique_ptr<Saved> saved_;
};

/// Whether this process has the file open.
bool isOpenHere(const std::filesystem::path& file);

/// Whether nobody but its owner can read or write the file.
bool isOwnersAlone(const std::filesystem::path& file);

/// Shared libraries that a test loads and unloads by itself.
class LoadedLibrary {
public:
    explicit LoadedLibrary(const std::filesystem::path& path);
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary() { unload(); }

    explicit operator bool() const { return handle_ != nullptr; }
    void unload();

    /// What the library calls by this name; null where it has no such function.
    using Function = void();
    Function* function(const char* name) const;

private:
    void* handle_;
};

/// The system's own HTTP library stays in this process from now on, where the system has one. Wine's goes on working
/// for a moment after it has said that a request is closed, and does not survive being unloaded then; that of Windows
/// holds itself.
void keepSystemHttp();

/// What this process holds of the system.
struct SystemUse {
    std::size_t memory = 0;   // bytes that are its own
    std::size_t handles = 0;  // descriptors, where they are called so
    std::size_t threads = 0;
};
SystemUse systemUse();

/// What the compiler's runtime never gives back of a module that was in use: the locks of its thread-local variables.
extern const std::size_t kHandlesKeptOfAModule;

/// Sets a variable of the environment, for the processes that are started from now on; an empty value takes it away.
void setVariable(const std::string& name, const std::string& value);

unsigned long currentProcessId();
unsigned long currentThreadId();
