// Each row of the table against operations, and connections that end at each byte of a reply.
//
// ctest runs a share of it: each row with two operations, each operation with a few rows. With PVWAPI_HOSTILE=whole in
// the environment it is the whole product.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "pvutil/HttpClient.h"
#include "tests/client/ClientFixture.h"
#include "tests/hostile/Operations.h"
#include "tests/hostile/Rows.h"
#include "tests/support/Wine.h"

namespace kzn::test {
namespace {

using namespace std::chrono_literals;
using Kind = Outcome::Kind;
using Reads = HostileOperation::Reads;

bool isWhole()
{
    const char* const wish = std::getenv("PVWAPI_HOSTILE");
    return wish != nullptr && std::string_view(wish) == "whole";
}

class HostileReply : public ClientFixture {
protected:
    HostileReply()
    {
        setSilence(3s);
        for (const HostileOperation& operation : operations) {
            reply(kSuccess);
            plainly.push_back(operation.call(client));
        }
    }
    ~HostileReply() override
    {
        pvutil::CZelHttpClient::SetLimits({});
        std::cout << "exchanges | " << server.received() << "\n";
    }

    static void setSilence(std::chrono::milliseconds silence)
    {
        pvutil::HttpLimits limits;
        limits.connect = 5s;
        limits.silence = silence;
        pvutil::CZelHttpClient::SetLimits(limits);
    }

    void run(const Row& row, std::size_t at)
    {
        const HostileOperation& operation = operations[at];
        SCOPED_TRACE(row.name + " x " + operation.name);
        setSilence(row.isSilent ? 250ms : 3s);
        server.script(row.script);
        const auto begin = Clock::now();
        const Done done = operation.call(client);
        EXPECT_LT(Clock::now() - begin, 8s);
        expectOutcome(runsUnderWine() && row.underWine ? *row.underWine : row.outcome, at, done);
        if (row.script.steps().size() > 1 || row.script.end() != Script::End::serveOn) awaitAllThatIsSent();
        setSilence(3s);
        EXPECT_EQ(server.dropQueue(), 0U);
        server.forget();  // thousands of pictures would fill a process of 32 bits
        expectGoodForTheNext();
        EXPECT_EQ(server.dropQueue(), 0U);
    }

    void expectOutcome(const Outcome& outcome, std::size_t at, const Done& done)
    {
        if (done.result == 0 && operations[at].reads != Reads::anything) {
            EXPECT_TRUE(done.isUntouched);
        }
        if (outcome.kind == Kind::either) return;
        switch (operations[at].reads) {
        case Reads::nothing: EXPECT_EQ(done.result, 1); return;
        case Reads::file: return expectTransfer(outcome, done);
        case Reads::anything: return expectAnything(outcome, at, done);
        case Reads::picture:
        case Reads::document: return expectDocument(outcome, at, done);
        }
    }

    void expectDocument(const Outcome& outcome, std::size_t at, const Done& done)
    {
        const WAPIMESSAGE last = client.GetLstMsg();
        const std::string reason = narrow(last.reason);
        if (outcome.kind == Kind::plain) {
            EXPECT_EQ(done.result, plainly[at].result) << reason;
            EXPECT_EQ(done.outputs, plainly[at].outputs);
        } else {
            EXPECT_EQ(done.result, 0);
        }
        expectConnection(outcome);
        EXPECT_EQ(last.exceptionID, CStringT());
        switch (outcome.kind) {
        case Kind::plain:
        case Kind::either: break;
        case Kind::senseless: EXPECT_EQ(reason, ""); break;
        case Kind::refused: EXPECT_EQ(reason, "r"); break;
        case Kind::beyond:
            EXPECT_NE(reason.find("of the reply is too long.") != std::string::npos,
                      reason == "The reply is nested too deeply.")
                << reason;
            break;
        case Kind::noReply:
        case Kind::lost:
            EXPECT_TRUE(reason.starts_with("Network error. Unable to connect to")) << reason;
            EXPECT_EQ(last.response, CStringT());
            break;
        }
    }

    // It tells the kind alone; `networkError` goes back to 0 with a status of 200.
    void expectAnything(const Outcome& outcome, std::size_t at, const Done& done)
    {
        expectKind(outcome);
        EXPECT_EQ(done.result, outcome.kind == Kind::plain ? plainly[at].result : 0);
    }

    // What comes is a file, whatever it holds, and a redirect is followed.
    void expectTransfer(const Outcome& outcome, const Done& done)
    {
        const bool isLost = outcome.kind == Kind::noReply || outcome.kind == Kind::lost;
        if (!isLost) return;
        EXPECT_EQ(done.result, 0);
        expectConnection(outcome);
    }

    void expectConnection(const Outcome& outcome)
    {
        expectKind(outcome);
        EXPECT_EQ(client.getNetworkError(), outcome.kind == Kind::noReply || outcome.kind == Kind::lost ? 1 : 0);
    }

