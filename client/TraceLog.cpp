#include "client/TraceLog.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>

#include "pvutil/Folders.h"
#include "pvutil/Process.h"

namespace wapi {

using namespace kzn::pvutil;

namespace {

// Has neither a constructor nor a destructor to run: it stands before the first and after the last of them.
constinit TraceLog theLog;

// Stands before the first line and outlives the last. Not every system has a mutex that needs no code to come into
// being, and one within a function would leave its guard's handles behind when the library is unloaded.
[[gnu::init_priority(101)]] std::mutex theLock;

std::string_view prefixOf(int level) noexcept
{
    switch (static_cast<LogLevel>(level)) {
    case LogLevel::error: return "Error: ";
    case LogLevel::warning: return "Warning: ";
    case LogLevel::info: return "Info: ";
    case LogLevel::debug: return "Debug: ";
    }
    return {};
}

// "\r\n<2026-01-31 23:59:58", made anew when a second has passed. The lock guards it.
class TimeText {
public:
    std::string_view now() noexcept
    {
        const std::time_t second = std::time(nullptr);
        if (second != second_ || length_ == 0) {
            const std::tm local = localTime(second);
            length_ = std::strftime(text_.data(), text_.size(), "\r\n<%Y-%m-%d %H:%M:%S", &local);
            second_ = second;
        }
        return {text_.data(), length_};
    }

private:
    std::array<char, 32> text_{};
    std::size_t length_ = 0;
    std::time_t second_ = 0;
};

constinit TimeText theTime;

// ", pid=1234, tid=1235> "
std::string_view callerText(std::array<char, 64>& text) noexcept
{
    const int length = std::snprintf(text.data(), text.size(), ", pid=%lu, tid=%lu> ", processId(), threadId());
    return {text.data(), static_cast<std::size_t>(std::max(length, 0))};
}

}  // namespace

TraceLog& traceLog() noexcept
{
    return theLog;
}

void TraceLog::openInDataFolder() noexcept
{
    try {
        CStringT path;
        if (const auto data = applicationDataFolder()) {
            const CStringT separator(1, kPathSeparator);
            path = *data + stringex::FromUtf8("Pravik") + separator + stringex::FromUtf8("Log") + separator;
            createFolders(path);
        }
        open(path + stringex::FromUtf8("pvwapi.txt"), path + stringex::FromUtf8("pvwapi.1.txt"));
    } catch (...) {  // no memory for a path: no log
    }
}

// Taking the lock for the first time may need memory.
void TraceLog::open(const CStringT& path, const CStringT& earlier) noexcept
try {
    const std::lock_guard guard(theLock);
    file_.open(path, earlier);
} catch (...) {  // no memory: no log
}

void TraceLog::close() noexcept
try {
    const std::lock_guard guard(theLock);
    file_.close();
} catch (...) {  // a lock that was never taken: nothing is open
}

void TraceLog::write(int level, const CStringT& text) noexcept
{
    if (drops(level)) return;
    try {
        writeUtf8(level, stringex::ToUtf8(text));
    } catch (...) {  // no memory for the line
    }
}

void TraceLog::writeUtf8(int level, std::string_view text) noexcept
{
    if (drops(level)) return;
    try {
        std::array<char, 64> caller;
        const std::string_view callers = callerText(caller);
        const std::lock_guard guard(theLock);
        if (!file_.isOpen()) return;
        file_.write(std::array{theTime.now(), callers, prefixOf(level), std::string_view(" "), text, kLogEndOfLine});
    } catch (...) {  // no memory for the line
    }
}

void logReply(const CZelHttpClient& http) noexcept
{
    std::string_view utf8;
    if (http.ResponseUtf8(utf8)) {
        traceLog().writeUtf8(LogLevel::debug, utf8);
        return;
    }
    try {
        traceLog().write(LogLevel::debug, http.ResponseContent());
    } catch (...) {  // no memory for the line
    }
}

}  // namespace wapi
