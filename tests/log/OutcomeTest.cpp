// A reply is judged as the library judges it.
#include "log/Outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "log/Text.h"
#include "tests/log/LogText.h"
#include "tests/support/WireFile.h"

namespace {

using namespace logreader;
using Kind = Outcome::Kind;

const std::filesystem::path kWire = PVWAPI_WIRE_FOLDER;

/// Whether the log has the reply as it was sent: it is in UTF-8 there, whatever character set it came in.
bool isAsSent(const WireReply& reply)
{
    return harmless(reply.body, "\t\r\n").find("\uFFFD") == std::string::npos &&
           reply.contentType.find("charset") == std::string::npos;
}

TEST(Outcome, AgreesWithTheResultOfEveryWireExample)
{
    std::size_t judged = 0;
    for (const std::string& name : wireCaseNames(kWire)) {
        const WireCase wire = readWireCase(kWire, name);
        // Other than by the result: logout is always done, a proxied call has rules of its own.
        const bool hasOwnRules = wire.operation == "logout" || wire.operation == "WapiProxyCall";
        const bool isIcon = wire.operation.find("Icon") != std::string::npos;
        if (!wire.reply || hasOwnRules || isIcon || !isAsSent(*wire.reply)) continue;
        const Outcome outcome = outcomeOf(wire.reply->body);
        EXPECT_EQ(outcome.kind == Kind::success, wire.result == 1) << name;
        ++judged;
        if (wire.result == 1 || wire.messageUnchanged || !wire.reply->connection) continue;
        EXPECT_EQ(outcome.reason, wire.message.reason) << name;
        EXPECT_EQ(outcome.exceptionID, wire.message.exceptionID) << name;
    }
    EXPECT_GT(judged, 200U);
}

TEST(Outcome, EveryKindHasItsName)
{
    const std::vector<std::pair<std::string, std::string_view>> cases = {
        {std::string(logtest::kSuccess), "SUCCESS"},
        {logtest::failure("r", "e"), "FAILURE"},
        {"<kznapi><response/></kznapi>", "no result"},
        {"<html></html>", "no result"},
        {"It works!", "not XML"},
        {"<kznapi><response>", "not XML"},
        {"<!DOCTYPE a><kznapi><response><result>SUCCESS</result></response></kznapi>", "not XML"},
        {"", "no reply"},
    };
    for (const auto& [reply, name] : cases) EXPECT_EQ(nameOf(outcomeOf(reply).kind), name) << reply;
}

TEST(Outcome, CutOffAtAnyByteItIsReadWithoutHarm)
{
    const std::string reply = logtest::failure("a &amp; <![CDATA[b]]> &#x1F600;&#0;&#99999999999;&no;&", "id");
    EXPECT_EQ(outcomeOf(reply).reason, "a & b \U0001F600&#0;&#99999999999;&no;&");
    for (std::size_t length = 0; length <= reply.size(); ++length) {
        EXPECT_NE(outcomeOf(std::string_view(reply).substr(0, length)).kind, Kind::success);
    }
}

}  // namespace
