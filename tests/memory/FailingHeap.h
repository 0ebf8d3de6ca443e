// The heap of the test program: it fails where a test says so, and knows what was not given back.
//
// All that is linked to the program takes from it: its own code, the library's, and that of every library below, where
// the system lets a program stand before the C library's own. (Under the address sanitizer, which does so itself, it is
// the C++ heap alone.) Other threads always get what they ask for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kzn::test {

enum class Failing { once, fromThenOn };

/// While one of these lives, this thread's allocation number `nth` fails, counted from 1; 0 fails none and counts.
class FailingHeap {
public:
    FailingHeap(std::size_t nth, Failing failing) noexcept;
    FailingHeap(const FailingHeap&) = delete;
    FailingHeap& operator=(const FailingHeap&) = delete;
    ~FailingHeap();

    /// How many allocations this thread has asked for since.
    static std::size_t asked() noexcept;
};

/// While one of these lives, what this thread takes is noted until somebody gives it back.
class NotedHeap {
public:
    NotedHeap() noexcept;
    NotedHeap(const NotedHeap&) = delete;
    NotedHeap& operator=(const NotedHeap&) = delete;
    ~NotedHeap();

    struct Block {
        const void* address;
        std::size_t bytes;
        std::uint32_t number;  // of all that were noted
    };

    /// What was noted by now and is still held.
    static std::vector<Block> held();
    static void forget() noexcept;
};

}  // namespace kzn::test

/// What stands before the system's own heap asks and tells here.
namespace kzn::test::heap {

/// Whether the allocation that this thread asks for may be made.
bool gives() noexcept;

/// Notes a block, null included, and hands it on.
void* taken(void* block, std::size_t bytes) noexcept;
void givenBack(const void* block) noexcept;

}  // namespace kzn::test::heap
