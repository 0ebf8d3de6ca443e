// The trace channel: levelled lines to the trace library, and the Enter and Leave lines of an operation.
#pragma once

#include <string_view>

#include "pvutil/StringEx.h"

namespace wapi {

enum class TraceLevel : int { error = 0, warning = 3, info = 6, debug = 9 };

/// Whether a line would reach anybody; what is dear to make need not be made where none would.
bool traceListens() noexcept;

/// Hands the level's prefix and the text to the trace library. Never throws.
void trace(TraceLevel level, const CStringT& text) noexcept;

/// The same for a line of the library's own, in up to two pieces.
void trace(TraceLevel level, std::string_view line, std::string_view rest = {}) noexcept;

/// Writes Enter when it is made and Leave when it goes, whichever way the scope is left.
class ScopeTracer {
public:
    explicit ScopeTracer(const char* name) noexcept : name_(name)
    {
        trace(TraceLevel::debug, "---->>>> Enter ", name_);
    }
    ScopeTracer(const ScopeTracer&) = delete;
    ScopeTracer& operator=(const ScopeTracer&) = delete;
    ~ScopeTracer() { trace(TraceLevel::debug, "<<<<---- Leave ", name_); }

private:
    const char* name_;
};

}  // namespace wapi
