#include "host/System.h"

#include <windows.h>

#include <aclapi.h>
#include <fcntl.h>
#include <io.h>
#include <sddl.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "client/WapiClient.h"
#include "host/Errors.h"

namespace host::system {

namespace {

using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

struct CloseFile {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, CloseFile>;

struct FreeLocal {
    void operator()(void* memory) const { ::LocalFree(memory); }
};
template <typename T>
using Local = std::unique_ptr<T, FreeLocal>;

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw LocalProblem(path + ": " + why);
}

[[noreturn]] void refuseForError(const std::string& path, DWORD error)
{
    std::string why = std::system_category().message(static_cast<int>(error));
    while (!why.empty() && (why.back() == '\n' || why.back() == '\r' || why.back() == '.')) why.pop_back();
    refuse(path, why);
}

[[noreturn]] void refuseForLastError(const std::string& path)
{
    refuseForError(path, ::GetLastError());
}

/// `what` is what a message calls the text.
std::string textOf(const CStringT& text, const std::string& what)
{
    std::string utf8 = ToUtf8(text);
    if (FromUtf8(utf8) != text) refuse(what, "not UTF-16");
    return utf8;
}

/// `path` is what a message calls the file `name`.
Handle openFile(const std::string& path, const CStringT& name, DWORD access, DWORD disposition,
                SECURITY_ATTRIBUTES* security)
{
    const DWORD share = disposition == OPEN_EXISTING ? FILE_SHARE_READ : 0;
    const HANDLE file =
        ::CreateFileW(name.c_str(), access, share, security, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) refuseForLastError(path);
    return Handle(file);
}

/// The user's identifier in its text form, "S-1-5-…".
CStringT currentUser()
{
    HANDLE raw = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &raw)) refuseForLastError("the user's identity");
    const Handle token(raw);

    alignas(TOKEN_USER) std::byte buffer[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof buffer;
    if (!::GetTokenInformation(token.get(), TokenUser, buffer, size, &size)) refuseForLastError("the user's identity");

    LPWSTR text = nullptr;
    if (!::ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(buffer)->User.Sid, &text)) {
        refuseForLastError("the user's identity");
    }
    return CStringT(Local<wchar_t>(text).get());
}

CStringT textOf(PSID sid)
{
    LPWSTR text = nullptr;
    if (!::ConvertSidToStringSidW(sid, &text)) return {};
    return CStringT(Local<wchar_t>(text).get());
}

/// Whoever runs the machine reads every file anyway.
bool mayRead(const CStringT& sid, const CStringT& user)
{
    return sid == user || sid == L"S-1-5-18" /* the system */ || sid == L"S-1-5-32-544" /* administrators */;
}

bool letsOthersRead(ACL& list, const CStringT& user)
{
    constexpr DWORD kReading = FILE_READ_DATA | GENERIC_READ | GENERIC_ALL;
    for (DWORD index = 0; index < list.AceCount; ++index) {
        void* entry = nullptr;
        if (!::GetAce(&list, index, &entry)) return true;
        auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE || (allowed->Mask & kReading) == 0) continue;
        if (!mayRead(textOf(&allowed->SidStart), user)) return true;
    }
    return false;
}

void requirePrivate(HANDLE file, const std::string& path)
{
    if (::GetFileType(file) == FILE_TYPE_PIPE) return;  // read once and gone
    if (::GetFileType(file) != FILE_TYPE_DISK) refuse(path, "neither a regular file nor a pipe");

    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR raw = nullptr;
    const DWORD error =
        ::GetSecurityInfo(file, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr, &raw);
    if (error != ERROR_SUCCESS) refuseForError(path, error);
    const Local<void> descriptor(raw);
    // A file without a list is open to everybody.
    if (list == nullptr || letsOthersRead(*list, currentUser())) {
        refuse(path, "others have access to it; only its owner may");
    }
}

std::string readAll(HANDLE file, const std::string& path, std::size_t limit)
{
    std::string text(limit + 1, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        DWORD got = 0;
        const auto room = static_cast<DWORD>(text.size() - length);
        const bool isRead = ::ReadFile(file, text.data() + length, room, &got, nullptr) != FALSE;
        // This is how a pipe says that its writer is done.
        if (!isRead && ::GetLastError() != ERROR_BROKEN_PIPE) refuseForLastError(path);
        if (got == 0) break;
        length += got;
    }
    if (length > limit) refuse(path, "too large for a file of credentials");
    text.resize(length);
    return text;
}

void writeAll(HANDLE file, const std::string& path, const std::string& text)
{
    DWORD written = 0;
    const auto size = static_cast<DWORD>(text.size());
    if (!::WriteFile(file, text.data(), size, &written, nullptr) || written != size) refuseForLastError(path);
    if (!::FlushFileBuffers(file)) refuseForLastError(path);
}

}  // namespace

std::vector<std::string> arguments(int, const char* const*)
{
    int count = 0;
    const Local<LPWSTR> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
    if (!words) throw LocalProblem("the command line cannot be read");

    std::vector<std::string> result;
    for (int index = 1; index < count; ++index) {
        result.push_back(textOf(words.get()[index], "argument " + std::to_string(index)));
    }
    return result;
}

std::string environment(const std::string& name)
{
    const wchar_t* const value = ::_wgetenv(FromUtf8(name).c_str());
    return value != nullptr ? textOf(value, name) : "";
}

std::string configFolder()
{
    return environment("APPDATA");
}

void prepareOutput()
{
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
    ::SetConsoleOutputCP(CP_UTF8);
}

std::string readPrivateFile(const std::string& path, std::size_t limit)
{
    if (path == "-") return readAll(::GetStdHandle(STD_INPUT_HANDLE), "standard input", limit);
    const Handle file = openFile(path, FromUtf8(path), GENERIC_READ | READ_CONTROL, OPEN_EXISTING, nullptr);
    requirePrivate(file.get(), path);
    return readAll(file.get(), path, limit);
}

void writePrivateFile(const std::string& path, const std::string& text)
{
    PSECURITY_DESCRIPTOR raw = nullptr;
    const CStringT ownerOnly = L"D:P(A;;FA;;;" + currentUser() + L")";
    if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(ownerOnly.c_str(), SDDL_REVISION_1, &raw, nullptr)) {
        refuseForLastError(path);
    }
    const Local<void> descriptor(raw);
    SECURITY_ATTRIBUTES security{sizeof security, descriptor.get(), FALSE};

    const CStringT temporary = FromUtf8(path + "." + std::to_string(::GetCurrentProcessId()));
    try {
        writeAll(openFile(path, temporary, GENERIC_WRITE, CREATE_NEW, &security).get(), path, text);
        if (!::MoveFileExW(temporary.c_str(), FromUtf8(path).c_str(), MOVEFILE_REPLACE_EXISTING)) {
            refuseForLastError(path);
        }
    } catch (...) {
        ::DeleteFileW(temporary.c_str());
        throw;
    }
}

}  // namespace host::system
