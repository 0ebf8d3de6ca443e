// A file that lines are appended to, each with one call, readable by its owner only.
#pragma once

#include <string_view>

#include "pvutil/StringEx.h"
#include "pvutil/SystemLog.h"

namespace kzn::pvutil {

/// Trivially destructible, so that one can stand for the life of the process without an order of destruction.
class LogFile {
public:
    /// Closes what is open and opens `path`. Where another living process writes it, this one appends. Otherwise what
    /// stands there gets the name `earlier`, in place of an older one, and a new file begins; an empty one is gone on
    /// with. What cannot be renamed (a reader may be in the way) is appended to, so that nothing is lost. False, and
    /// nothing open, where there can be no file.
    bool open(const stringex::CStringT& path, const stringex::CStringT& earlier) noexcept;

    /// Hands a line in pieces to the system; an error of the disk is nobody's to mend here and is ignored.
    void write(LogPieces pieces) noexcept;
    void write(std::string_view line) noexcept { write(LogPieces(&line, 1)); }

    void close() noexcept;

    bool isOpen() const noexcept { return log_ != kNoLog; }

private:
    SystemLog log_ = kNoLog;
};

}  // namespace kzn::pvutil
