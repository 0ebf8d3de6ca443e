#include "tests/host/Program.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "pvutil/StringEx.h"
#include "tests/support/win32/CommandLine.h"

namespace {

using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

struct CloseAny {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, CloseAny>;

/// A file that takes what the program writes and goes with its handle. The end of a file is there for certain, which
/// the end of a pipe is not under Wine.
Handle outputFile()
{
    std::array<wchar_t, MAX_PATH + 1> folder{};
    std::array<wchar_t, MAX_PATH + 1> name{};
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (GetTempPathW(MAX_PATH, folder.data()) == 0 || GetTempFileNameW(folder.data(), L"pvw", 0, name.data()) == 0) {
        throw std::runtime_error("no temporary file");
    }
    const HANDLE file =
        CreateFileW(name.data(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE) throw std::runtime_error("no temporary file");
    return Handle(file);
}

/// Of two lines for one variable, a program finds the first.
bool isInherited(std::wstring_view line, const Environment& environment)
{
    const std::string name = ToUtf8(std::wstring(line.substr(0, line.find(L'=', 1))));
    return !name.starts_with("PVWAPI_") && !environment.contains(name);
}

std::wstring block(const Environment& environment)
{
    std::wstring result;
    wchar_t* const own = GetEnvironmentStringsW();
    for (const wchar_t* entry = own; *entry != 0;) {
        const std::wstring_view line(entry);
        if (isInherited(line, environment)) result.append(line).push_back(0);
        entry += line.size() + 1;
    }
    FreeEnvironmentStringsW(own);
    for (const auto& [name, value] : environment) result.append(FromUtf8(name + "=" + value)).push_back(0);
    result.push_back(0);
    return result;
}

std::string contentOf(HANDLE file)
{
    std::string text;
    std::array<char, 4096> piece;
    DWORD got = 0;
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    while (ReadFile(file, piece.data(), piece.size(), &got, nullptr) && got > 0) text.append(piece.data(), got);
    return text;
}

Handle start(const std::string& program, const std::vector<std::string>& words, const Environment& environment,
             HANDLE out, HANDLE err)
{
    std::wstring line = quotedWord(FromUtf8(program));
    for (const std::string& word : words) line += L" " + quotedWord(FromUtf8(word));
    std::wstring settings = block(environment);

    STARTUPINFOW setup{};
    setup.cb = sizeof setup;
    setup.dwFlags = STARTF_USESTDHANDLES;
    setup.hStdOutput = out;
    setup.hStdError = err;
    PROCESS_INFORMATION child{};
    const auto begin = [&] {
        return CreateProcessW(FromUtf8(program).c_str(), line.data(), nullptr, nullptr, TRUE,
                              CREATE_UNICODE_ENVIRONMENT, settings.data(), nullptr, &setup, &child) != FALSE;
    };
    // Under Wine a start fails now and then, and goes well a moment later.
    bool isStarted = begin();
    for (int more = 0; more < 3 && !isStarted; ++more) {
        Sleep(200);
        isStarted = begin();
    }
    if (!isStarted) throw std::runtime_error(program + " cannot be started: error " + std::to_string(GetLastError()));
    CloseHandle(child.hThread);
    return Handle(child.hProcess);
}

}  // namespace

Ended runProgram(const std::string& program, const std::vector<std::string>& words, const Environment& environment)
{
    const Handle out = outputFile();
    const Handle err = outputFile();
    const Handle child = start(program, words, environment, out.get(), err.get());
    WaitForSingleObject(child.get(), INFINITE);

    DWORD status = 0;
    GetExitCodeProcess(child.get(), &status);
    return {static_cast<int>(status), contentOf(out.get()), contentOf(err.get())};
}

namespace {

struct FreeLocal {
    void operator()(void* memory) const { LocalFree(memory); }
};
template <typename T>
using Local = std::unique_ptr<T, FreeLocal>;

std::wstring userIdentifier()
{
    HANDLE raw = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &raw)) throw std::runtime_error("no token");
    const Handle token(raw);
    alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> buffer;
    DWORD size = buffer.size();
    wchar_t* text = nullptr;
    if (!GetTokenInformation(token.get(), TokenUser, buffer.data(), size, &size) ||
        !ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(buffer.data())->User.Sid, &text)) {
        throw std::runtime_error("no identity");
    }
    return Local<wchar_t>(text).get();
}

Local<void> descriptorFrom(const std::wstring& definition)
{
    PSECURITY_DESCRIPTOR raw = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(definition.c_str(), SDDL_REVISION_1, &raw, nullptr)) {
        throw std::runtime_error("no descriptor");
    }
    return Local<void>(raw);
}

}  // namespace

void writeFile(const std::string& path, const std::string& text, bool privately)
{
    const std::wstring owner = L"(A;;FA;;;" + userIdentifier() + L")";
    const Local<void> descriptor = descriptorFrom(L"D:P" + owner + (privately ? L"" : L"(A;;FR;;;WD)"));
    SECURITY_ATTRIBUTES security{sizeof security, descriptor.get(), FALSE};
    const std::wstring name = FromUtf8(path);
    DeleteFileW(name.c_str());
    const HANDLE raw = CreateFileW(name.c_str(), GENERIC_WRITE, 0, &security, CREATE_NEW, 0, nullptr);
    if (raw == INVALID_HANDLE_VALUE) throw std::runtime_error(path + " cannot be written");
    const Handle file(raw);
    DWORD written = 0;
    WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

bool isPrivate(const std::string& path)
{
    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR raw = nullptr;
    if (GetNamedSecurityInfoW(FromUtf8(path).data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                              nullptr, &raw) != ERROR_SUCCESS) {
        return false;
    }
    const Local<void> descriptor(raw);
    wchar_t* definition = nullptr;
    if (!ConvertSecurityDescriptorToStringSecurityDescriptorW(raw, SDDL_REVISION_1, DACL_SECURITY_INFORMATION,
                                                              &definition, nullptr)) {
        return false;
    }
    const std::wstring text = Local<wchar_t>(definition).get();
    return list != nullptr && text.find(userIdentifier()) != std::wstring::npos && text.find(L";WD)") == text.npos;
}
