// The library against a service that has been told to go wrong: what its host is told, that nothing is sent twice, and
// that the next call is served.
#include <ostream>

#include "client/WapiClient.h"
#include "tests/service/ControlledService.h"
#include "tests/support/Text.h"
#include "tests/tape/Address.h"

namespace service::test {

namespace {

using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

using Cause = CWapiClient::NETWORK_ERROR;
using Names = std::vector<std::string>;

constexpr unsigned kDeadline = 400;  // milliseconds

// A fault that strikes the making of a workspace, and what its host is to be told.
struct Broken {
    const char* fault;
    testing::Matcher<Cause> cause;
    bool isMade;
};

void PrintTo(const Broken& row, std::ostream* to)
{
    *to << row.fault;
}

class LibraryFaultTest : public ControlledService {
protected:
    LibraryFaultTest()
    {
        EXPECT_EQ(client_.login("anna"_w, {}, {}, "anna-demo-1"_w, 0, 1), 1) << reason();
        client_.setDeadline(0);
    }

    std::string reason() { return narrow(client_.GetLstMsg().reason); }

    int makeSpace(const CStringT& name)
    {
        std::vector<CWapiClient::WKSP_Field_Value> fields;
        CStringT id = "untouched"_w;
        const int result = client_.createSpace(client_.getRootCred(), name, fields, id, 0, 0);
        EXPECT_EQ(narrow(id) == "untouched", result == 0);
        return result;
    }

    Names spaces()
    {
        std::vector<SpaceForList> spaces;
        std::vector<CZelSpaceInvite> invitations;
        EXPECT_EQ(client_.GetWkspList(client_.getRootCred(), {}, {}, spaces, invitations), 1) << reason();
        Names names;
        for (const SpaceForList& space : spaces) names.push_back(narrow(space.workspaceName));
        return names;
    }

    void set(const std::string& fault) const { done("POST", "faults", fault); }

    int struck() const { return done("GET", "faults").at("faults").at(0).at("struck").get<int>(); }

