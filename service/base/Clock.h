#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <string_view>

namespace service {

// The service's own time, in milliseconds since 1970. It runs like the machine's, ahead of it or behind, so
// that what expires can be seen to expire without waiting.
class Clock {
public:
    Clock() = default;
    Clock(const Clock& other) : offset_(other.offset()) {}
    Clock& operator=(const Clock& other)
    {
        setOffset(other.offset());
        return *this;
    }

    long long now() const;

    // Any thread may ask while another sets it.
    long long offset() const { return offset_; }
    void setOffset(long long ms) { offset_ = ms; }

    // From now on it is this moment, and time goes on from there.
    void set(long long moment);
    void advance(long long ms) { offset_ += ms; }

private:
    std::atomic<long long> offset_ = 0;
};

// How a moment looks in a reply, for example "2026-02-01T09:30:00Z".
std::string timeText(long long ms);

// The moment of such a text; nothing for any other.
std::optional<long long> momentOf(std::string_view text);

}  // namespace service
