#include "pvutil/Files.h"

#include <windows.h>

#include <algorithm>

namespace kzn::pvutil {

namespace {

class FileHandle {
public:
    explicit FileHandle(HANDLE handle) noexcept : handle_(handle) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle() { close(); }

    HANDLE get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }

    bool close() noexcept
    {
        const HANDLE handle = handle_;
        handle_ = INVALID_HANDLE_VALUE;
        return handle == INVALID_HANDLE_VALUE || CloseHandle(handle) != 0;
    }

private:
    HANDLE handle_;
};

// Far below what a single call takes, so that a size never has to be looked at twice.
constexpr std::size_t kSlice = std::size_t{1} << 24;

bool readAll(HANDLE file, std::string& bytes)
{
    for (std::size_t filled = 0; filled < bytes.size();) {
        DWORD got = 0;
        const auto want = static_cast<DWORD>(std::min(bytes.size() - filled, kSlice));
        if (!ReadFile(file, bytes.data() + filled, want, &got, nullptr) || got == 0) return false;
        filled += got;
    }
    return true;
}

bool writeAll(HANDLE file, std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        DWORD put = 0;
        const auto want = static_cast<DWORD>(std::min(bytes.size(), kSlice));
        if (!WriteFile(file, bytes.data(), want, &put, nullptr) || put == 0) return false;
        bytes.remove_prefix(put);
    }
    return true;
}

}  // namespace

stringex::CStringT fileNameOf(const stringex::CStringT& path)
{
    return path.substr(path.find_last_of(L"/\\") + 1);
}

FileResult readFile(const stringex::CStringT& path, std::size_t most, std::string& bytes)
{
    if (path.find(L'\0') != stringex::CStringT::npos) return FileResult::failed;
    constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, kShared, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    LARGE_INTEGER size = {};
    if (!file || GetFileType(file.get()) != FILE_TYPE_DISK || !GetFileSizeEx(file.get(), &size))
        return FileResult::failed;
    if (size.QuadPart > static_cast<LONGLONG>(most)) return FileResult::tooLarge;

    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    return readAll(file.get(), bytes) ? FileResult::done : FileResult::failed;
}

FileResult replaceFile(const stringex::CStringT& path, std::string_view bytes)
{
    if (path.find(L'\0') != stringex::CStringT::npos) return FileResult::failed;
    // A name of its own, so that the file's may be as long as the system allows.
    const auto own = std::to_wstring(GetCurrentThreadId()) + L"-" + std::to_wstring(GetTickCount());
    const stringex::CStringT passing = path.substr(0, path.find_last_of(L"/\\") + 1) + L"pvwapi-" + own;
    FileHandle file(
        CreateFileW(passing.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return FileResult::failed;

    const bool whole = writeAll(file.get(), bytes) && file.close();
    if (whole && MoveFileExW(passing.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) return FileResult::done;
    file.close();
    DeleteFileW(passing.c_str());
    return FileResult::failed;
}

}  // namespace kzn::pvutil
