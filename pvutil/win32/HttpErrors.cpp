#include "pvutil/win32/HttpErrors.h"

#include <winsock2.h>
// The order counts: Winsock's own header has to come before the system's.
#include <windows.h>
#include <winhttp.h>

#include <algorithm>
#include <array>

#include "pvutil/StringEx.h"

namespace kzn::pvutil {

namespace {

struct Meaning {
    DWORD error;
    HttpFault fault;
};

// Some versions of WinHTTP hand Winsock's errors on as they are.
constexpr std::array kMeanings = {
    Meaning{ERROR_WINHTTP_INVALID_URL, HttpFault::badAddress},
    Meaning{ERROR_WINHTTP_UNRECOGNIZED_SCHEME, HttpFault::badAddress},
    Meaning{ERROR_WINHTTP_NAME_NOT_RESOLVED, HttpFault::noSuchHost},
    Meaning{WSAHOST_NOT_FOUND, HttpFault::noSuchHost},
    Meaning{WSATRY_AGAIN, HttpFault::noSuchHost},
    Meaning{WSANO_RECOVERY, HttpFault::noSuchHost},
    Meaning{WSANO_DATA, HttpFault::noSuchHost},
    Meaning{ERROR_WINHTTP_CANNOT_CONNECT, HttpFault::refused},
    Meaning{WSAECONNREFUSED, HttpFault::refused},
    Meaning{WSAEACCES, HttpFault::unreachable},
    Meaning{WSAEADDRNOTAVAIL, HttpFault::unreachable},
    Meaning{WSAEAFNOSUPPORT, HttpFault::unreachable},
    Meaning{WSAENETDOWN, HttpFault::unreachable},
    Meaning{WSAENETUNREACH, HttpFault::unreachable},
    Meaning{WSAEHOSTDOWN, HttpFault::unreachable},
    Meaning{WSAEHOSTUNREACH, HttpFault::unreachable},
    Meaning{ERROR_WINHTTP_SECURE_FAILURE_PROXY, HttpFault::proxy},
    Meaning{ERROR_WINHTTP_CLIENT_AUTH_CERT_NEEDED_PROXY, HttpFault::proxy},
    Meaning{ERROR_WINHTTP_SECURE_INVALID_CA, HttpFault::tlsUntrusted},
    Meaning{ERROR_WINHTTP_SECURE_INVALID_CERT, HttpFault::tlsUntrusted},
    Meaning{ERROR_WINHTTP_SECURE_CERT_REVOKED, HttpFault::tlsUntrusted},
    Meaning{ERROR_WINHTTP_SECURE_CERT_REV_FAILED, HttpFault::tlsUntrusted},
    Meaning{ERROR_WINHTTP_SECURE_CERT_WRONG_USAGE, HttpFault::tlsUntrusted},
    Meaning{ERROR_WINHTTP_SECURE_CERT_CN_INVALID, HttpFault::tlsWrongName},
    Meaning{ERROR_WINHTTP_SECURE_CERT_DATE_INVALID, HttpFault::tlsExpired},
    Meaning{ERROR_WINHTTP_SECURE_CHANNEL_ERROR, HttpFault::tlsFailed},
    Meaning{ERROR_WINHTTP_SECURE_FAILURE, HttpFault::tlsFailed},
    Meaning{ERROR_WINHTTP_CLIENT_AUTH_CERT_NEEDED, HttpFault::tlsFailed},
    Meaning{ERROR_WINHTTP_CONNECTION_ERROR, HttpFault::cutOff},
    // Some versions end so where a line of the reply never ends.
    Meaning{ERROR_INSUFFICIENT_BUFFER, HttpFault::cutOff},
    // Asks the caller to send once more. Nobody knows by then what became of the request.
    Meaning{ERROR_WINHTTP_RESEND_REQUEST, HttpFault::cutOff},
    Meaning{WSAENETRESET, HttpFault::cutOff},
    Meaning{WSAECONNABORTED, HttpFault::cutOff},
    Meaning{WSAECONNRESET, HttpFault::cutOff},
    Meaning{WSAENOTCONN, HttpFault::cutOff},
    Meaning{WSAESHUTDOWN, HttpFault::cutOff},
    Meaning{WSAEDISCON, HttpFault::cutOff},
    Meaning{ERROR_WINHTTP_INVALID_SERVER_RESPONSE, HttpFault::notHttp},
    Meaning{ERROR_WINHTTP_INVALID_HEADER, HttpFault::notHttp},
    Meaning{ERROR_WINHTTP_HTTP_PROTOCOL_MISMATCH, HttpFault::notHttp},
    Meaning{ERROR_WINHTTP_CHUNKED_ENCODING_HEADER_SIZE_OVERFLOW, HttpFault::notHttp},
    Meaning{ERROR_WINHTTP_HEADER_COUNT_EXCEEDED, HttpFault::tooLarge},
    Meaning{ERROR_WINHTTP_HEADER_SIZE_OVERFLOW, HttpFault::tooLarge},
    Meaning{ERROR_WINHTTP_RESPONSE_DRAIN_OVERFLOW, HttpFault::tooLarge},
    Meaning{ERROR_WINHTTP_TIMEOUT, HttpFault::silence},
    Meaning{WSAETIMEDOUT, HttpFault::silence},
    Meaning{ERROR_WINHTTP_OUT_OF_HANDLES, HttpFault::local},
    Meaning{ERROR_NOT_ENOUGH_MEMORY, HttpFault::local},
    Meaning{ERROR_OUTOFMEMORY, HttpFault::local},
    Meaning{WSAENOBUFS, HttpFault::local},
    Meaning{WSAEMFILE, HttpFault::local},
};

struct SecureFlag {
    DWORD flag;
    DWORD error;
};

// The first that is set is told: whom nobody trusts has no name that counts.
constexpr std::array kSecureFlags = {
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_INVALID_CA, ERROR_WINHTTP_SECURE_INVALID_CA},
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_CERT_REVOKED, ERROR_WINHTTP_SECURE_CERT_REVOKED},
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_CERT_WRONG_USAGE, ERROR_WINHTTP_SECURE_CERT_WRONG_USAGE},
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_CERT_CN_INVALID, ERROR_WINHTTP_SECURE_CERT_CN_INVALID},
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_CERT_DATE_INVALID, ERROR_WINHTTP_SECURE_CERT_DATE_INVALID},
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_CERT_REV_FAILED, ERROR_WINHTTP_SECURE_CERT_REV_FAILED},
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_INVALID_CERT, ERROR_WINHTTP_SECURE_INVALID_CERT},
    SecureFlag{WINHTTP_CALLBACK_STATUS_FLAG_SECURITY_CHANNEL_ERROR, ERROR_WINHTTP_SECURE_CHANNEL_ERROR},
};

}  // namespace

