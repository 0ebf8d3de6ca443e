// The trace channel's lines while one of these lives, instead of the debugger's output.
#pragma once

#include <string>
#include <vector>

#include "pvutil/StringEx.h"

class TraceLines {
public:
    TraceLines();
    TraceLines(const TraceLines&) = delete;
    TraceLines& operator=(const TraceLines&) = delete;
    ~TraceLines();

    /// Each line behind its level: "9 Debug: ...".
    static const std::vector<std::string>& all();
    static void clear();
};
