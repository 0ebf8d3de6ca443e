#include "tests/support/TestSystem.h"

#include <windows.h>

#include <aclapi.h>
#include <psapi.h>
#include <shlobj.h>
#include <tlhelp32.h>
#include <winternl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

const std::string kEndOfLine = "\r\n";
const std::size_t kHandlesKeptOfAModule = 3;

namespace {

constexpr const wchar_t* kTestKey = L"Software\\pvwapi-tests";
constexpr const wchar_t* kFolders = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

/// A folder that cannot be: its drive is none.
constexpr const wchar_t* kNowhere = L"1:\\nowhere";

}  // namespace

std::filesystem::path dataFolder()
{
    std::array<wchar_t, MAX_PATH> folder{};
    if (SHGetSpecialFolderPathW(nullptr, folder.data(), CSIDL_APPDATA, TRUE) == FALSE) return {};
    return folder.data();
}

std::filesystem::path logFile()
{
    return dataFolder() / L"Pravik\\Log\\pvwapi.txt";
}

struct DataFolderSetting::Saved {
    HKEY user = nullptr;
};

// The shell reads its folders below the user's key: another key stands for that one in this process.
DataFolderSetting::DataFolderSetting(const std::optional<std::filesystem::path>& folder)
    : saved_(std::make_unique<Saved>())
{
    const std::wstring path = folder ? folder->wstring() : kNowhere;
    const auto bytes = static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t));
    RegCreateKeyW(HKEY_CURRENT_USER, kTestKey, &saved_->user);
    HKEY folders = nullptr;
    RegCreateKeyW(saved_->user, kFolders, &folders);
    RegSetValueExW(folders, L"AppData", 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()), bytes);
    RegCloseKey(folders);
    RegOverridePredefKey(HKEY_CURRENT_USER, saved_->user);
}

DataFolderSetting::~DataFolderSetting()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(saved_->user);
}

bool isOpenHere(const std::filesystem::path& file)
{
    const HANDLE alone = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (alone == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(alone);
    return false;
}

// The user's own folder is what keeps others out.
namespace {

// Wine adds the system itself to each list, which reads every file anyway.
bool isFor(PSID owner, ACL& list)
{
    for (DWORD at = 0; at < list.AceCount; ++at) {
        void* entry = nullptr;
        if (GetAce(&list, at, &entry) == FALSE) return false;
        PSID const sid = &static_cast<ACCESS_ALLOWED_ACE*>(entry)->SidStart;
        if (EqualSid(sid, owner) == FALSE && IsWellKnownSid(sid, WinLocalSystemSid) == FALSE) return false;
    }
    return true;
}

}  // namespace

// A list of its own with nobody but the owner, or a place in the user's profile, which the system keeps.
bool isOwnersAlone(const std::filesystem::path& file)
{
    if (file.native().starts_with(dataFolder().native())) return true;
    std::wstring name = file.native();
    ACL* list = nullptr;
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | OWNER_SECURITY_INFORMATION,
                              &owner, nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS)
        return false;
    const bool isAlone = list != nullptr && isFor(owner, *list);
    LocalFree(descriptor);
    return isAlone;
}

LoadedLibrary::LoadedLibrary(const std::filesystem::path& path) : handle_(LoadLibraryW(path.c_str())) {}

void LoadedLibrary::unload()
{
    if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
    handle_ = nullptr;
}

LoadedLibrary::Function* LoadedLibrary::function(const char* name) const
{
    return reinterpret_cast<Function*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

void keepSystemHttp()
{
    static const LoadedLibrary kept(L"winhttp.dll");
}

namespace {

std::size_t threadsHere()
{
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    std::size_t count = 0;
    for (BOOL found = Thread32First(all, &thread); found; found = Thread32Next(all, &thread))
        if (thread.th32OwnerProcessID == GetCurrentProcessId()) ++count;
    CloseHandle(all);
    return count;
}

// From the list of the whole system: Wine has no count of a process's own.
std::size_t handlesHere()
{
    std::vector<std::byte> list(std::size_t{1} << 20);
    ULONG needed = 0;
    while (NtQuerySystemInformation(SystemHandleInformation, list.data(), static_cast<ULONG>(list.size()), &needed) < 0)
        list.resize(list.size() * 2);
    const auto* const all = reinterpret_cast<const SYSTEM_HANDLE_INFORMATION*>(list.data());
    const std::span entries(&all->Handle[0], all->Count);
    return static_cast<std::size_t>(std::ranges::count(entries, GetCurrentProcessId(), &SYSTEM_HANDLE_ENTRY::OwnerPid));
}

}  // namespace

SystemUse systemUse()
{
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return {memory.PagefileUsage, handlesHere(), threadsHere()};
}

void setVariable(const std::string& name, const std::string& value)
{
    SetEnvironmentVariableA(name.c_str(), value.empty() ? nullptr : value.c_str());
}

unsigned long currentProcessId()
{
    return GetCurrentProcessId();
}
unsigned long currentThreadId()
{
    return GetCurrentThreadId();
}
