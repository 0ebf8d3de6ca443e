#include "service/store/PrivateFile.h"

#include <windows.h>

#include <aclapi.h>

#include <array>
#include <cstddef>
#include <stdexcept>

#include "service/win32/Error.h"
#include "service/win32/Text.h"

namespace service::store {

namespace {

using win32::fail;
using win32::Local;

struct CloseAny {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

// The user that this process runs for.
struct User {
    User()
    {
        HANDLE raw = nullptr;
        if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &raw)) fail("the user is not known");
        const std::unique_ptr<HANDLE, CloseAny> token(raw);
        DWORD size = sizeof buffer;
        if (!GetTokenInformation(raw, TokenUser, buffer.data(), size, &size)) fail("the user is not known");
    }
    PSID sid() { return reinterpret_cast<TOKEN_USER*>(buffer.data())->User.Sid; }

    alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> buffer{};
};

// Full access for the user, none for others, and nothing of what the folder above gives.
void keepFromOthers(std::wstring path)
{
    User user;
    EXPLICIT_ACCESSW all{};
    all.grfAccessPermissions = FILE_ALL_ACCESS;
    all.grfAccessMode = SET_ACCESS;
    all.grfInheritance = NO_INHERITANCE;
    all.Trustee.TrusteeForm = TRUSTEE_IS_SID;
    all.Trustee.ptstrName = static_cast<LPWSTR>(user.sid());
    ACL* raw = nullptr;
    DWORD error = SetEntriesInAclW(1, &all, nullptr, &raw);
    const Local<ACL> list(raw);
    if (error == ERROR_SUCCESS) {
        error = SetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT,
                                      DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                      raw, nullptr);
    }
    if (error != ERROR_SUCCESS) fail("others cannot be kept from it", error);
}

}  // namespace

void openPrivately(const std::string& path, const std::function<void()>& open)
{
    // Nothing that is secret is in a file that was just made. The log is there as long as the file is open.
    open();
    const std::wstring file = win32::toWide(path);
    for (const wchar_t* const end : {L"", L"-wal", L"-shm"}) {
        if (GetFileAttributesW((file + end).c_str()) != INVALID_FILE_ATTRIBUTES) keepFromOthers(file + end);
    }
}

}  // namespace service::store
