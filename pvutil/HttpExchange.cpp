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

bool HttpExchange::fail(HttpFault fault, HttpPhase phase, std::string_view words) noexcept
try {
    return fail(fault, phase, words, url.hostAndPort());
} catch (...) {
    return fail(fault, phase, {}, {});
}

bool HttpExchange::fail(HttpFault fault, HttpPhase phase, std::string_view words, std::string_view peer) noexcept
{
    if (failure.fault != HttpFault::none) return false;
    failure.fault = fault;
    failure.phase = phase;
    try {
        failure.words = words;
        failure.peer = peer;
    } catch (...) {  // no memory for the words: the kind has to say it
    }
    return false;
}

bool HttpExchange::mayGoOn(HttpPhase phase) noexcept
{
    const HttpFault fault = control == nullptr ? HttpFault::none : control->stopped();
    return fault == HttpFault::none || fail(fault, phase);
}

std::size_t HttpExchange::bodyBytes() const noexcept
{
    return std::accumulate(body.begin(), body.end(), std::size_t{0},
                           [](std::size_t sum, std::string_view piece) { return sum + piece.size(); });
}

bool HttpExchange::sent(std::size_t bytes) noexcept
{
    if (bytes <= sent_) return true;
    sent_ = bytes;
    return report(onSent, bytes, bodyBytes()) || fail(HttpFault::cancelled, HttpPhase::send);
}

bool HttpExchange::begin(int replyStatus, std::optional<std::uint64_t> length) noexcept
try {
    status = replyStatus;
    if (length > limits.replyBytes) return fail(HttpFault::tooLarge, HttpPhase::receive);
    expected_ = static_cast<std::size_t>(length.value_or(0));
    reply.clear();
    reply.reserve(std::min(expected_, kReserveAtMost));
    return true;
} catch (...) {
    return fail(HttpFault::local, HttpPhase::receive);
}

bool HttpExchange::receive(std::string_view bytes) noexcept
try {
    if (bytes.size() > limits.replyBytes - reply.size()) return fail(HttpFault::tooLarge, HttpPhase::receive);
    // Once it has come this far the claim is believed: growing step by step would take half as much again.
    if (bytes.size() > reply.capacity() - reply.size() && expected_ > reply.capacity()) reply.reserve(expected_);
    reply += bytes;
    if (status / 100 != 2 || report(onReceived, reply.size(), expected_)) return true;
    return fail(HttpFault::cancelled, HttpPhase::receive);
} catch (...) {
    return fail(HttpFault::local, HttpPhase::receive);
}

}  // namespace kzn::pvutil