    void expectKind(const Outcome& outcome)
    {
        const auto kind = client.getNetworkErrorKind();
        const std::string text = narrow(client.getNetworkErrorText());
        if (outcome.kind != Kind::lost) {
            EXPECT_EQ(kind, outcome.network) << text;
            return;
        }
        constexpr std::array kEnds = {CWapiClient::NETWORK_CLOSED, CWapiClient::NETWORK_CUT_OFF,
                                      CWapiClient::NETWORK_NOT_HTTP};
        EXPECT_NE(std::find(kEnds.begin(), kEnds.end(), kind), kEnds.end()) << kind << ' ' << text;
    }

    void awaitAllThatIsSent() const
    {
        for (int times = 0; server.answered() < server.received() && times < 500; ++times)
            std::this_thread::sleep_for(1ms);
        std::this_thread::sleep_for(1ms);  // the end of a connection comes behind that
    }

    void expectGoodForTheNext()
    {
        const std::string own = "own " + std::to_string(++count_);
        reply(credReply(own));
        CStringT cred;
        EXPECT_EQ(client.cloneSession({}, {}, cred), 1) << narrow(client.getNetworkErrorText());
        EXPECT_EQ(narrow(cred), own);
        EXPECT_EQ(client.getNetworkError(), 0);
    }

    void endAt(const std::string& whole, std::size_t cut, bool isReset, const Outcome& outcome, std::size_t at)
    {
        Script script;
        script.send(whole.substr(0, cut));
        if (isReset) script.pause(4ms).reset();
        else script.close();
        run({"end at byte " + std::to_string(cut) + (isReset ? ", reset" : ", close"), script, outcome, {}}, at);
    }

    std::size_t operationNamed(std::string_view name) const
    {
        for (std::size_t at = 0; at < operations.size(); ++at)
            if (operations[at].name == name) return at;
        return operations.size();
    }

    const std::vector<HostileOperation> operations = hostileOperations(server.address());
    std::vector<Done> plainly;
    int count_ = 0;
};

TEST_F(HostileReply, TableIsLargeEnough)
{
    EXPECT_GE(allRows().size(), 150U);
    EXPECT_GE(operations.size(), 45U);
    std::cout << "rows | " << allRows().size() << " | operations | " << operations.size() << "\n";
}

TEST_F(HostileReply, EachRowAndEachOperation)
{
    const auto rows = allRows();
    const std::size_t tabs = operationNamed("getTabs");
    ASSERT_LT(tabs, operations.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t at = 0; at < operations.size(); ++at)
            if (isWhole() || at == tabs || at == row % operations.size()) run(rows[row], at);
    }
}

TEST_F(HostileReply, ConnectionThatEndsAtEachByte)
{
    const std::string length = replyWith("HTTP/1.1 200 OK");
    const std::string head = "HTTP/1.1 200 OK\r\n";
    const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n3E\r\n" + kSuccess + "\r\n0\r\n\r\n";
    const std::size_t tabs = operationNamed("getTabs");
    for (const std::string& whole : {length, chunked}) {
        // The empty line behind the last chunk is the end to some and no loss to others.
        const std::size_t end = whole.size() - (whole == chunked ? 2 : 0);
        for (std::size_t at = 0; at < operations.size(); ++at) {
            if (!isWhole() && at != tabs) continue;
            for (std::size_t cut = 0; cut < end; ++cut) {
                endAt(whole, cut, false, lost(), at);
                endAt(whole, cut, true, lost(), at);
            }
            endAt(whole, whole.size(), false, plain(), at);
            endAt(whole, whole.size(), true, plain(), at);
        }
    }
}

// Only the end of the connection ends it: what came is the reply, and is read as far as it goes.
TEST_F(HostileReply, ConnectionThatEndsAtEachByteOfAReplyWithoutALength)
{
    const std::string head = "HTTP/1.1 200 OK\r\n\r\n";
    const std::string result = "</result>";
    const std::size_t tabs = operationNamed("getTabs");
    for (std::size_t at = 0; at < operations.size(); ++at) {
        if (!isWhole() && at != tabs) continue;
        for (std::size_t cut = 0; cut <= head.size() + kSuccess.size(); ++cut) {
            const std::string whole = head + kSuccess;
            const bool hasResult = whole.substr(0, cut).find(result) != std::string::npos;
            endAt(whole, cut, false, cut < head.size() ? lost() : hasResult ? plain() : senseless(), at);
            // Wine now and then takes a reset for the end; real Windows documents ERROR_WINHTTP_CONNECTION_ERROR.
            const bool isSure = !runsUnderWine() || cut < head.size();
            endAt(whole, cut, true, isSure ? lost() : Outcome{Kind::either}, at);
        }
    }
}

}  // namespace
}  // namespace kzn::test
