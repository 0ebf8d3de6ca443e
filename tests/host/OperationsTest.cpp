// Every operation of the client's class has a command: the program's own list against the library's exported names.
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "tests/host/HostFixture.h"

namespace {

using Names = std::set<std::string>;

/// What a host asks of the client itself, and what the library keeps to itself.
const Names kNoOperations{
    "getUserID",
    "getNamespaceID",
    "getRootCred",
    "setRootCred",
    "GetLstMsg",
    "getNetworkError",
    "getNetworkErrorKind",
    "getNetworkErrorText",
    "cancel",
    "setDeadline",
    "onRefresh",
    "onExchange",
    "setLog",
    "version",
    "getRefreshInterval",
    "getOpURL",
    "getNullSessionURL",
    "getUploadURL",
    "getDmsURL",
    "OnTimer",
    "onTransferProgress",
    "init",
    "rearmTimer",
    "prepare",
    "keepCause",
    "traceCause",
    "keepFailure",
    "refuse",
    "judge",
    "post",
    "doRequest",
    "exchange",
    "buildObjectRequest",
    "buildProbeSpaceAccessRequest",
};

/// The class's member functions among the exported names: a name follows the class's own behind its length.
Names exportedOperations()
{
    const std::regex member("export _ZNK?11CWapiClient([0-9]+)(.*)");
    std::ifstream list(PVWAPI_ABI_LIST);
    Names names;
    for (std::string line; std::getline(list, line);) {
        std::smatch found;
        if (!std::regex_match(line, found, member)) continue;
        const std::string name = found.str(2).substr(0, std::stoul(found.str(1)));
        if (!kNoOperations.contains(name)) names.insert(name);
    }
    return names;
}

TEST_F(HostTest, EveryOperationHasACommand)
{
    const Ended ended = pvwapi({"--operations"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    Names called;
    std::istringstream lines(ended.out);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t tab = line.find('\t');
        ASSERT_NE(tab, std::string::npos) << line;
        called.insert(line.substr(tab + 1));
    }
    EXPECT_THAT(called, testing::Contains("createSpace"));
    EXPECT_EQ(called, exportedOperations());
}

TEST_F(HostTest, ListOfOperationsStandsInNoHelp)
{
    EXPECT_EQ(pvwapi({"--help"}).out.find("--operations"), std::string::npos);
    EXPECT_THAT(pvwapi({"--operations"}).out,
                testing::AllOf(testing::HasSubstr("\nspaces clone\tcloneWksp\n"),
                               testing::HasSubstr("\nroles\tgetRole\nroles\tProbeAccessAllSpace\n")));
    EXPECT_TRUE(bodies().empty());
}

}  // namespace
