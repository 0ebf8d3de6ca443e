// The system's calls of the test program, all libraries' included, which go wrong where a test says so.
#pragma once

#include <cstddef>

namespace kzn::test {

enum class Wrong {
    fails,          // call number `nth` gives the error that is likeliest for it
    failsFromThen,  // that one and all behind it
    isInterrupted,  // call number `nth` of those that a signal can end is ended by one
    movesOneByte,   // whatever reads or writes moves one byte at a time; nothing fails
};

/// While one of these lives, calls of this thread go wrong; with `nth` 0 they are counted only. Other threads are let
/// alone.
class FailingCalls {
public:
    FailingCalls(std::size_t nth, Wrong wrong) noexcept;
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
    ~FailingCalls();

    /// How many calls could have gone wrong in this way since.
    static std::size_t made() noexcept;
};

}  // namespace kzn::test
