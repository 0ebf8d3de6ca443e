// The other end of the calls that are timed: a process of its own that answers every post with the same reply.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kzn::bench {

/// Keeps connections open, sends without delay, and looks at no more of a request than it must to find its end. To be
/// started before the program has threads; ends with its owner.
class LoopbackServer {
public:
    explicit LoopbackServer(std::string_view xmlReply);
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer();

    const std::string& url() const noexcept { return url_; }

    /// How many connections were opened so far.
    std::size_t connections() const noexcept { return *connections_; }

private:
    using Count = std::atomic<std::size_t>;
    struct Unmap {
        void operator()(Count* count) const noexcept;
    };

    std::unique_ptr<Count, Unmap> connections_;  // in memory that both processes see
    std::string url_;
    pid_t process_ = -1;
};

}  // namespace kzn::bench
