#include "pvutil/LogFile.h"

#include <chrono>
#include <thread>
#include <utility>

namespace kzn::pvutil {

namespace {

// A hold alone lasts as long as a rename takes. Whoever keeps it for a second has been stopped in the middle; then this
// process goes on without a hold of its own.
constexpr int kTries = 200;
constexpr std::chrono::milliseconds kPause(5);

enum class Taken { yes, notYet, gone };

// Nobody else writes a file that is held alone: it can be renamed, and no line of another process goes with it.
Taken takeAlone(SystemLog log, const stringex::CStringT& path, const stringex::CStringT& earlier) noexcept
{
    if (!isLogAt(log, path)) return Taken::gone;
    if (!isEmptyLog(log) && renameLog(path, earlier)) return Taken::gone;
    shareLog(log);
    return Taken::yes;
}

// Nobody renames a file that is held shared. Until then it may have happened: between the opening and the hold.
Taken join(SystemLog log, const stringex::CStringT& path) noexcept
{
    if (holdLog(log, Hold::shared) == Held::byAnother) return Taken::notYet;
    return isLogAt(log, path) ? Taken::yes : Taken::gone;
}

Taken take(SystemLog log, const stringex::CStringT& path, const stringex::CStringT& earlier) noexcept
{
    switch (holdLog(log, Hold::alone)) {
    case Held::yes: return takeAlone(log, path, earlier);
    case Held::byAnother: return join(log, path);
    case Held::unknown: break;  // nobody can know of another: what stands there is an earlier run's
    }
    return takeAlone(log, path, earlier);
}

}  // namespace

bool LogFile::open(const stringex::CStringT& path, const stringex::CStringT& earlier) noexcept
{
    close();
    for (int tries = 0; tries < kTries; ++tries) {
        const SystemLog log = openLog(path);
        if (log == kNoLog) return false;
        const Taken taken = take(log, path, earlier);
        if (taken == Taken::yes) {
            log_ = log;
            return true;
        }
        closeLog(log);
        if (taken == Taken::notYet) std::this_thread::sleep_for(kPause);
    }
    log_ = openLog(path);
    return isOpen();
}

void LogFile::write(LogPieces pieces) noexcept
{
    if (isOpen()) appendToLog(log_, pieces);
}

void LogFile::close() noexcept
{
    if (isOpen()) closeLog(std::exchange(log_, kNoLog));
}

}  // namespace kzn::pvutil
