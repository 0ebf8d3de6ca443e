#include "log/System.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>

#include "log/Problem.h"

namespace logreader::system {

namespace {

struct FreeLocal {
    void operator()(void* memory) const { ::LocalFree(memory); }
};

HANDLE asHandle(std::intptr_t number)
{
    return reinterpret_cast<HANDLE>(number);
}

[[noreturn]] void refuse(const std::string& path)
{
    std::string why = std::system_category().message(static_cast<int>(::GetLastError()));
    while (!why.empty() && (why.back() == '\n' || why.back() == '\r' || why.back() == '.')) why.pop_back();
    throw Problem(path + ": " + why);
}

std::wstring widened(const std::string& utf8)
{
    const auto length = static_cast<int>(utf8.size());
    const int units = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(units), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(), units);
    return wide;
}

std::string narrowed(const std::wstring& wide)
{
    const auto length = static_cast<int>(wide.size());
    const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(bytes), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), bytes, nullptr, nullptr);
    return utf8;
}

// Whoever writes the log must not be kept from renaming it.
HANDLE openShared(const std::string& path, DWORD access)
{
    return ::CreateFileW(widened(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

std::intptr_t openFile(const std::string& path)
{
    if (path == "-") return reinterpret_cast<std::intptr_t>(::GetStdHandle(STD_INPUT_HANDLE));
    const DWORD attributes = ::GetFileAttributesW(widened(path).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        throw Problem(path + ": this is a folder");
    }
    const HANDLE file = openShared(path, GENERIC_READ);
    if (file == INVALID_HANDLE_VALUE) refuse(path);
    return reinterpret_cast<std::intptr_t>(file);
}

std::uint64_t joined(DWORD high, DWORD low)
{
    return (std::uint64_t{high} << 32U) | low;
}

Mark markOf(const BY_HANDLE_FILE_INFORMATION& file)
{
    const std::uint64_t written = joined(file.ftLastWriteTime.dwHighDateTime, file.ftLastWriteTime.dwLowDateTime);
    return {file.dwVolumeSerialNumber, joined(file.nFileIndexHigh, file.nFileIndexLow),
            static_cast<std::int64_t>(written)};
}

}  // namespace

std::vector<std::string> arguments(int, const char* const*)
{
    int count = 0;
    const std::unique_ptr<LPWSTR, FreeLocal> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
    if (!words) throw Problem("the command line cannot be read");

    std::vector<std::string> result;
    for (int index = 1; index < count; ++index) result.push_back(narrowed(words.get()[index]));
    return result;
}

void prepareOutput()
{
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
    ::SetConsoleOutputCP(CP_UTF8);
}

std::size_t outputColumns()
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &info)) return 0;
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

std::string libraryLog()
{
    const wchar_t* const data = ::_wgetenv(L"APPDATA");
    if (data == nullptr || *data == 0) return "pvwapi.txt";
    return narrowed(data) + "\\Pravik\\Log\\pvwapi.txt";
}

Input::Input(std::string path) : path_(std::move(path)), handle_(openFile(path_)) {}

Input::~Input()
{
    if (isFile()) ::CloseHandle(asHandle(handle_));
}

std::size_t Input::read(std::span<char> bytes)
{
    DWORD got = 0;
    if (!::ReadFile(asHandle(handle_), bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr)) {
        if (::GetLastError() == ERROR_BROKEN_PIPE) return 0;
        refuse(path_);
    }
    position_ += got;
    return got;
}

Change Input::change() const
{
    BY_HANDLE_FILE_INFORMATION mine{};
    if (!isFile() || !::GetFileInformationByHandle(asHandle(handle_), &mine)) return Change::none;
    const HANDLE named = openShared(path_, 0);
    if (named != INVALID_HANDLE_VALUE) {  // between two files there is none for a moment
        BY_HANDLE_FILE_INFORMATION other{};
        const bool isKnown = ::GetFileInformationByHandle(named, &other) != FALSE;
        ::CloseHandle(named);
        if (isKnown && !markOf(mine).isSameFile(markOf(other))) return Change::replaced;
    }
    return joined(mine.nFileSizeHigh, mine.nFileSizeLow) < position_ ? Change::cut : Change::none;
}

Mark Input::mark() const
{
    BY_HANDLE_FILE_INFORMATION file{};
    if (!::GetFileInformationByHandle(asHandle(handle_), &file)) refuse(path_);
    return markOf(file);
}

}  // namespace logreader::system
