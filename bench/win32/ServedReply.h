// What a program that times calls and the process of its service's end have in common.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace kzn::bench {

/// The head of a piece of memory that both see; the reply's bytes stand behind it.
struct ServedReply {
    std::atomic<std::size_t> connections;
    std::atomic<std::uint32_t> port;  // 0 until somebody listens
    std::size_t size;

    char* bytes() noexcept { return reinterpret_cast<char*>(this + 1); }
};

}  // namespace kzn::bench
