// The trace channel: prefixes, Enter and Leave, and sinks that misbehave.
#include "client/Trace.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "pvtrace/pvtrace.h"
#include "tests/support/Text.h"
#include "tests/support/TraceLines.h"

namespace {

using testing::ElementsAre;
using wapi::ScopeTracer;
using wapi::trace;
using wapi::TraceLevel;

class Trace : public testing::Test {
protected:
    TraceLines lines;
};

TEST_F(Trace, WritesThePrefixOfEachLevel)
{
    trace(TraceLevel::error, "a"_w);
    trace(TraceLevel::warning, "b"_w);
    trace(TraceLevel::info, "c"_w);
    trace(TraceLevel::debug, "d"_w);
    EXPECT_THAT(TraceLines::all(), ElementsAre("0 Error: a", "3 Warnning: b", "6 Info: c", "9 Debug: d"));
}

TEST_F(Trace, WritesNoPrefixAtAnyOtherLevel)
{
    for (const int level : {-1, 1, 2, 4, 5, 7, 8, 10, 1000}) {
        TraceLines::clear();
        trace(static_cast<TraceLevel>(level), "x"_w);
        EXPECT_THAT(TraceLines::all(), ElementsAre(std::to_string(level) + " x"));
    }
}

TEST_F(Trace, CarriesTheLevelsOfTheChannel)
{
    EXPECT_EQ(static_cast<int>(TraceLevel::error), 0);
    EXPECT_EQ(static_cast<int>(TraceLevel::warning), 3);
    EXPECT_EQ(static_cast<int>(TraceLevel::info), 6);
    EXPECT_EQ(static_cast<int>(TraceLevel::debug), 9);
}

TEST_F(Trace, TakesAnyText)
{
    trace(TraceLevel::debug, CStringT());
    trace(TraceLevel::debug, "\xC3\xA9 \xF0\x9F\x98\x80\r\n%s%n"_w);
    trace(TraceLevel::debug, CStringT(100'000, 'x'));
    EXPECT_THAT(TraceLines::all(), ElementsAre("9 Debug: ", "9 Debug: \xC3\xA9 \xF0\x9F\x98\x80\r\n%s%n",
                                               "9 Debug: " + std::string(100'000, 'x')));
}

TEST_F(Trace, JoinsTheTwoPiecesOfALine)
{
    trace(TraceLevel::error, "one", "two");
    trace(TraceLevel::info, "alone");
    EXPECT_THAT(TraceLines::all(), ElementsAre("0 Error: onetwo", "6 Info: alone"));
}

TEST_F(Trace, WritesEnterAndLeaveAroundAScope)
{
    {
        const ScopeTracer scope("CWapiClient::cloneSession");
        EXPECT_THAT(TraceLines::all(), ElementsAre("9 Debug: ---->>>> Enter CWapiClient::cloneSession"));
        trace(TraceLevel::debug, "inside"_w);
    }
    EXPECT_THAT(TraceLines::all(), ElementsAre("9 Debug: ---->>>> Enter CWapiClient::cloneSession", "9 Debug: inside",
                                               "9 Debug: <<<<---- Leave CWapiClient::cloneSession"));
}

TEST_F(Trace, WritesLeaveWhereAnExceptionLeavesTheScope)
{
    try {
        const ScopeTracer scope("a");
        const ScopeTracer inner("b");
        throw std::runtime_error("out");
    } catch (const std::runtime_error&) {
        trace(TraceLevel::error, "caught"_w);
    }
    EXPECT_THAT(TraceLines::all(),
                ElementsAre("9 Debug: ---->>>> Enter a", "9 Debug: ---->>>> Enter b", "9 Debug: <<<<---- Leave b",
                            "9 Debug: <<<<---- Leave a", "0 Error: caught"));
}

int linesThrownAt = 0;

void throwingSink(int, const PvTraceUnit*)
{
    ++linesThrownAt;
    throw std::runtime_error("no");
}

TEST(TraceSink, MayThrow)
{
    linesThrownAt = 0;
    PvTraceSetSink(&throwingSink);
    trace(TraceLevel::error, "a"_w);
    trace(TraceLevel::error, "b", "c");
    {
        const ScopeTracer scope("d");
    }
    PvTraceSetSink(nullptr);
    EXPECT_EQ(linesThrownAt, 4);
}

TEST(TraceSink, IsHeardUntilTheDefaultIsBack)
{
    {
        const TraceLines lines;
        PvTraceWrite(4, "raw"_w.c_str());
        PvTraceWrite(5, nullptr);
        EXPECT_THAT(TraceLines::all(), ElementsAre("4 raw"));
    }
    TraceLines::clear();
    PvTraceWrite(4, "unheard"_w.c_str());
    trace(TraceLevel::error, "unheard"_w);
    EXPECT_TRUE(TraceLines::all().empty());
}

}  // namespace
