#include <winsock2.h>
// The order counts: Winsock's own header has to come before the system's.
#include <ws2tcpip.h>

#include "pvutil/StringEx.h"
#include "pvutil/win32/HttpCause.h"
#include "pvutil/win32/HttpErrors.h"
#include "pvutil/win32/HttpProxy.h"

namespace kzn::pvutil {

namespace {

using Clock = CallControl::Clock;

// What the system knows of no way to is known at once.
constexpr std::chrono::milliseconds kSecondOpinion{250};

class Winsock {
public:
    Winsock() noexcept
    {
        WSADATA data;
        isThere_ = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    Winsock(const Winsock&) = delete;
    Winsock& operator=(const Winsock&) = delete;
    ~Winsock()
    {
        if (isThere_) WSACleanup();
    }
    explicit operator bool() const noexcept { return isThere_; }

private:
    bool isThere_ = false;
};

struct CloseEvent {
    using pointer = HANDLE;
    void operator()(HANDLE event) const noexcept { WSACloseEvent(event); }
};
struct FreeAddress {
    void operator()(ADDRINFOW* address) const noexcept { FreeAddrInfoW(address); }
};

// A socket has another word for none than a pointer has.
class Socket {
public:
    explicit Socket(int family) noexcept : socket_(::socket(family, SOCK_STREAM, IPPROTO_TCP)) {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket()
    {
        if (socket_ != INVALID_SOCKET) closesocket(socket_);
    }
    SOCKET get() const noexcept { return socket_; }

private:
    SOCKET socket_;
};

using Event = std::unique_ptr<HANDLE, CloseEvent>;
using Address = std::unique_ptr<ADDRINFOW, FreeAddress>;

// Until the connect has its result, the call is stopped, or it takes too long for this.
void awaitConnect(HANDLE connected, HttpExchange& exchange, const HttpSignal& signal) noexcept
{
    const std::array<HANDLE, 2> either = {connected, signal.event()};
    const auto over = Clock::now() + kSecondOpinion;
    while (exchange.mayGoOn(HttpPhase::connect) && Clock::now() < over) {
        const DWORD time = HttpSignal::timeUntil(over, exchange.control);
        if (WaitForMultipleObjects(2, either.data(), FALSE, time) == WAIT_OBJECT_0) return;
    }
}

// Connects once more, to nobody's harm: nothing was sent, and nothing is sent now. 0 where that tells nothing.
DWORD connectErrorOf(HttpExchange& exchange, const std::array<wchar_t, 64>& numeric, const HttpSignal& signal)
{
    const Winsock winsock;
    ADDRINFOW hints{};
    hints.ai_flags = AI_NUMERICHOST;
    hints.ai_socktype = SOCK_STREAM;
    ADDRINFOW* found = nullptr;
    const std::wstring port = std::to_wstring(exchange.url.port);
    if (!winsock || GetAddrInfoW(numeric.data(), port.c_str(), &hints, &found) != 0) return 0;
    const Address address(found);
    const Socket socket(address->ai_family);
    const Event connected(WSACreateEvent());
    // What is watched does not block.
    if (!connected || WSAEventSelect(socket.get(), connected.get(), FD_CONNECT) != 0) return 0;
    if (::connect(socket.get(), address->ai_addr, static_cast<int>(address->ai_addrlen)) == 0) return 0;
    if (const int error = WSAGetLastError(); error != WSAEWOULDBLOCK) return static_cast<DWORD>(error);
    awaitConnect(connected.get(), exchange, signal);
    WSANETWORKEVENTS events{};
    if (WSAEnumNetworkEvents(socket.get(), connected.get(), &events) != 0) return 0;
    return (events.lNetworkEvents & FD_CONNECT) == 0 ? 0 : static_cast<DWORD>(events.iErrorCode[FD_CONNECT_BIT]);
}

// WinHTTP has one error for every connection that does not come about.
DWORD exactErrorOf(HttpExchange& exchange, const HttpReport& report, const HttpSignal& signal)
{
    if (report.secureFlags != 0) return secureErrorOf(report.secureFlags);
    if (report.error != ERROR_WINHTTP_CANNOT_CONNECT) return report.error;
    const DWORD exact = connectErrorOf(exchange, report.address, signal);
    const HttpFault fault = faultOf(exact);
    return fault == HttpFault::refused || fault == HttpFault::unreachable ? exact : report.error;
}

// What the moment adds to the error.
HttpFault faultThen(HttpFault fault, const HttpReport& report) noexcept
{
    const bool isSecuring = report.phase == HttpPhase::secure;
    const HttpFault whereHeard = report.hasHeard ? fault : HttpFault::closed;
    switch (fault) {
    case HttpFault::none: return isSecuring ? HttpFault::tlsFailed : HttpFault::local;
    case HttpFault::silence: return report.phase < HttpPhase::send ? HttpFault::connectTimeout : fault;
    case HttpFault::cutOff: return isSecuring ? HttpFault::tlsFailed : whereHeard;
    case HttpFault::notHttp: return whereHeard;
    default: return fault;
    }
}

// Not every version of the system's HTTP reports each step.
HttpPhase phaseThen(HttpFault fault, HttpPhase reported) noexcept
{
    switch (fault) {
    case HttpFault::noSuchHost: return HttpPhase::lookUp;
    case HttpFault::tlsUntrusted:
    case HttpFault::tlsWrongName:
    case HttpFault::tlsExpired:
    case HttpFault::tlsFailed: return HttpPhase::secure;
    case HttpFault::cutOff:
    case HttpFault::notHttp:
    case HttpFault::tooLarge: return HttpPhase::receive;
    default: return reported;
    }
}

bool isAboutTheWayThere(HttpFault fault) noexcept
{
    return fault == HttpFault::noSuchHost || fault == HttpFault::refused || fault == HttpFault::unreachable ||
           fault == HttpFault::connectTimeout || fault == HttpFault::proxy;
}

// What answers in HTTP, or ends, before there is TLS is a proxy that was asked for a tunnel.
bool isInsteadOfATunnel(const HttpExchange& exchange, const HttpReport& report) noexcept
{
    if (!exchange.url.secure || report.phase >= HttpPhase::send) return false;
    const HttpFault fault = faultOf(report.error);
    return fault == HttpFault::notHttp || (fault == HttpFault::cutOff && report.phase < HttpPhase::secure);
}

}  // namespace

bool failBy(HttpExchange& exchange, const HttpReport& report, const HttpSignal& signal)
{
    const HttpFault rough = faultThen(faultOf(report.error), report);
    // Whoever goes through a proxy connects to nobody else.
    const bool mayBeProxys = isAboutTheWayThere(rough) || isInsteadOfATunnel(exchange, report);
    if (const std::string proxy = mayBeProxys ? proxyFor(exchange.url) : std::string(); !proxy.empty())
        return exchange.fail(HttpFault::proxy, HttpPhase::connect, wordsOf(report.error), proxy);
    const DWORD error = exactErrorOf(exchange, report, signal);
    const HttpFault fault = faultThen(faultOf(error), report);
    return exchange.fail(fault, phaseThen(fault, report.phase), wordsOf(error));
}

}  // namespace kzn::pvutil
