// The seam under the log file: one file of the system that several processes append to, and the hold by which they know
// of each other. Who begins it anew, and when, is decided above it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "pvutil/StringEx.h"

namespace kzn::pvutil {

using SystemLog = std::intptr_t;
inline constexpr SystemLog kNoLog = -1;

/// What ends a line of text on this system.
extern const std::string_view kLogEndOfLine;

/// Opens `path` to append to it, made where it is missing. kNoLog where that fails, and where what stands there is not
/// a file of the user's own.
SystemLog openLog(const stringex::CStringT& path) noexcept;
void closeLog(SystemLog log) noexcept;

enum class Hold { alone, shared };
enum class Held { yes, byAnother, unknown };  // unknown: the file system keeps no holds

/// Never waits. Ends when the file is closed, and with the process, however it ends.
Held holdLog(SystemLog log, Hold hold) noexcept;

/// Makes a hold alone a shared one, without a gap in between.
void shareLog(SystemLog log) noexcept;

bool isEmptyLog(SystemLog log) noexcept;

/// Whether `path` leads to this file, and not to another that has taken its place.
bool isLogAt(SystemLog log, const stringex::CStringT& path) noexcept;

/// Renames the file at `path`; an older one of that name goes. False, and everything as it was, where that cannot be or
/// something else than a file of the user's own stands in the way.
bool renameLog(const stringex::CStringT& path, const stringex::CStringT& earlier) noexcept;

/// One behind the other, up to kLogPieces of them.
using LogPieces = std::span<const std::string_view>;
inline constexpr std::size_t kLogPieces = 8;

/// Hands the pieces to the system as one, behind what every process has written so far.
void appendToLog(SystemLog log, LogPieces pieces) noexcept;

}  // namespace kzn::pvutil
