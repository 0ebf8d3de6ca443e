// A kept libcurl handle with the connections that it keeps open, and the few of them that wait for the next exchange.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "pvutil/posix/CurlAim.h"
#include "pvutil/posix/CurlApi.h"

namespace kzn::pvutil {

class CurlRun;

/// One easy handle in a multi handle of its own. A handle a call costs more than the call itself.
class CurlLine {
public:
    CurlLine() noexcept;
    CurlLine(const CurlLine&) = delete;
    CurlLine& operator=(const CurlLine&) = delete;
    ~CurlLine();

    /// False where there was no memory for the handles.
    explicit operator bool() const noexcept { return easy_ != nullptr && multi_ != nullptr; }

    CURL* easy() const noexcept { return easy_; }
    CURLM* multi() const noexcept { return multi_; }

    /// Where its exchanges go.
    CurlAim& aim() noexcept { return aim_; }

    /// Whose exchange it is from now on; null for nobody's.
    void serve(CurlRun* run) noexcept;
    CurlRun* run() const noexcept { return run_; }

    /// How many bytes have come on what is open since the exchange began.
    std::uint64_t received() noexcept;
    /// How many of them libcurl has not taken.
    std::uint64_t unread() const noexcept;

    /// Whether nothing waits on a kept connection and none has ended. What waits there would become the next reply.
    bool isClean() const noexcept;

    /// False for what a forked process has of its parent.
    bool isOfThisProcess() const noexcept { return process_ == ::getpid(); }
    /// Leaves the connections to the parent, without a farewell on them.
    static void abandon(std::unique_ptr<CurlLine> line) noexcept;

private:
    static curl_socket_t onOpen(void* line, curlsocktype, curl_sockaddr* address) noexcept;
    static int onClose(void* line, curl_socket_t socket) noexcept;
    void configure() noexcept;
    void setOptions() noexcept;

    struct Open {
        curl_socket_t socket;
        std::uint64_t receivedBefore = 0;           // when the present exchange began
        std::optional<std::uint64_t> receivedLast;  // as the system told
    };

    std::vector<Open> open_;
    CurlRun* run_ = nullptr;
    CURLM* multi_ = nullptr;
    CURL* easy_ = nullptr;
    CurlAim aim_;
    pid_t process_ = ::getpid();
};

/// A clean line that was kept, or a new one; null where there is none.
std::unique_ptr<CurlLine> takeLine();
void giveBack(std::unique_ptr<CurlLine> line) noexcept;
void dropLines() noexcept;

}  // namespace kzn::pvutil
