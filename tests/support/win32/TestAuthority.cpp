#include "tests/support/TestAuthority.h"

#include <windows.h>

#include <wincrypt.h>

#include <fstream>
#include <iterator>
#include <vector>

namespace kzn::test {

namespace {

std::vector<BYTE> certificateIn(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::vector<BYTE> bytes(text.size());
    auto size = static_cast<DWORD>(bytes.size());
    const BOOL read = CryptStringToBinaryA(text.data(), static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64HEADER,
                                           bytes.data(), &size, nullptr, nullptr);
    bytes.resize(read ? size : 0);
    return bytes;
}

}  // namespace

// The machine's own store, in the Wine prefix of the build; the user's would ask on a desktop.
TestAuthority::TestAuthority(const std::string& file)
{
    const std::vector<BYTE> bytes = certificateIn(file);
    const HCERTSTORE store = CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_LOCAL_MACHINE, L"Root");
    if (store == nullptr) return;
    PCCERT_CONTEXT added = nullptr;
    isTrusted_ =
        CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, bytes.data(), static_cast<DWORD>(bytes.size()),
                                         CERT_STORE_ADD_REPLACE_EXISTING, &added) != FALSE;
    kept_ = added;
    isTrusted_ = isTrusted_ && CertControlStore(store, 0, CERT_STORE_CTRL_COMMIT, nullptr);  // for others to see it
    CertCloseStore(store, 0);
}

TestAuthority::~TestAuthority()
{
    if (kept_ != nullptr) CertDeleteCertificateFromStore(static_cast<PCCERT_CONTEXT>(kept_));
}

}  // namespace kzn::test
