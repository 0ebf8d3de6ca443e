#include "pvutil/HttpExchange.h"

#include <algorithm>
#include <numeric>

namespace kzn::pvutil {

namespace {

// A length that a reply only claims is not worth more memory than this before its bytes are there.
constexpr std::size_t kReserveAtMost = std::size_t{1} << 20;

bool report(const CZelHttpClient::Progress* progress, std::size_t done, std::size_t whole) noexcept
try {
    return progress == nullptr || !*progress || (*progress)(done, whole);
} catch (...) {
    return false;
}

}  // namespace

std::size_t HttpExchange::bodyBytes() const noexcept
{
    return std::accumulate(body.begin(), body.end(), std::size_t{0},
                           [](std::size_t sum, std::string_view piece) { return sum + piece.size(); });
}

bool HttpExchange::sent(std::size_t bytes) noexcept
{
    if (bytes <= sent_) return true;
    sent_ = bytes;
    return report(onSent, bytes, bodyBytes());
}

bool HttpExchange::begin(int replyStatus, std::optional<std::uint64_t> length) noexcept
try {
    status = replyStatus;
    if (length > limits.replyBytes) return false;
    expected_ = static_cast<std::size_t>(length.value_or(0));
    reply.clear();
    reply.reserve(std::min(expected_, kReserveAtMost));
    return true;
} catch (...) {
    return false;
}

bool HttpExchange::receive(std::string_view bytes) noexcept
try {
    if (bytes.size() > limits.replyBytes - reply.size()) return false;
    // Once it has come this far the claim is believed: growing step by step would take half as much again.
    if (bytes.size() > reply.capacity() - reply.size() && expected_ > reply.capacity()) reply.reserve(expected_);
    reply += bytes;
    return status / 100 != 2 || report(onReceived, reply.size(), expected_);
} catch (...) {
    return false;
}

}  // namespace kzn::pvutil
