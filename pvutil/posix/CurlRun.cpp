#include "pvutil/posix/CurlRun.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>

#include "pvutil/HttpHeaders.h"

namespace kzn::pvutil {

namespace {

// "101" of "HTTP/1.1 101 ..."
std::string_view statusOf(std::string_view line) noexcept
{
    const std::size_t blank = line.find(' ');
    return blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1, 3);
}

}  // namespace

void CurlRun::connecting(curl_socket_t socket, const sockaddr& address, socklen_t size, int error) noexcept
{
    socket_ = socket;
    isSecuring_ = false;
    socketError_ = error;
    hasAddress_ = size <= sizeof address_;
    if (hasAddress_) std::memcpy(&address_, &address, size);
}

bool CurlRun::mayConnect() noexcept
{
    if (!isConnected_) return true;
    wasAskedAgain_ = true;
    if (mayRepeat()) return false;
    const HttpFault fault = hasHeard_ ? HttpFault::cutOff : HttpFault::closed;
    return exchange_.fail(fault, phase(), wasReset_ ? std::strerror(ECONNRESET) : "");
}

bool CurlRun::connected() noexcept
{
    if (!mayConnect()) return false;
    // The clock of silence runs while a connection stands; before that the time to connect is limited by itself.
    isConnected_ = true;
    moved();
    return true;
}

// All begins anew, with the look-up.
void CurlRun::restart() noexcept
{
    piece_ = offset_ = 0;
    isConnected_ = hasAddress_ = wasReset_ = wasAskedAgain_ = false;
    socketError_ = 0;
}

// Asked here because a second attempt begins its counters anew. A request counts as written, and may have been acted
// on, unless some of it is known to have stayed here.
void CurlRun::closing(std::uint64_t received, bool wasReset) noexcept
{
    closedBytes_ += received;
    if (!isConnected_) {
        isSecuring_ = isSecuring_ || hasPeer();
        socket_ = CURL_SOCKET_BAD;
        return;
    }
    wasReset_ = wasReset;
    // The beginning of a line is no line to libcurl yet. Under TLS bytes come that are none of the reply.
    if (!exchange_.url.secure && received > 0) hasHeard_ = true;
    long request = 0;
    curl_off_t body = 0;
    curl.easyGetinfo(easy_, CURLINFO_REQUEST_SIZE, &request);
    curl.easyGetinfo(easy_, CURLINFO_SIZE_UPLOAD_T, &body);
    up_ = std::max(up_, body);
    isWritten_ = request > 0 && static_cast<std::size_t>(up_) >= exchange_.bodyBytes();
}

std::size_t CurlRun::read(char* buffer, std::size_t size) noexcept
{
    std::size_t done = 0;
    while (done < size && piece_ < exchange_.body.size()) {
        const auto rest = exchange_.body[piece_].substr(offset_);
        const std::size_t count = std::min(rest.size(), size - done);
        std::memcpy(buffer + done, rest.data(), count);
        done += count;
        offset_ += count;
        if (count == rest.size()) {
            ++piece_;
            offset_ = 0;
        }
    }
    return done;
}

// A head that breaks off is no failure to libcurl. Several may come: of interim replies, of a proxy.
bool CurlRun::header(std::string_view line) noexcept
{
    moved();
    hasHeard_ = true;
    headBytes_ += line.size();
    ++headLines_;
    const bool isWithin = headBytes_ <= exchange_.limits.headBytes && headLines_ <= limits::kHeadLines &&
                          line.size() <= limits::kHeadLineBytes;
    if (!isWithin) return exchange_.fail(HttpFault::tooLarge, HttpPhase::receive);
    // libcurl reads a number as far as it goes, and of two lengths the last.
    if (!headStands_ && !readLength(line, length_)) return exchange_.fail(HttpFault::notHttp, HttpPhase::receive);
    if (line == "\r\n" || line == "\n") headStands_ = true;
    return !line.starts_with("HTTP/") || startsHead(line);
}

