// A service that answers each operation with each other operation's reply: nothing breaks, an outcome decides, and an
// output holds nothing that neither stood there nor came.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "tests/client/WireOperations.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/Text.h"

namespace {

using kzn::test::CaptureServer;

const std::filesystem::path kWireFolder = std::filesystem::path(PVWAPI_SOURCE_DIR) / "tests/wire";

bool showsSuccess(const WireCase& wire)
{
    return wire.result == 1 && wire.request && wire.reply && wire.reply->connection &&
           wire.reply->body.find("<kznapi>") != std::string::npos;
}

/// The first example of each operation that goes well.
std::vector<WireCase> successes()
{
    std::vector<WireCase> found;
    for (const std::string& name : wireCaseNames(kWireFolder)) {
        WireCase wire = readWireCase(kWireFolder, name);
        const bool known =
            std::ranges::any_of(found, [&](const WireCase& other) { return other.operation == wire.operation; });
        if (!known && showsSuccess(wire)) found.push_back(std::move(wire));
    }
    return found;
}

std::string withResult(const std::string& reply, const std::string& result)
{
    return std::regex_replace(reply, std::regex("<result>[^<]*</result>"), "<result>" + result + "</result>",
                              std::regex_constants::format_first_only);
}

/// The texts of a reply without its markup.
std::string texts(std::string reply)
{
    for (const char* mark : {"<!\\[CDATA\\[", "\\]\\]>"}) reply = std::regex_replace(reply, std::regex(mark), "");
    for (const auto& [entity, text] : {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}})
        reply = std::regex_replace(reply, std::regex(entity), text);
    return reply;
}

bool isNumber(const std::string& text)
{
    return std::regex_match(text, std::regex("-?[0-9]+"));
}

/// A value of an output as it is shown; lists of domains are joined by commas.
bool cameFrom(const std::string& value, const std::string& reply)
{
    if (isNumber(value) || value == "accepted") return true;
    std::istringstream pieces(value);
    for (std::string piece; std::getline(pieces, piece, ',');)
        if (reply.find(piece) == std::string::npos) return false;
    return true;
}

class AllPairs : public testing::Test {
protected:
    struct Outcome {
        int result = 0;
        WireLines before;
        WireLines after;
    };

    Outcome run(const WireCase& asked, const std::string& reply)
    {
        WireFields arguments = asked.arguments;
        for (WireField& argument : arguments) {
            argument.value = withPlaceholder(argument.value, "url", server.address("/kznconnect/op.do"));
            argument.value = withPlaceholder(argument.value, "server", server.address());
        }
        const auto operation = std::ranges::find(wireOperations(), asked.operation, &WireOperation::name);
        WireCall call(arguments);
        server.reply(200, "text/xml; charset=utf-8", reply);
        const int result = operation->call(client, call);
        return {result, call.outputsBefore(), call.outputs()};
    }

    /// `kept` is what the operation leaves in its outputs when a success says nothing at all.
    void expectOnlyFromThere(const Outcome& outcome, const WireLines& kept, const std::string& reply)
    {
        for (const std::string& line : outcome.after) {
            const std::size_t value = line.find(" = ");
            if (value == std::string::npos || std::ranges::count(kept, line) != 0) continue;
            const std::string shown = line.substr(value + 3);
            EXPECT_TRUE(shown == reply || cameFrom(shown, texts(reply))) << line;
        }
    }

    CaptureServer server;
    CWapiClient client{server.url("/kznconnect/op.do")};
};

}  // namespace

TEST_F(AllPairs, AreAnsweredByTheOutcome)
{
    const std::vector<WireCase> all = successes();
    ASSERT_EQ(all.size() + 1, wireOperations().size()) << "each operation but GetSpacesTest, which sends nothing";
    for (const WireCase& asked : all) {
        const Outcome silent = run(asked, "<kznapi><response><result>SUCCESS</result></response></kznapi>");
        for (const WireCase& answered : all) {
            SCOPED_TRACE(asked.operation + " answered as " + answered.operation);
            const std::string good = withResult(answered.reply->body, "SUCCESS");
            const Outcome outcome = run(asked, good);
            EXPECT_EQ(outcome.result, 1);
            expectOnlyFromThere(outcome, silent.after, good);
        }
    }
}

TEST_F(AllPairs, LeaveEveryOutputWhenTheOutcomeIsNone)
{
    const std::vector<WireCase> all = successes();
    for (const WireCase& asked : all) {
        if (asked.operation == "logout" || asked.operation == "WapiProxyCall")
            continue;  // these hand through what came
        for (const WireCase& answered : all) {
            SCOPED_TRACE(asked.operation + " answered as " + answered.operation);
            const Outcome outcome = run(asked, withResult(answered.reply->body, "FAILURE"));
            EXPECT_EQ(outcome.result, 0);
            EXPECT_EQ(outcome.after, outcome.before);
        }
    }
}
