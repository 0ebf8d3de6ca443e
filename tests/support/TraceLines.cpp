#include "tests/support/TraceLines.h"

#include "pvtrace/pvtrace.h"
#include "tests/support/Text.h"

namespace {

std::vector<std::string>& lines()
{
    static std::vector<std::string> all;
    return all;
}

void keep(int level, const kzn::pvutil::stringex::CharT* text)
{
    lines().push_back(std::to_string(level) + ' ' + narrow(text));
}

}  // namespace

TraceLines::TraceLines()
{
    lines().clear();
    PvTraceSetSink(&keep);
}

TraceLines::~TraceLines()
{
    PvTraceSetSink(nullptr);
}

const std::vector<std::string>& TraceLines::all()
{
    return lines();
}

void TraceLines::clear()
{
    lines().clear();
}
