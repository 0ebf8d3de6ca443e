// The log file: every request body and every reply, with time, process and thread.
#pragma once

#include <atomic>
#include <string_view>

#include "pvutil/HttpClient.h"
#include "pvutil/LogFile.h"
#include "pvutil/StringEx.h"

namespace wapi {

enum class LogLevel : int { error = 1, warning = 2, info = 3, debug = 4 };

/// Written from any thread; its lock is the only one of the library and is held for one line at a time. Never throws:
/// what cannot be written is lost.
class TraceLog {
public:
    /// Opens "pvwapi.txt" under Pravik/Log of the application-data folder; in the current directory where there is no
    /// such folder. The log of an earlier run becomes "pvwapi.1.txt".
    void openInDataFolder() noexcept;

    /// Closes what is open and opens `path` instead. What stands there becomes `earlier`, unless another process is
    /// writing it.
    void open(const CStringT& path, const CStringT& earlier) noexcept;
    void close() noexcept;

    /// Lines above the maximum are dropped, and all of them while it is switched off.
    void switchOn(bool on) noexcept { on_ = on; }
    void setMaximum(int level) noexcept { maximum_ = level; }

    void write(int level, const CStringT& text) noexcept;
    void write(LogLevel level, const CStringT& text) noexcept { write(static_cast<int>(level), text); }

    /// The same for a text that is UTF-8 already.
    void writeUtf8(int level, std::string_view text) noexcept;
    void writeUtf8(LogLevel level, std::string_view text) noexcept { writeUtf8(static_cast<int>(level), text); }

private:
    bool drops(int level) const noexcept { return !on_ || level > maximum_; }

    kzn::pvutil::LogFile file_;
    std::atomic<bool> on_ = true;
    std::atomic<int> maximum_ = static_cast<int>(LogLevel::debug);
};

/// The process's log.
TraceLog& traceLog() noexcept;

/// Writes a reply at debug level; one that is UTF-8 from its own bytes.
void logReply(const kzn::pvutil::CZelHttpClient& http) noexcept;

}  // namespace wapi