bool CurlRun::startsHead(std::string_view line) noexcept
{
    headStands_ = false;
    length_.reset();
    const auto status = statusOf(line);
    // It is no reply to a request that asked for no other protocol; libcurl would wait for one behind it.
    if (status == "101") return exchange_.fail(HttpFault::notHttp, HttpPhase::receive);
    if (!status.starts_with('1') || ++interim_ <= limits::kInterimReplies) return true;
    return exchange_.fail(HttpFault::tooLarge, HttpPhase::receive);
}

bool CurlRun::isFraming(std::uint64_t taken) const noexcept
{
    return closedBytes_ + taken <= headBytes_ + exchange_.reply.size() + limits::kFramingBytes;
}

bool CurlRun::mayFrame(std::uint64_t taken) noexcept
{
    return isFraming(taken) || exchange_.fail(HttpFault::tooLarge, HttpPhase::receive);
}

bool CurlRun::receive(std::string_view bytes) noexcept
{
    moved();
    if (!hasBegun_ && !begin()) return false;
    return exchange_.receive(bytes);
}

bool CurlRun::begin() noexcept
{
    long status = 0;
    curl_off_t length = -1;
    curl.easyGetinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
    curl.easyGetinfo(easy_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    hasBegun_ = true;
    const auto declared = static_cast<std::uint64_t>(length);
    return exchange_.begin(static_cast<int>(status), length < 0 ? std::nullopt : std::optional(declared));
}

bool CurlRun::progress(curl_off_t down, curl_off_t up) noexcept
{
    if (down != down_ || up != up_) moved();
    down_ = down;
    up_ = up;
    return exchange_.sent(static_cast<std::size_t>(up));
}

bool CurlRun::mayGoOn() noexcept
{
    if (!isConnected_ && !isSecuring_) isSecuring_ = hasPeer();
    if (!exchange_.mayGoOn(phase())) return false;
    if (!isConnected_ || Clock::now() - lastMove_ < exchange_.limits.silence) return true;
    return exchange_.fail(HttpFault::silence, phase());
}

std::chrono::milliseconds CurlRun::patience() const noexcept
{
    // libcurl keeps the time to connect itself and needs no longer wait than this; a cancellation wakes it.
    auto until = Clock::now() + std::chrono::seconds(1);
    if (isConnected_) until = std::min(until, lastMove_ + exchange_.limits.silence);
    if (exchange_.control != nullptr)
        if (const auto deadline = exchange_.control->deadline()) until = std::min(until, *deadline);
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    return std::max(wait, std::chrono::milliseconds(0));
}

// The other end has taken the connection in; where libcurl does not send yet, it is TLS that it waits for.
bool CurlRun::hasPeer() const noexcept
{
    sockaddr_storage peer{};
    socklen_t size = sizeof peer;
    return exchange_.url.secure && ::getpeername(socket_, reinterpret_cast<sockaddr*>(&peer), &size) == 0;
}

HttpPhase CurlRun::phase() const noexcept
{
    if (hasHeard_) return HttpPhase::receive;
    if (isConnected_) {
        const bool isOut = isWritten_ || static_cast<std::size_t>(up_) >= exchange_.bodyBytes();
        return isOut ? HttpPhase::wait : HttpPhase::send;
    }
    if (!hasAddress_) return HttpPhase::lookUp;
    return isSecuring_ ? HttpPhase::secure : HttpPhase::connect;
}

int CurlRun::lastPort() const noexcept
{
    if (!hasAddress_) return 0;
    if (address_.ss_family == AF_INET6) return ntohs(reinterpret_cast<const sockaddr_in6&>(address_).sin6_port);
    return ntohs(reinterpret_cast<const sockaddr_in&>(address_).sin_port);
}

std::string CurlRun::lastAddress() const
{
    std::array<char, INET6_ADDRSTRLEN + 1> text{};
    const bool isLong = address_.ss_family == AF_INET6;
    const void* bytes = isLong ? static_cast<const void*>(&reinterpret_cast<const sockaddr_in6&>(address_).sin6_addr)
                               : &reinterpret_cast<const sockaddr_in&>(address_).sin_addr;
    if (!hasAddress_ || ::inet_ntop(address_.ss_family, bytes, text.data(), text.size()) == nullptr) return {};
    const std::string host = isLong ? "[" + std::string(text.data()) + "]" : std::string(text.data());
    return host + ':' + std::to_string(lastPort());
}

}  // namespace kzn::pvutil
