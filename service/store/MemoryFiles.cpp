#include "service/store/MemoryFiles.h"

#include <sqlite3.h>

#include <atomic>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <utility>

#include "service/store/MemoryFile.h"

// SQLite's own memory databases have no write-ahead log, so that who reads stops who writes. This is a file system of
// SQLite's for files in memory that has one: with locks between connections, and with memory that they share as the
// index of the log.
namespace service::store {

namespace {

constexpr const char* kSystem = "pvwapi-memory";
class Folder {
public:
    std::shared_ptr<MemoryFile> open(const std::string& name, bool make)
    {
        const std::scoped_lock lock(mutex_);
        const auto found = files_.find(name);
        if (found != files_.end()) return found->second;
        return make ? files_.emplace(name, std::make_shared<MemoryFile>()).first->second : nullptr;
    }

    bool has(const std::string& name)
    {
        const std::scoped_lock lock(mutex_);
        return files_.contains(name);
    }

    void remove(const std::string& name)
    {
        const std::scoped_lock lock(mutex_);
        files_.erase(name);
    }

private:
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<MemoryFile>> files_;
};

Folder& folder()
{
    static Folder all;
    return all;
}

// What SQLite keeps for each open file.
struct OpenFile {
    explicit OpenFile(std::shared_ptr<MemoryFile> file) : use(std::move(file)) {}

