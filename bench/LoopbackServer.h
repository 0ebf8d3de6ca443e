// The other end of the calls that are timed: it answers every post with the same reply.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kzn::bench {

/// A process of its own. To be started before the program has threads; ends with its owner.
class LoopbackServer {
public:
    explicit LoopbackServer(std::string_view xmlReply);
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer();

    const std::string& url() const noexcept { return url_; }

    /// How many connections were opened so far.
    std::size_t connections() const noexcept;

private:
    struct Running;
    std::unique_ptr<Running> running_;
    std::string url_;
};

}  // namespace kzn::bench
