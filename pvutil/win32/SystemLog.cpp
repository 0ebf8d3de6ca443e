#include "pvutil/SystemLog.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <memory>

namespace kzn::pvutil {

const std::string_view kLogEndOfLine = "\r\n";

namespace {

struct Close {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept
    {
        if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    }
};

using File = std::unique_ptr<HANDLE, Close>;

// Others may read the file, and another process of the user may write or rename it, while this one writes.
constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE asHandle(SystemLog log) noexcept
{
    return reinterpret_cast<HANDLE>(log);
}

// Locked bytes can be neither read nor written by others, so these two lie where no log ever reaches.
enum class Byte : DWORD { hold = 0, line = 1 };

OVERLAPPED placeOf(Byte byte) noexcept
{
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(byte);
    place.OffsetHigh = 0x40000000;
    return place;
}

bool lock(HANDLE file, Byte byte, DWORD exclusive) noexcept
{
    OVERLAPPED place = placeOf(byte);
    return LockFileEx(file, exclusive | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != FALSE;
}

void unlock(HANDLE file, Byte byte) noexcept
{
    OVERLAPPED place = placeOf(byte);
    UnlockFileEx(file, 0, 1, 0, &place);
}

// Windows appends in one step; Wine looks for the end and writes there, so that two writers could meet. A writer that
// has been stopped in the middle is waited for no longer than this.
class Turn {
public:
    explicit Turn(HANDLE file) noexcept : file_(file)
    {
        constexpr int kTries = 500;
        for (int tries = 0; tries < kTries && !locked_; ++tries) {
            if (tries > 0) Sleep(1);
            locked_ = lock(file, Byte::line, LOCKFILE_EXCLUSIVE_LOCK);
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn()
    {
        if (locked_) unlock(file_, Byte::line);
    }

private:
    HANDLE file_;
    bool locked_ = false;
};

void write(HANDLE file, std::string_view bytes) noexcept
{
    constexpr std::size_t kAtOnce = std::size_t{1} << 30;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), kAtOnce));
        if (!WriteFile(file, bytes.data(), size, &written, nullptr) || written == 0) return;
        bytes.remove_prefix(written);
    }
}

bool identify(HANDLE file, BY_HANDLE_FILE_INFORMATION& found) noexcept
{
    return file != INVALID_HANDLE_VALUE && GetFileInformationByHandle(file, &found) != FALSE;
}

}  // namespace

SystemLog openLog(const stringex::CStringT& path) noexcept
{
    // Without the right to write elsewhere each write goes to the end; a hold asks for the right to read.
    File file{CreateFileW(path.c_str(), FILE_APPEND_DATA | FILE_READ_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE, kShared,
                          nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)};
    // The name of a device or a pipe opens too.
    if (file.get() == INVALID_HANDLE_VALUE || GetFileType(file.get()) != FILE_TYPE_DISK) return kNoLog;
    return reinterpret_cast<SystemLog>(file.release());
}

void closeLog(SystemLog log) noexcept
{
    File(asHandle(log)).reset();
}

Held holdLog(SystemLog log, Hold hold) noexcept
{
    if (lock(asHandle(log), Byte::hold, hold == Hold::alone ? LOCKFILE_EXCLUSIVE_LOCK : 0)) return Held::yes;
    return GetLastError() == ERROR_LOCK_VIOLATION ? Held::byAnother : Held::unknown;
}

// One opening may have both holds on a byte. An unlocking takes one of them away, that alone first.
void shareLog(SystemLog log) noexcept
{
    if (lock(asHandle(log), Byte::hold, 0)) unlock(asHandle(log), Byte::hold);
}

bool isEmptyLog(SystemLog log) noexcept
{
    LARGE_INTEGER size{};
    return GetFileSizeEx(asHandle(log), &size) && size.QuadPart == 0;
}

bool isLogAt(SystemLog log, const stringex::CStringT& path) noexcept
{
    const File there{CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShared, nullptr, OPEN_EXISTING, 0, nullptr)};
    BY_HANDLE_FILE_INFORMATION one{};
    BY_HANDLE_FILE_INFORMATION other{};
    return identify(asHandle(log), one) && identify(there.get(), other) &&
           one.dwVolumeSerialNumber == other.dwVolumeSerialNumber && one.nFileIndexHigh == other.nFileIndexHigh &&
           one.nFileIndexLow == other.nFileIndexLow;
}

bool renameLog(const stringex::CStringT& path, const stringex::CStringT& earlier) noexcept
{
    constexpr DWORD kForeign = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const DWORD found = GetFileAttributesW(earlier.c_str());
    if (found != INVALID_FILE_ATTRIBUTES && (found & kForeign) != 0) return false;
    return MoveFileExW(path.c_str(), earlier.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE;
}

// Small pieces go out together.
void appendToLog(SystemLog log, LogPieces pieces) noexcept
{
    std::array<char, 4096> joined;
    std::size_t size = 0;
    const Turn turn(asHandle(log));
    for (const std::string_view piece : pieces) {
        if (piece.size() > joined.size() - size) {
            write(asHandle(log), {joined.data(), size});
            size = 0;
        }
        if (piece.size() > joined.size()) write(asHandle(log), piece);
        else size += piece.copy(joined.data() + size, piece.size());
    }
    write(asHandle(log), {joined.data(), size});
}

}  // namespace kzn::pvutil