    sqlite3_file base{};
    MemoryUse use;
};

OpenFile* openOf(sqlite3_file* file)
{
    return reinterpret_cast<OpenFile*>(file);
}

MemoryUse& useOf(sqlite3_file* file)
{
    return openOf(file)->use;
}

int closeFile(sqlite3_file* file)
{
    std::destroy_at(openOf(file));
    return SQLITE_OK;
}

int readFile(sqlite3_file* file, void* out, int count, sqlite3_int64 at)
{
    const auto wanted = static_cast<std::size_t>(count);
    const std::size_t got = useOf(file).content().read(static_cast<char*>(out), wanted, static_cast<std::size_t>(at));
    return got == wanted ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

int writeFile(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at)
{
    try {
        useOf(file).content().write(static_cast<const char*>(bytes), static_cast<std::size_t>(count),
                                    static_cast<std::size_t>(at));
    } catch (const std::bad_alloc&) {
        return SQLITE_FULL;
    }
    return SQLITE_OK;
}

int truncateFile(sqlite3_file* file, sqlite3_int64 size)
{
    useOf(file).content().truncate(static_cast<std::size_t>(size));
    return SQLITE_OK;
}

int syncFile(sqlite3_file* /*file*/, int /*flags*/)
{
    return SQLITE_OK;
}

int sizeOfFile(sqlite3_file* file, sqlite3_int64* size)
{
    *size = static_cast<sqlite3_int64>(useOf(file).content().size());
    return SQLITE_OK;
}

int lockFile(sqlite3_file* file, int level)
{
    return useOf(file).lock(level) ? SQLITE_OK : SQLITE_BUSY;
}

int unlockFile(sqlite3_file* file, int level)
{
    useOf(file).unlock(level);
    return SQLITE_OK;
}

int isReserved(sqlite3_file* file, int* result)
{
    *result = useOf(file).isReserved() ? 1 : 0;
    return SQLITE_OK;
}

int controlFile(sqlite3_file* /*file*/, int /*what*/, void* /*value*/)
{
    return SQLITE_NOTFOUND;
}

int sectorSize(sqlite3_file* /*file*/)
{
    constexpr int kSector = 4096;
    return kSector;
}

int characteristics(sqlite3_file* /*file*/)
{
    return SQLITE_IOCAP_SAFE_APPEND | SQLITE_IOCAP_SEQUENTIAL | SQLITE_IOCAP_POWERSAFE_OVERWRITE;
}

int mapIndex(sqlite3_file* file, int number, int size, int extend, void volatile** region)
{
    try {
        *region = useOf(file).region(static_cast<std::size_t>(number), static_cast<std::size_t>(size), extend != 0);
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    }
    return SQLITE_OK;
}

int lockIndex(sqlite3_file* file, int first, int count, int flags)
{
    MemoryUse& use = useOf(file);
    const unsigned parts = ((1U << static_cast<unsigned>(count)) - 1U) << static_cast<unsigned>(first);
    if ((flags & SQLITE_SHM_UNLOCK) != 0) {
        use.unlockParts(parts);
        return SQLITE_OK;
    }
    const bool locked = (flags & SQLITE_SHM_SHARED) != 0 ? use.shareParts(parts) : use.takeParts(parts);
    return locked ? SQLITE_OK : SQLITE_BUSY;
}

void indexBarrier(sqlite3_file* file)
{
    useOf(file).meet();
}

int unmapIndex(sqlite3_file* file, int /*remove*/)
{
    useOf(file).unlockParts(~0U);
    return SQLITE_OK;
}

int fetchPage(sqlite3_file* file, sqlite3_int64 at, int count, void** page)
{
    *page = useOf(file).content().find(static_cast<std::size_t>(count), static_cast<std::size_t>(at));
    return SQLITE_OK;
}

int leavePage(sqlite3_file* /*file*/, sqlite3_int64 /*at*/, void* /*page*/)
{
    return SQLITE_OK;
}

constexpr sqlite3_io_methods kMethods{
    3,         closeFile,    readFile,   writeFile,   truncateFile, syncFile,        sizeOfFile,
    lockFile,  unlockFile,   isReserved, controlFile, sectorSize,   characteristics, mapIndex,
    lockIndex, indexBarrier, unmapIndex, fetchPage,   leavePage};

int openFile(sqlite3_vfs* /*system*/, const char* name, sqlite3_file* file, int flags, int* given)
{
    file->pMethods = nullptr;
    try {
        std::shared_ptr<MemoryFile> shared =
            name == nullptr ? std::make_shared<MemoryFile>() : folder().open(name, (flags & SQLITE_OPEN_CREATE) != 0);
        if (!shared) return SQLITE_CANTOPEN;
        std::construct_at(openOf(file), std::move(shared))->base.pMethods = &kMethods;
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    }
    if (given != nullptr) *given = flags;
    return SQLITE_OK;
}

int removeFile(sqlite3_vfs* /*system*/, const char* name, int /*sync*/)
{
    folder().remove(name);
    return SQLITE_OK;
}

int isThere(sqlite3_vfs* /*system*/, const char* name, int /*what*/, int* result)
{
    *result = folder().has(name) ? 1 : 0;
    return SQLITE_OK;
}

int wholeName(sqlite3_vfs* /*system*/, const char* name, int size, char* out)
{
    if (std::strlen(name) >= static_cast<std::size_t>(size)) return SQLITE_CANTOPEN;
    std::strcpy(out, name);
    return SQLITE_OK;
}

// What has nothing to do with files is the system's.
int registerSystem()
{
    const sqlite3_vfs* const usual = sqlite3_vfs_find(nullptr);
    if (usual == nullptr) return SQLITE_ERROR;
    static sqlite3_vfs system = *usual;
    system.zName = kSystem;
    system.pNext = nullptr;
    system.szOsFile = sizeof(OpenFile);
    system.xOpen = openFile;
    system.xDelete = removeFile;
    system.xAccess = isThere;
    system.xFullPathname = wholeName;
    return sqlite3_vfs_register(&system, 0);
}

}  // namespace

MemoryFiles::MemoryFiles()
{
    static const int registered = registerSystem();
    if (registered != SQLITE_OK) throw std::runtime_error("nothing can be kept in memory");
    static std::atomic<unsigned long long> number{0};
    name_ = "memory-" + std::to_string(++number);
}

MemoryFiles::~MemoryFiles()
{
    for (const char* const tail : {"", "-wal", "-journal"}) folder().remove(name_ + tail);
}

const char* MemoryFiles::system()
{
    return kSystem;
}

}  // namespace service::store