    CWapiClient client_{wide(urlOf(port_) + "/kznconnect/op.do")};
};

class LibraryBrokenCallTest : public LibraryFaultTest, public testing::WithParamInterface<Broken> {};

TEST_P(LibraryBrokenCallTest, FailsOnceWithItsCauseAndTheNextOneIsServed)
{
    const Broken& row = GetParam();
    set(row.fault);
    client_.setDeadline(kDeadline);
    EXPECT_EQ(makeSpace("Umbau"_w), 0);
    EXPECT_THAT(client_.getNetworkErrorKind(), row.cause) << narrow(client_.getNetworkErrorText());
    EXPECT_EQ(client_.getNetworkError(), client_.getNetworkErrorKind() == CWapiClient::NETWORK_NONE ? 0 : 1);
    EXPECT_EQ(reason().empty(), client_.getNetworkErrorKind() == CWapiClient::NETWORK_NONE);
    EXPECT_EQ(struck(), 1);
    client_.setDeadline(0);
    EXPECT_THAT(spaces(), row.isMade ? testing::Matcher<Names>(Contains("Umbau")) : Not(Contains("Umbau")));
    EXPECT_EQ(client_.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
}

// What a reset overtakes may be lost; the end of a connection and a reset are not always told apart.
const auto kBroken = AnyOf(CWapiClient::NETWORK_CLOSED, CWapiClient::NETWORK_CUT_OFF);

INSTANTIATE_TEST_SUITE_P(
    Faults, LibraryBrokenCallTest,
    testing::Values(
        Broken{R"({"fault": "refuse", "operation": "AddTabs"})", CWapiClient::NETWORK_CLOSED, false},
        Broken{R"({"fault": "close", "operation": "AddTabs"})", CWapiClient::NETWORK_CLOSED, true},
        Broken{R"({"fault": "reset", "byte": 0, "operation": "AddTabs"})", kBroken, true},
        Broken{R"({"fault": "reset", "byte": 17, "operation": "AddTabs"})", kBroken, true},
        Broken{R"({"fault": "reset", "byte": 200, "operation": "AddTabs"})", kBroken, true},
        Broken{R"({"fault": "stall", "byte": 0, "operation": "AddTabs"})", CWapiClient::NETWORK_DEADLINE, true},
        Broken{R"({"fault": "stall", "byte": 200, "operation": "AddTabs"})", CWapiClient::NETWORK_DEADLINE, true},
        Broken{R"({"fault": "rate", "operation": "AddTabs"})", CWapiClient::NETWORK_DEADLINE, true},
        Broken{R"({"fault": "delay", "ms": 5000, "operation": "AddTabs"})", CWapiClient::NETWORK_DEADLINE, true},
        Broken{R"({"fault": "length", "by": 7, "operation": "AddTabs"})", CWapiClient::NETWORK_CUT_OFF, true},
        Broken{R"({"fault": "length", "by": -100000, "operation": "AddTabs"})", CWapiClient::NETWORK_NONE, true},
        Broken{R"({"fault": "chunks", "operation": "AddTabs"})",
               AnyOf(CWapiClient::NETWORK_NOT_HTTP, CWapiClient::NETWORK_CUT_OFF), true}));

TEST_F(LibraryFaultTest, ABodyWithoutAnEndIsTooLarge)
{
    set(R"({"fault": "endless", "operation": "AddTabs"})");
    EXPECT_EQ(makeSpace("Umbau"_w), 0);
    EXPECT_EQ(client_.getNetworkErrorKind(), CWapiClient::NETWORK_TOO_LARGE) << reason();
    EXPECT_EQ(struck(), 1);
    EXPECT_THAT(spaces(), Contains("Umbau"));
}

TEST_F(LibraryFaultTest, ARefusalHasItsReasonAndItsExceptionAndNoNetworkError)
{
    set(R"({"fault": "failure", "operation": "AddTabs", "reason": "<out> of & Papier", "exceptionID": "KZN:Paper"})");
    EXPECT_EQ(makeSpace("Umbau"_w), 0);
    EXPECT_EQ(reason(), "<out> of & Papier");
    EXPECT_EQ(narrow(client_.GetLstMsg().exceptionID), "KZN:Paper");
    EXPECT_EQ(client_.getNetworkError(), 0);
    EXPECT_THAT(spaces(), Not(Contains("Umbau")));
}

TEST_F(LibraryFaultTest, WhatIsOnlySlowOrFloodedOrInAnotherCharsetIsRead)
{
    EXPECT_EQ(makeSpace("Äther"_w), 1);
    for (const char* const fault :
         {R"({"fault": "delay", "ms": 200})", R"({"fault": "headers", "count": 50})",
          R"({"fault": "rate", "bytesPerSecond": 20000})", R"({"fault": "charset", "charset": "iso-8859-1"})",
          R"({"fault": "charset", "charset": "utf-16"})"}) {
        SCOPED_TRACE(fault);
        set(fault);
        EXPECT_THAT(spaces(), Contains("Äther"));
        EXPECT_EQ(struck(), 1);
        done("DELETE", "faults");
    }
}

TEST_F(LibraryFaultTest, XmlIsReadAsFarAsItGoes)
{
    set(R"({"fault": "length", "by": -7, "operation": "AddTabs"})");
    EXPECT_EQ(makeSpace("Umbau"_w), 1) << reason();
    EXPECT_EQ(struck(), 1);
}

TEST_F(LibraryFaultTest, TheThirdCallOfItsKindIsStruckAndNoOther)
{
    set(R"({"fault": "close", "operation": "AddTabs", "call": 3})");
    std::vector<int> results;
    for (const CStringT& name : {"1"_w, "2"_w, "3"_w, "4"_w}) results.push_back(makeSpace(name));
    EXPECT_THAT(results, ElementsAre(1, 1, 0, 1));
}

}  // namespace

}  // namespace service::test
