// Counts what a program takes from the C heap: its own operator new, which takes from there, and every library's.
#pragma once

#include <cstddef>

namespace kzn::bench {

/// Since the last reset. Sizes are what the allocator really hands out, which is a little more than was asked for.
struct HeapUse {
    std::size_t allocations = 0;
    std::size_t taken = 0;  ///< bytes of all of them, those given back too
    std::size_t peak = 0;   ///< most bytes held at once, beyond what was held at the reset
    std::size_t live = 0;   ///< bytes held now, beyond what was held at the reset
};

/// A program that links HeapMeter.cpp counts from its start, on all threads; for one measuring thread at a time.
void resetHeapUse() noexcept;
HeapUse heapUse() noexcept;

}  // namespace kzn::bench
