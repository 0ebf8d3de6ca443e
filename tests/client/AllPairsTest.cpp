// A service that answers each operation with each other operation's reply: nothing breaks, an outcome decides, and an
// output holds nothing that neither stood there nor came.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <thread>

#include "tests/client/WireOperations.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestSystem.h"
#include "tests/support/Text.h"

namespace {

using kzn::test::CaptureServer;
namespace fs = std::filesystem;

const fs::path kWireFolder = fs::path(PVWAPI_SOURCE_DIR) / "tests/wire";

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

/// What the service says to an operation when all goes well.
struct Answer {
    std::string operation;
    std::string reply;
};

const std::string kPicture("\x89PNG\r\n\x1A\n\0<kznapi>", 17);

/// One for each form operation, and the upload's own.
std::vector<Answer> answers(const std::vector<WireCase>& all)
{
    std::vector<Answer> found;
    for (const WireCase& wire : all) found.push_back({wire.operation, wire.reply->body});
    found.push_back({"SetSpaceIcon",
                     "<kznapi><response><result>SUCCESS</result></response><return><url>http://h/i?a=1&amp;b</url>"
                     "</return><securityContext><cred>other</cred></securityContext></kznapi>"});
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

struct Outcome {
    int result = 0;
    WireLines before;
    WireLines after;
};

/// A client of its own and the service that it asks.
class Pair {
public:
    Outcome run(const WireCase& asked, const std::string& reply)
    {
        WireFields arguments = asked.arguments;
        for (WireField& argument : arguments) {
            argument.value = withPlaceholder(argument.value, "url", server_.address("/kznconnect/op.do"));
            argument.value = withPlaceholder(argument.value, "server", server_.address());
        }
        const auto operation = std::ranges::find(wireOperations(), asked.operation, &WireOperation::name);
        WireCall call(arguments);
        server_.reply(200, "text/xml; charset=utf-8", reply);
        const int result = operation->call(client_, call);
        return {result, call.outputsBefore(), call.outputs()};
    }

private:
    CaptureServer server_;
    CWapiClient client_{server_.url("/kznconnect/op.do")};
};

/// What an output holds that neither stood in `kept`, which is what the operation leaves when a success says nothing at
/// all, nor came with the reply.
std::string strangeLines(const Outcome& outcome, const WireLines& kept, const std::string& reply)
{
    std::string strange;
    for (const std::string& line : outcome.after) {
        const std::size_t value = line.find(" = ");
        if (value == std::string::npos || std::ranges::count(kept, line) != 0) continue;
        const std::string shown = line.substr(value + 3);
        if (shown != reply && !cameFrom(shown, texts(reply))) strange += "\n    " + line;
    }
    return strange;
}

using Faults = std::vector<std::string>;

Faults faultsOfSuccesses(Pair& pair, const WireCase& asked, const std::vector<Answer>& all)
{
    Faults faults;
    const Outcome silent = pair.run(asked, "<kznapi><response><result>SUCCESS</result></response></kznapi>");
    for (const Answer& answered : all) {
        const std::string good = withResult(answered.reply, "SUCCESS");
        const Outcome outcome = pair.run(asked, good);
        const std::string strange = strangeLines(outcome, silent.after, good);
        if (outcome.result != 1 || !strange.empty()) faults.push_back(answered.operation + strange);
    }
    return faults;
}

Faults faultsOfFailures(Pair& pair, const WireCase& asked, const std::vector<Answer>& all)
{
    if (asked.operation == "logout" || asked.operation == "WapiProxyCall") return {};  // these hand through what came
    Faults faults;
    const auto expectUntouched = [&](const std::string& operation, const std::string& reply) {
        const Outcome outcome = pair.run(asked, reply);
        if (outcome.result != 0 || outcome.after != outcome.before) faults.push_back(operation);
    };
    for (const Answer& answered : all) expectUntouched(answered.operation, withResult(answered.reply, "FAILURE"));
    expectUntouched("GetSpaceIcon", kPicture);
    return faults;
}

/// Where an exchange waits more than it works, several at once take a fraction of the time.
void expectNoFaults(const std::vector<WireCase>& all,
                    Faults (*faultsOf)(Pair&, const WireCase&, const std::vector<Answer>&))
{
    const std::vector<Answer> replies = answers(all);
    std::vector<Faults> faults(all.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        Pair pair;
        for (std::size_t i = next++; i < all.size(); i = next++) faults[i] = faultsOf(pair, all[i], replies);
    };
    std::vector<std::jthread> threads(8);
    for (std::jthread& thread : threads) thread = std::jthread(work);
    threads.clear();
    for (std::size_t i = 0; i < all.size(); ++i)
        for (const std::string& fault : faults[i]) ADD_FAILURE() << all[i].operation << " answered as " << fault;
}

}  // namespace

TEST(AllPairs, AreAnsweredByTheOutcome)
{
    const std::vector<WireCase> all = successes();
    ASSERT_EQ(all.size() + 1, wireOperations().size()) << "each form operation but GetSpacesTest, which sends nothing";
    expectNoFaults(all, faultsOfSuccesses);
}

TEST(AllPairs, LeaveEveryOutputWhenTheOutcomeIsNone)
{
    expectNoFaults(successes(), faultsOfFailures);
}

TEST(AllPairs, AreAnsweredToAnUploadOfAnIcon)
{
    const fs::path file = fs::temp_directory_path() / ("all pairs " + std::to_string(currentProcessId()) + ".png");
    std::ofstream(file, std::ios::binary) << kPicture;
    CaptureServer server;
    CWapiClient client(server.url("/kznconnect/op.do"));
    const auto upload = [&](const std::string& reply, CStringT& url) {
        server.reply(200, "text/xml; charset=utf-8", reply);
        return client.SetSpaceIcon("c"_w, "w"_w, wide(file.string()), url);
    };
    CStringT url = "before"_w;
    for (const Answer& answered : answers(successes())) {
        SCOPED_TRACE(answered.operation);
        EXPECT_EQ(upload(withResult(answered.reply, "FAILURE"), url = "before"_w), 0);
        EXPECT_EQ(narrow(url), "before");
        EXPECT_EQ(upload(withResult(answered.reply, "SUCCESS"), url), 1);
        EXPECT_EQ(narrow(url), answered.operation == "SetSpaceIcon" ? "http://h/i?a=1&b" : "");
    }
    EXPECT_EQ(upload(kPicture, url = "before"_w), 0);
    EXPECT_EQ(narrow(url), "before");
    fs::remove(file);
}

TEST(AllPairs, AreKeptAsTheyComeWhereAnIconIsFetched)
{
    CaptureServer server;
    CWapiClient client(server.url("/kznconnect/op.do"));
    for (const Answer& answered : answers(successes())) {
        server.reply(200, "text/xml; charset=utf-8", answered.reply);
        CStringT path;
        ASSERT_EQ(client.GetSpaceIcon("c"_w, server.url("/all pairs " + std::to_string(server.port())), path), 1)
            << answered.operation;
        EXPECT_EQ(bytesOf(narrow(path)), answered.reply) << answered.operation;
        fs::remove(narrow(path));
    }
}