HttpFault faultOf(unsigned long error) noexcept
{
    const auto found =
        std::find_if(kMeanings.begin(), kMeanings.end(), [&](const Meaning& each) { return each.error == error; });
    return found == kMeanings.end() ? HttpFault::none : found->fault;
}

unsigned long secureErrorOf(unsigned long flags) noexcept
{
    const auto found = std::find_if(kSecureFlags.begin(), kSecureFlags.end(),
                                    [&](const SecureFlag& each) { return (flags & each.flag) != 0; });
    return found == kSecureFlags.end() ? ERROR_WINHTTP_SECURE_FAILURE : found->error;
}

std::string wordsOf(unsigned long error)
{
    if (error == ERROR_SUCCESS) return {};
    constexpr DWORD kFrom = FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_FROM_SYSTEM;
    constexpr DWORD kHow = FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;  // in one line
    std::array<wchar_t, 512> buffer;
    const DWORD length = FormatMessageW(kFrom | kHow, GetModuleHandleW(L"winhttp.dll"), error, 0, buffer.data(),
                                        static_cast<DWORD>(buffer.size()), nullptr);
    std::string words = stringex::ToUtf8(CStringT(buffer.data(), length));
    words.erase(words.find_last_not_of(" .\r\n") + 1);
    return words;
}

}  // namespace kzn::pvutil
