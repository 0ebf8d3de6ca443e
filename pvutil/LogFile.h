// A file that lines are appended to, each with one call, readable by its owner only.
#pragma once

#include <cstdint>
#include <string_view>

#include "pvutil/StringEx.h"

namespace kzn::pvutil {

/// Trivially destructible, so that one can stand for the life of the process without an order of destruction.
class LogFile {
public:
    /// What ends a line of text on this system.
    static const std::string_view kEndOfLine;

    /// Closes what is open and opens `path` anew, emptied. False, and nothing open, where that fails.
    bool open(const stringex::CStringT& path) noexcept;

    /// Hands `bytes` to the system whole; an error of the disk is nobody's to mend here and is ignored.
    void write(std::string_view bytes) noexcept;

    void close() noexcept;

    bool isOpen() const noexcept { return handle_ != kClosed; }

private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t handle_ = kClosed;
};

}  // namespace kzn::pvutil
