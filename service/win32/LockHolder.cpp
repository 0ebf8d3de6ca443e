#include "service/store/LockHolder.h"

#include <windows.h>

#include <optional>
#include <stdexcept>

#include "service/win32/Error.h"
#include "service/win32/Text.h"

namespace service::store {

namespace {

struct CloseAny {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, CloseAny>;

struct Unmap {
    void operator()(const DWORD* number) const { UnmapViewOfFile(number); }
};
using Number = std::unique_ptr<DWORD, Unmap>;

// The system does not tell who has a lock. Whoever has it writes its number into memory that is named after the file:
// after its volume and its place there, for a file has many paths.
std::optional<std::wstring> nameOf(const std::string& file)
{
    const HANDLE raw =
        CreateFileW(win32::toWide(file).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (raw == INVALID_HANDLE_VALUE) return std::nullopt;
    const Handle handle(raw);
    BY_HANDLE_FILE_INFORMATION of{};
    if (!GetFileInformationByHandle(raw, &of)) return std::nullopt;
    return L"Local\\pvwapi-service-data-" + std::to_wstring(of.dwVolumeSerialNumber) + L'-' +
           std::to_wstring(of.nFileIndexHigh) + L'-' + std::to_wstring(of.nFileIndexLow);
}

Number mapped(const Handle& memory, DWORD access)
{
    return Number(memory ? static_cast<DWORD*>(MapViewOfFile(memory.get(), access, 0, 0, sizeof(DWORD))) : nullptr);
}

}  // namespace

std::optional<long long> lockHolder(const std::string& file)
{
    const std::optional<std::wstring> name = nameOf(file);
    if (!name) return std::nullopt;
    const Handle memory(OpenFileMappingW(FILE_MAP_READ, FALSE, name->c_str()));
    const Number number = mapped(memory, FILE_MAP_READ);
    return number ? std::optional<long long>(*number) : std::nullopt;
}

// SQLite locks for as long as a transaction lasts.
const char* exclusiveFiles()
{
    return nullptr;
}

namespace {

// A byte far behind all that the file will ever hold: whoever has it locked has the data file.
Handle lockedFile(const std::string& file)
{
    constexpr DWORD kFar = 0x7FFFFFFF;
    const HANDLE raw =
        CreateFileW(win32::toWide(file).c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (raw == INVALID_HANDLE_VALUE) win32::fail("cannot be opened");
    Handle handle(raw);
    OVERLAPPED place{};
    place.OffsetHigh = kFar;
    if (!LockFileEx(raw, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place)) return {};
    return handle;
}

}  // namespace

struct LockNote::Note {
    Handle memory;
    Handle file;
};

LockNote::LockNote() : note_(std::make_unique<Note>()) {}
LockNote::~LockNote() = default;

void LockNote::write(const std::string& file)
{
    note_->file = lockedFile(file);
    refused_ = note_->file == nullptr;
    if (refused_) throw std::runtime_error("database is locked");
    const std::optional<std::wstring> name = nameOf(file);
    if (!name) return;
    note_->memory.reset(
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(DWORD), name->c_str()));
    if (const Number number = mapped(note_->memory, FILE_MAP_WRITE)) *number = GetCurrentProcessId();
}

}  // namespace service::store
