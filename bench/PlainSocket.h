// The least that an exchange takes: a connection that is kept, a request as one text, and a reply read into a string.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kzn::bench {

class PlainSocket {
public:
    /// Connects to the server of `url`, "http://address:port/...".
    explicit PlainSocket(const std::string& url);
    PlainSocket(const PlainSocket&) = delete;
    PlainSocket& operator=(const PlainSocket&) = delete;
    ~PlainSocket();

    /// The reply's body; empty where there is none.
    std::string_view post(std::string_view form);

    /// The last one.
    std::string_view reply() const noexcept { return std::string_view(bytes_).substr(head_); }

private:
    bool receiveMore();

    struct Kept;

    std::unique_ptr<Kept> kept_;
    std::string begin_;  // of every request
    std::string bytes_;
    std::size_t head_ = 0;
};

}  // namespace kzn::bench
