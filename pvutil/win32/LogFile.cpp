#include "pvutil/LogFile.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace kzn::pvutil {

const std::string_view LogFile::kEndOfLine = "\r\n";

namespace {

struct Close {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept
    {
        if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    }
};

using File = std::unique_ptr<HANDLE, Close>;

HANDLE asHandle(std::intptr_t number) noexcept
{
    return reinterpret_cast<HANDLE>(number);
}

}  // namespace

bool LogFile::open(const stringex::CStringT& path) noexcept
{
    close();
    // Others may read the file, and another process of the user may open it anew, while this one writes.
    constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    File file{
        CreateFileW(path.c_str(), FILE_APPEND_DATA, kShared, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)};
    // The name of a device or a pipe opens too.
    if (file.get() == INVALID_HANDLE_VALUE || GetFileType(file.get()) != FILE_TYPE_DISK) return false;
    handle_ = reinterpret_cast<std::intptr_t>(file.release());
    return true;
}

void LogFile::write(std::string_view bytes) noexcept
{
    constexpr std::size_t kAtOnce = std::size_t{1} << 30;
    while (isOpen() && !bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), kAtOnce));
        if (!WriteFile(asHandle(handle_), bytes.data(), size, &written, nullptr) || written == 0) return;
        bytes.remove_prefix(written);
    }
}

void LogFile::close() noexcept
{
    File(asHandle(std::exchange(handle_, kClosed))).reset();
}

}  // namespace kzn::pvutil
