#include "pvutil/posix/CurlLine.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <numeric>

#include "pvutil/IdlePool.h"
#include "pvutil/posix/CurlRun.h"
#include "pvutil/posix/Descriptor.h"

namespace kzn::pvutil {

namespace {

constinit IdlePool<CurlLine> g_idle;

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
    ::ioctl(socket, FIONREAD, &bytes);
    return static_cast<std::uint64_t>(bytes);
}

// More connections than one line ever keeps open at once.
constexpr std::size_t kMostOpen = 64;

// libcurl's callbacks; C on both sides, so nothing may be thrown through them. They come during an exchange only.

CurlRun& runOf(void* line) noexcept
{
    return *static_cast<CurlLine*>(line)->run();
}

int onConnected(void* line, char*, char*, int, int) noexcept
{
    return runOf(line).connected() ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

std::size_t onRead(char* buffer, std::size_t size, std::size_t count, void* line) noexcept
{
    return runOf(line).read(buffer, size * count);
}

// libcurl wants to begin anew. Whether it may is said where it asks for the next connection, which knows the cause too.
int onSeek(void*, curl_off_t, int) noexcept
{
    return CURL_SEEKFUNC_OK;
}

std::size_t onHeader(char* text, std::size_t size, std::size_t count, void* line) noexcept
{
    return runOf(line).header({text, size * count}) ? size * count : 0;
}

std::size_t onReceived(char* bytes, std::size_t size, std::size_t count, void* line) noexcept
{
    return runOf(line).receive({bytes, size * count}) ? size * count : 0;
}

int onProgress(void* line, curl_off_t, curl_off_t down, curl_off_t, curl_off_t up) noexcept
{
    return runOf(line).progress(down, up) ? 0 : 1;
}

}  // namespace

CurlLine::CurlLine() noexcept
{
    try {
        open_.reserve(kMostOpen);  // a socket that comes later is noted without asking for memory
    } catch (...) {
        return;
    }
    multi_ = curl.multiInit();
    easy_ = multi_ == nullptr ? nullptr : curl.easyInit();
    if (easy_ != nullptr) configure();
}

CurlLine::~CurlLine()
{
    curl.easyCleanup(easy_);
    curl.multiCleanup(multi_);
}

// What is the same for every exchange: whom libcurl calls, and how it goes about its work.
void CurlLine::configure() noexcept
{
    curl.easySetopt(easy_, CURLOPT_OPENSOCKETFUNCTION, onOpen);
    curl.easySetopt(easy_, CURLOPT_OPENSOCKETDATA, this);
    curl.easySetopt(easy_, CURLOPT_CLOSESOCKETFUNCTION, onClose);
    curl.easySetopt(easy_, CURLOPT_CLOSESOCKETDATA, this);
    curl.easySetopt(easy_, CURLOPT_PREREQFUNCTION, onConnected);
    curl.easySetopt(easy_, CURLOPT_PREREQDATA, this);
    curl.easySetopt(easy_, CURLOPT_READFUNCTION, onRead);
    curl.easySetopt(easy_, CURLOPT_READDATA, this);
    curl.easySetopt(easy_, CURLOPT_SEEKFUNCTION, onSeek);
    curl.easySetopt(easy_, CURLOPT_HEADERFUNCTION, onHeader);
    curl.easySetopt(easy_, CURLOPT_HEADERDATA, this);
    curl.easySetopt(easy_, CURLOPT_WRITEFUNCTION, onReceived);
    curl.easySetopt(easy_, CURLOPT_WRITEDATA, this);
    curl.easySetopt(easy_, CURLOPT_XFERINFOFUNCTION, onProgress);
    curl.easySetopt(easy_, CURLOPT_XFERINFODATA, this);
    setOptions();
}

void CurlLine::setOptions() noexcept
{
    curl.easySetopt(easy_, CURLOPT_NOSIGNAL, 1L);
    curl.easySetopt(easy_, CURLOPT_BUFFERSIZE, 64L << 10);
    curl.easySetopt(easy_, CURLOPT_NOPROGRESS, 0L);
    curl.easySetopt(easy_, CURLOPT_TCP_NODELAY, 1L);
    curl.easySetopt(easy_, CURLOPT_PROTOCOLS_STR, "http,https");
    curl.easySetopt(easy_, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl.easySetopt(easy_, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    curl.easySetopt(easy_, CURLOPT_PATH_AS_IS, 1L);
    curl.easySetopt(easy_, CURLOPT_FOLLOWLOCATION, 0L);
    // A look-up that nobody waits for any more is left to its thread; libcurl would wait for its end.
    curl.easySetopt(easy_, CURLOPT_QUICK_EXIT, 1L);
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
    self.open_.push_back({socket, 0, std::nullopt});
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

// A clean line has had nothing since it was looked at behind its last exchange.
void CurlLine::serve(CurlRun* run) noexcept
{
    run_ = run;
    if (run_ == nullptr) return;
    for (Open& each : open_) {
        each.receivedBefore = each.receivedLast ? *each.receivedLast : receivedBy(infoOf(each.socket));
        each.receivedLast.reset();
    }
}

std::uint64_t CurlLine::received() noexcept
{
    std::uint64_t sum = 0;
    for (Open& each : open_) {
        each.receivedLast = std::max(receivedBy(infoOf(each.socket)), each.receivedBefore);
        sum += *each.receivedLast - each.receivedBefore;
    }
    return sum;
}

std::uint64_t CurlLine::unread() const noexcept
{
    return std::accumulate(open_.begin(), open_.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const Open& each) { return sum + unreadOn(each.socket); });
}

bool CurlLine::isClean() const noexcept
{
    return std::none_of(open_.begin(), open_.end(), [](const Open& each) {
        pollfd entry{each.socket, POLLIN, 0};
        return ::poll(&entry, 1, 0) != 0;
    });
}

// What libcurl holds for them is left as it stands too: to give it back, it would speak to the other end.
void CurlLine::abandon(std::unique_ptr<CurlLine> line) noexcept
{
    for (const Open& each : line->open_) ::close(each.socket);
    static_cast<void>(line.release());
}

namespace {

// The next that waits and is this process's own.
std::unique_ptr<CurlLine> takeOwn() noexcept
{
    auto idle = g_idle.take();
    for (; idle && !idle->isOfThisProcess(); idle = g_idle.take()) CurlLine::abandon(std::move(idle));
    return idle;
}

}  // namespace

std::unique_ptr<CurlLine> takeLine()
{
    while (auto idle = takeOwn())
        if (idle->isClean()) return idle;
    auto line = std::make_unique<CurlLine>();
    return *line ? std::move(line) : nullptr;
}

void giveBack(std::unique_ptr<CurlLine> line) noexcept
{
    g_idle.giveBack(std::move(line));
}

void dropLines() noexcept
{
    while (takeOwn()) {
    }
}

}  // namespace kzn::pvutil
