#include "pvutil/posix/CurlLine.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <functional>
#include <mutex>
#include <numeric>
#include <thread>

#include "pvutil/posix/CurlRun.h"
#include "pvutil/posix/Descriptor.h"

namespace kzn::pvutil {

namespace {

// Idle lines. A thread begins its search at a slot of its own, so that one that works alone finds the line again that
// it gave back.
constinit std::array<std::atomic<CurlLine*>, 16> g_idle{};
constinit std::once_flag g_initialised;

std::size_t firstSlot() noexcept
{
    return std::hash<std::thread::id>{}(std::this_thread::get_id()) % g_idle.size();
}

// The states of a connection, as the system numbers them.
constexpr int kReset = 7;
constexpr int kEndedByPeer = 8;

tcp_info infoOf(curl_socket_t socket) noexcept
{
    tcp_info info{};
    socklen_t size = sizeof info;
    ::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size);
    return info;
}

// How many bytes a connection has brought since it stands. The sign of its end counts as one to the system.
std::uint64_t receivedBy(const tcp_info& info) noexcept
{
    const bool hasEnd = info.tcpi_state == kEndedByPeer && info.tcpi_bytes_received > 0;
    return info.tcpi_bytes_received - (hasEnd ? 1 : 0);
}

// What came since then; nothing where the system does not say.
std::uint64_t receivedSince(std::uint64_t before, const tcp_info& info) noexcept
{
    return std::max(receivedBy(info), before) - before;
}

// How many of them nobody has read yet.
std::uint64_t unreadOn(curl_socket_t socket) noexcept
{
    int bytes = 0;
    return ::ioctl(socket, FIONREAD, &bytes) == 0 ? static_cast<std::uint64_t>(bytes) : 0;
}

// More connections than one line ever keeps open at once.
constexpr std::size_t kMostOpen = 64;

}  // namespace

CurlLine::CurlLine() noexcept
{
    try {
        open_.reserve(kMostOpen);  // a socket that comes later is noted without asking for memory
    } catch (...) {
        return;
    }
    multi_ = curl_multi_init();
    easy_ = multi_ == nullptr ? nullptr : curl_easy_init();
    if (easy_ != nullptr) configure();
}

CurlLine::~CurlLine()
{
    curl_easy_cleanup(easy_);
    curl_multi_cleanup(multi_);
}

// What is the same for every exchange.
void CurlLine::configure() noexcept
{
    curl_easy_setopt(easy_, CURLOPT_OPENSOCKETFUNCTION, onOpen);
    curl_easy_setopt(easy_, CURLOPT_OPENSOCKETDATA, this);
    curl_easy_setopt(easy_, CURLOPT_CLOSESOCKETFUNCTION, onClose);
    curl_easy_setopt(easy_, CURLOPT_CLOSESOCKETDATA, this);
    curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy_, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(easy_, CURLOPT_TCP_NODELAY, 1L);
    curl_easy_setopt(easy_, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy_, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy_, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    curl_easy_setopt(easy_, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy_, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy_, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    // A look-up that nobody waits for any more is left to its thread; libcurl would wait for its end.
    curl_easy_setopt(easy_, CURLOPT_QUICK_EXIT, 1L);
}

curl_socket_t CurlLine::onOpen(void* line, curlsocktype, curl_sockaddr* address) noexcept
{
    auto& self = *static_cast<CurlLine*>(line);
    if (self.open_.size() == kMostOpen) return CURL_SOCKET_BAD;
    if (self.run_ != nullptr && !self.run_->mayConnect()) return CURL_SOCKET_BAD;
    const int type = address->socktype | SOCK_CLOEXEC;
    const int socket = aboveStandard(Descriptor(::socket(address->family, type, address->protocol))).release();
    if (self.run_ != nullptr) self.run_->connecting(socket, address->addr, address->addrlen, socket < 0 ? errno : 0);
    if (socket < 0) return CURL_SOCKET_BAD;
    self.open_.push_back({socket, 0});
    return socket;
}

int CurlLine::onClose(void* line, curl_socket_t socket) noexcept
{
    auto& self = *static_cast<CurlLine*>(line);
    const auto found = std::find_if(self.open_.begin(), self.open_.end(),
                                    [socket](const Open& each) { return each.socket == socket; });
    if (found != self.open_.end()) {
        const tcp_info info = infoOf(socket);
        if (self.run_ != nullptr)
            self.run_->closing(receivedSince(found->receivedBefore, info), info.tcpi_state == kReset);
        self.open_.erase(found);
    }
    return ::close(socket);
}

void CurlLine::serve(CurlRun* run) noexcept
{
    run_ = run;
    if (run_ == nullptr) return;
    for (Open& each : open_) each.receivedBefore = receivedBy(infoOf(each.socket));
}

std::uint64_t CurlLine::taken() const noexcept
{
    return std::accumulate(open_.begin(), open_.end(), std::uint64_t{0}, [](std::uint64_t sum, const Open& each) {
        const std::uint64_t received = receivedSince(each.receivedBefore, infoOf(each.socket));
        return sum + received - std::min(received, unreadOn(each.socket));
    });
}

bool CurlLine::isClean() const noexcept
{
    return std::none_of(open_.begin(), open_.end(), [](const Open& each) {
        pollfd entry{each.socket, POLLIN, 0};
        return ::poll(&entry, 1, 0) != 0;
    });
}

std::unique_ptr<CurlLine> takeLine()
{
    const std::size_t first = firstSlot();
    for (std::size_t step = 0; step < g_idle.size(); ++step) {
        std::unique_ptr<CurlLine> idle{g_idle[(first + step) % g_idle.size()].exchange(nullptr)};
        if (idle && idle->isClean()) return idle;
    }
    std::call_once(g_initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    auto line = std::make_unique<CurlLine>();
    return *line ? std::move(line) : nullptr;
}

void giveBack(std::unique_ptr<CurlLine> line) noexcept
{
    const std::size_t first = firstSlot();
    for (std::size_t step = 0; step < g_idle.size() && line; ++step)
        line.reset(g_idle[(first + step) % g_idle.size()].exchange(line.release()));
}

void dropLines() noexcept
{
    for (auto& slot : g_idle) std::unique_ptr<CurlLine>(slot.exchange(nullptr)).reset();
}

}  // namespace kzn::pvutil
