// One exchange as libcurl's callbacks see it: what goes out, what comes in, and how far it has come.
#pragma once

#include <sys/socket.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "pvutil/HttpExchange.h"
#include "pvutil/posix/CurlApi.h"

namespace kzn::pvutil {

class CurlRun {
public:
    CurlRun(CURL* easy, HttpExchange& exchange) : easy_(easy), exchange_(exchange) {}

    // ---- What libcurl tells ----

    /// Where a kept connection ends without an answer, libcurl asks again by itself: false then. It would read the
    /// address anew and drop an empty query; what may be repeated is asked again from the beginning.
    bool mayConnect() noexcept;
    /// `error` is the system's where there is no socket to connect with.
    void connecting(curl_socket_t socket, const sockaddr& address, socklen_t size, int error) noexcept;
    /// The connection stands, and the request is about to go out; false where it must not.
    bool connected() noexcept;
    /// `received`: how many bytes have come on the connection since the exchange began.
    void closing(std::uint64_t received, bool wasReset) noexcept;

    std::size_t read(char* buffer, std::size_t size) noexcept;
    /// The request is made once more.
    void restart() noexcept;
    bool header(std::string_view line) noexcept;
    bool receive(std::string_view bytes) noexcept;
    bool progress(curl_off_t down, curl_off_t up) noexcept;

    // ---- What the transport asks ----

    /// False where the call was stopped or nothing has moved for too long; the cause is kept then.
    bool mayGoOn() noexcept;
    /// Whether so little beside heads and body is within `taken` bytes from what is open.
    bool isFraming(std::uint64_t taken) const noexcept;
    /// The same; where it is too much, that is kept as the cause.
    bool mayFrame(std::uint64_t taken) noexcept;
    /// How long libcurl may wait before it is asked again.
    std::chrono::milliseconds patience() const noexcept;
    /// Whether the request can be made once more: it was not written whole, and nothing was heard.
    bool mayRepeat() const noexcept { return !isWritten_ && !hasHeard_; }
    /// Whether libcurl was about to do that.
    bool wasAskedAgain() const noexcept { return wasAskedAgain_; }

    HttpPhase phase() const noexcept;
    int socketError() const noexcept { return socketError_; }
    bool hasHeard() const noexcept { return hasHeard_; }
    bool headStands() const noexcept { return headStands_; }
    /// The reply's head is handed over; where it has no body nothing else does that.
    bool finish() noexcept { return hasBegun_ || begin(); }

    /// "host:port" or "address:port" that was tried last, in the place of the server itself where that is a proxy.
    std::string lastAddress() const;
    int lastPort() const noexcept;

private:
    using Clock = std::chrono::steady_clock;

    bool begin() noexcept;
    bool startsHead(std::string_view line) noexcept;
    bool hasPeer() const noexcept;
    void moved() noexcept { lastMove_ = Clock::now(); }

    CURL* easy_;
    HttpExchange& exchange_;
    std::size_t piece_ = 0;
    std::size_t offset_ = 0;
    curl_off_t down_ = 0;
    curl_off_t up_ = 0;
    sockaddr_storage address_{};
    curl_socket_t socket_ = CURL_SOCKET_BAD;  // the one that is being connected
    int socketError_ = 0;
    std::size_t headBytes_ = 0;
    std::size_t headLines_ = 0;
    std::size_t interim_ = 0;
    std::optional<std::uint64_t> length_;  // that the head declares
    std::uint64_t closedBytes_ = 0;        // that came on connections which are no more
    bool hasAddress_ = false;
    bool isSecuring_ = false;
    bool isConnected_ = false;
    bool isWritten_ = false;
    bool wasReset_ = false;
    bool wasAskedAgain_ = false;
    bool hasHeard_ = false;
    bool headStands_ = false;
    bool hasBegun_ = false;
    Clock::time_point lastMove_ = Clock::now();
};

}  // namespace kzn::pvutil
