// Every file under tests/wire/ is a test of its own, and every public operation has one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>

#include "tests/client/WireOperations.h"
#include "tests/client/WireRunner.h"

namespace {

const std::filesystem::path kSources = PVWAPI_SOURCE_DIR;
const std::filesystem::path kWireFolder = kSources / "tests/wire";

std::string testName(const testing::TestParamInfo<std::string>& info)
{
    return wireTestName(info.param);
}

std::set<std::string> operationsOfTheHeader()
{
    const std::regex operation(R"(^    int (\w+)\([^)]*$|^    int (\w+)\(.*\);)");
    std::ifstream header(kSources / "client/WapiClient.h");
    std::set<std::string> names;
    for (std::string line; std::getline(header, line) && line != "private:";) {
        std::smatch match;
        if (std::regex_search(line, match, operation)) names.insert(match[1].matched ? match[1] : match[2]);
    }
    names.erase("getNetworkError");  // an accessor
    names.erase("SetSpaceIcon");     // no forms: a multipart body and a file, see IconTest.cpp
    names.erase("GetSpaceIcon");
    return names;
}

}  // namespace

class WireTest : public testing::TestWithParam<std::string> {};

TEST_P(WireTest, IsAsItsFileSays)
{
    const WireCase wire = readWireCase(kWireFolder, GetParam());
    for (const std::string& difference : runWireCase(wire, wireOperations())) {
        ADD_FAILURE() << wire.title << '\n' << difference;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, WireTest, testing::ValuesIn(wireCaseNames(kWireFolder)), testName);

TEST(WireCoverage, EveryOperationCanBeCalledByAnExample)
{
    std::set<std::string> names;
    for (const WireOperation& operation : wireOperations()) names.insert(operation.name);
    EXPECT_EQ(names, operationsOfTheHeader());
}

TEST(WireCoverage, EveryOperationHasAnExampleWithItsTrace)
{
    std::set<std::string> traced;
    for (const std::string& name : wireCaseNames(kWireFolder)) {
        const WireCase wire = readWireCase(kWireFolder, name);
        if (wire.trace) traced.insert(wire.operation);
    }
    for (const WireOperation& operation : wireOperations()) {
        EXPECT_THAT(traced, testing::Contains(operation.name)) << "no file under tests/wire has a [trace] of it";
    }
}

TEST(WireCoverage, EveryOperationThatPostsShowsSuccessAndFailure)
{
    std::set<std::pair<std::string, int>> results;
    std::set<std::string> posting;
    for (const std::string& name : wireCaseNames(kWireFolder)) {
        const WireCase wire = readWireCase(kWireFolder, name);
        results.emplace(wire.operation, wire.result);
        if (wire.request) posting.insert(wire.operation);
    }
    posting.erase("logout");  // 1 whatever comes of it
    for (const std::string& operation : posting) {
        EXPECT_TRUE(results.contains({operation, 1})) << operation;
        EXPECT_TRUE(results.contains({operation, 0})) << operation;
    }
}
