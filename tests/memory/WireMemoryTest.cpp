// Every wire example, with allocations of its call failing.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "client/TraceLog.h"
#include "pvtrace/pvtrace.h"
#include "tests/client/WireOperations.h"
#include "tests/memory/Share.h"
#include "tests/memory/WireSweep.h"

namespace {

const std::filesystem::path kWireFolder = std::filesystem::path(PVWAPI_SOURCE_DIR) / "tests/wire";

// Each where all are asked for or calls are quick, else some of every topic.
std::vector<std::string> sharedCases()
{
    const std::vector<std::string> all = wireCaseNames(kWireFolder);
    std::vector<std::string> some;
    for (std::size_t at = 0; at < all.size(); at += stepOfShare()) some.push_back(all[at]);
    return some;
}

std::string testName(const testing::TestParamInfo<std::string>& info)
{
    return wireTestName(info.param);
}

void hearNothing(int, const PvTraceUnit*) {}

}  // namespace

// Somebody listens to the trace channel, so that every line is made, and can fail to be.
class WireMemoryTest : public testing::TestWithParam<std::string> {
protected:
    WireMemoryTest() { PvTraceSetSink(&hearNothing); }
    ~WireMemoryTest() override { PvTraceSetSink(nullptr); }
};

TEST_P(WireMemoryTest, FailsWholeOrNotAtAll)
{
    constexpr std::size_t kFew = 8;
    wapi::traceLog().openInDataFolder();  // anew, or thousands of calls would stand in one log
    const WireCase wire = readWireCase(kWireFolder, GetParam());
    const SweepResult result = sweepWireCase(wire, wireOperations(), shareOf(kFew));
    for (const std::string& fault : result.faults) ADD_FAILURE() << wire.title << '\n' << fault;
    EXPECT_TRUE(result.calls > 0 || wire.operation == "GetSpacesTest") << "nothing was made to fail";
    RecordProperty("calls", static_cast<int>(result.calls));
}

INSTANTIATE_TEST_SUITE_P(Files, WireMemoryTest, testing::ValuesIn(sharedCases()), testName);
