#include "client/Trace.h"

#include "client/Text.h"
#include "pvtrace/pvtrace.h"

namespace wapi {

namespace {

std::string_view prefixOf(TraceLevel level) noexcept
{
    switch (level) {
    case TraceLevel::error: return "Error: ";
    case TraceLevel::warning: return "Warnning: ";  // sic
    case TraceLevel::info: return "Info: ";
    case TraceLevel::debug: return "Debug: ";
    }
    return {};
}

template <typename... Pieces>
void send(TraceLevel level, const Pieces&... pieces) noexcept
{
    if (!traceListens()) return;
    try {
        const std::string_view prefix = prefixOf(level);
        CStringT line;
        line.reserve(prefix.size() + (pieces.size() + ...));
        appendAscii(line, prefix);
        (line.append(pieces.begin(), pieces.end()), ...);
        PvTraceWrite(static_cast<int>(level), line.c_str());
    } catch (...) {  // no memory for the line, or a sink that throws where that can be caught: the operation goes on
    }
}

}  // namespace

bool traceListens() noexcept
{
    return PvTraceListens() != 0;
}

void trace(TraceLevel level, const CStringT& text) noexcept
{
    send(level, text);
}

void trace(TraceLevel level, std::string_view line, std::string_view rest) noexcept
{
    send(level, line, rest);
}

}  // namespace wapi
