// A host in control of its calls: why one failed, ending it, its deadline, and what goes over the wire.
#include <atomic>
#include <string_view>

#include "tests/client/ClientFixture.h"
#include "tests/client/TimedOperations.h"
#include "tests/support/TraceLines.h"

namespace {

using namespace std::chrono_literals;
using kzn::test::CaptureServer;
using kzn::test::replyText;
using kzn::test::Script;
using Kind = CWapiClient::NETWORK_ERROR;

// What is asked for is a tenth of a second; a loaded machine has its threads wait longer than that.
constexpr auto kAtOnce = 500ms;

class ControlTest : public ClientFixture {
protected:
    static CStringT closedUrl()
    {
        return wide("http://127.0.0.1:" + std::to_string(CaptureServer::closedPort()) + kOperationPath);
    }

    int call(CWapiClient& of) { return of.callWapi("c"_w, "cmd=get"_w); }

    // Runs `operation` and cancels it from another thread once the server has its request, or it has ended without.
    template <typename Operation>
    int cancelled(CWapiClient& of, Operation operation)
    {
        std::atomic<bool> over = false;
        std::atomic<Clock::time_point> at = Clock::time_point::max();
        std::jthread other([&] {
            while (!over && requestCount() == 0) std::this_thread::sleep_for(1ms);
            at = Clock::now();
            of.cancel();
        });
        const int result = operation();
        over = true;
        const auto end = Clock::now();
        other.join();
        EXPECT_LT(end, at.load() + kAtOnce);
        return result;
    }

    void expectPinnedMessage(CWapiClient& of)
    {
        const WAPIMESSAGE message = of.GetLstMsg();
        EXPECT_EQ(narrow(message.reason), "Network error. Unable to connect to" + narrow(of.getOpURL()));
        EXPECT_EQ(message.code, 0);
        EXPECT_TRUE(message.exceptionID.empty());
        EXPECT_TRUE(message.response.empty());
    }
};

}  // namespace

TEST_F(ControlTest, NewClientHasNoCause)
{
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
    EXPECT_EQ(narrow(client.getNetworkErrorText()), "");
}

TEST_F(ControlTest, CauseStaysUntilTheNextRequest)
{
    const CStringT url = closedUrl();
    CWapiClient lost(url);
    EXPECT_EQ(call(lost), 0);
    EXPECT_EQ(lost.getNetworkError(), 1);
    EXPECT_EQ(lost.getNetworkErrorKind(), CWapiClient::NETWORK_REFUSED);
    const std::string host = narrow(url).substr(7, narrow(url).find('/', 7) - 7);
    EXPECT_TRUE(narrow(lost.getNetworkErrorText()).starts_with("Connecting to " + host + ": "));
    expectPinnedMessage(lost);

    const CWapiClient copy(lost);
    EXPECT_EQ(copy.getNetworkErrorKind(), CWapiClient::NETWORK_REFUSED);
    EXPECT_TRUE(copy.getNetworkErrorText() == lost.getNetworkErrorText());
    client = lost;
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_REFUSED);
}

TEST_F(ControlTest, ReplyOfAnyKindHasNoCause)
{
    server.script(Script().close());
    EXPECT_EQ(call(client), 0);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_CLOSED);
    server.reply(500, "text/plain", "out of order");
    EXPECT_EQ(call(client), 0);
    EXPECT_EQ(client.getNetworkError(), 0);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
    EXPECT_EQ(narrow(client.getNetworkErrorText()), "");
}

TEST_F(ControlTest, CauseIsTracedBehindTheFailure)
{
    CWapiClient lost(closedUrl());
    const TraceLines trace;
    EXPECT_EQ(call(lost), 0);
    const auto& lines = TraceLines::all();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1], "0 Error: Network error. Unable to connect to" + narrow(lost.getOpURL()));
    EXPECT_EQ(lines[2], "0 Error: CWapiClient: " + narrow(lost.getNetworkErrorText()));
}

TEST_F(ControlTest, NothingMoreIsTracedWhereAReplyCame)
{
    server.reply(500, "text/plain", "out of order");
    const TraceLines trace;
    EXPECT_EQ(call(client), 0);
    for (const std::string& line : TraceLines::all()) EXPECT_FALSE(line.starts_with("0 ")) << line;
}

TEST_F(ControlTest, ProxiedCallTellsItsCauseAndLeavesTheRest)
{
    CStringT reply = "before"_w;
    const TraceLines trace;
    EXPECT_EQ(client.WapiProxyCall({}, "cmd=get"_w, CWapiClient::METHOD_POST, closedUrl(), {}, 1, reply), 0);
    EXPECT_EQ(client.getNetworkError(), 0);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_REFUSED);
    EXPECT_EQ(narrow(reply), "");
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "");
    ASSERT_EQ(TraceLines::all().size(), 5U);
    EXPECT_EQ(TraceLines::all()[3], "0 Error: CWapiClient: " + narrow(client.getNetworkErrorText()));

    server.reply(404, "text/plain", "not here");
    client.WapiProxyCall({}, "cmd=get"_w, CWapiClient::METHOD_POST, server.url("/x"), {}, 1, reply);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
}

TEST_F(ControlTest, PictureTellsItsCause)
{
    CStringT path = "before"_w;
    EXPECT_EQ(client.GetSpaceIcon("c"_w, "http://no-such-host.invalid/x.png"_w, path), 0);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NO_SUCH_HOST);
    EXPECT_EQ(narrow(client.getNetworkErrorText()).find("cred"), std::string::npos);
    EXPECT_EQ(narrow(path), "before");
    server.reply(404, "text/plain", "not here");
    EXPECT_EQ(client.GetSpaceIcon("c"_w, server.url("/x.png"), path), 0);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
}

TEST_F(ControlTest, SigningOutLeavesTheCause)
{
    CWapiClient lost(closedUrl());
    EXPECT_EQ(lost.logout("c"_w), 1);
    EXPECT_EQ(lost.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
    EXPECT_EQ(call(lost), 0);
    EXPECT_EQ(lost.logout("c"_w), 1);
    EXPECT_EQ(lost.getNetworkErrorKind(), CWapiClient::NETWORK_REFUSED);
}

// ---- Ending a call --------------------------------------------------------------------------------------------------

namespace {

class CancelledOperationTest : public ControlTest, public testing::WithParamInterface<std::size_t> {};

}  // namespace

TEST_P(CancelledOperationTest, EndsAtOnceAndTheNextOneIsServed)
{
    const TimedOperation& operation = timedOperations().at(GetParam());
    client.setRootCred("root"_w);
    server.otherwise(Script().stall());
    const int result = cancelled(client, [&] { return operation.call(client); });
    const std::string_view name = operation.name;
    if (operation.refused() || name == "GetSpacesTest" || name == "loginNotSent") {
        EXPECT_EQ(requestCount(), 0U);  // there was nothing to end
        EXPECT_NE(client.getNetworkErrorKind(), CWapiClient::NETWORK_CANCELLED);
    } else if (name == "logout") {
        EXPECT_EQ(result, 1);
    } else {
        EXPECT_EQ(result, name == "OnTimer" ? 1 : 0);
        EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_CANCELLED) << narrow(client.getNetworkErrorText());
    }
    EXPECT_EQ(narrow(client.getRootCred()), "root");
    otherwise(resultReply("SUCCESS"));
    EXPECT_EQ(call(client), 1);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
}

INSTANTIATE_TEST_SUITE_P(Operations, CancelledOperationTest, testing::Range(std::size_t{0}, timedOperations().size()),
                         [](const auto& each) { return std::string(timedOperations()[each.param].name); });

TEST_F(ControlTest, CancelledCallHasThePinnedMessage)
{
    server.otherwise(Script().stall());
    std::vector<CZelTab> tabs(3);
    EXPECT_EQ(cancelled(client, [&] { return client.getTabs("c"_w, "w"_w, tabs); }), 0);
    expectPinnedMessage(client);
    EXPECT_EQ(client.getNetworkError(), 1);
    EXPECT_EQ(tabs.size(), 3U);
}

TEST_F(ControlTest, CancelWithoutACallIsNothing)
{
    otherwise(resultReply("SUCCESS"));
    client.cancel();
    EXPECT_EQ(call(client), 1);
    client.cancel();
    client.cancel();
    EXPECT_EQ(call(client), 1);
}

TEST_F(ControlTest, CancelIsForOneClientOnly)
{
    otherwise(resultReply("SUCCESS"));
    server.script(Script().pause(300ms).send(replyText(200, "text/xml", resultReply("SUCCESS"))));
    CWapiClient copy(client);
    const std::jthread other([&] {
        for (int times = 0; times < 20; ++times, std::this_thread::sleep_for(10ms)) copy.cancel();
    });
    EXPECT_EQ(call(client), 1);
}

TEST_F(ControlTest, CancelFromInsideACallSendsNothing)
{
    client.onExchange([&](const CWapiClient::Exchange&) {
        client.cancel();
        return true;
    });
    EXPECT_EQ(call(client), 0);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_CANCELLED);
    EXPECT_EQ(requestCount(), 0U);
}

// ---- The deadline ---------------------------------------------------------------------------------------------------

TEST_F(ControlTest, DeadlineIsForTheWholeOfEachCall)
{
    Script drip;
    drip.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
    for (int times = 0; times < 200; ++times) drip.pause(20ms).send("x");
    server.otherwise(drip);
    client.setDeadline(200);
    for (int times = 0; times < 2; ++times) {
        const auto begin = Clock::now();
        EXPECT_EQ(call(client), 0);
        EXPECT_GE(Clock::now() - begin, 180ms);
        EXPECT_LT(Clock::now() - begin, 200ms + kAtOnce);
        EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_DEADLINE);
        expectPinnedMessage(client);
    }
}

TEST_F(ControlTest, NoDeadlineAgain)
{
    client.setDeadline(30);
    const CWapiClient copy(client);
    client.setDeadline(0);
    server.otherwise(Script().pause(150ms).send(replyText(200, "text/xml", resultReply("SUCCESS"))));
    EXPECT_EQ(call(client), 1);
    CWapiClient assigned({});
    assigned = copy;
    EXPECT_EQ(call(assigned), 0);
    EXPECT_EQ(assigned.getNetworkErrorKind(), CWapiClient::NETWORK_DEADLINE);
}

// ---- What goes over the wire ----------------------------------------------------------------------------------------

namespace {

struct Seen {
    CWapiClient::METHOD_TYPE method;
    std::string url;
    std::vector<std::string> headers;
    std::string body;
    int status;
    std::string reply;
};

}  // namespace

TEST_F(ControlTest, ExchangeIsSeenBeforeAndAfter)
{
    std::vector<Seen> seen;
    client.onExchange([&](const CWapiClient::Exchange& exchange) {
        std::string body;
        for (const std::string_view piece : exchange.body) body += piece;
        seen.push_back({exchange.method, std::string(exchange.url),
                        std::vector<std::string>(exchange.headers.begin(), exchange.headers.end()), body,
                        exchange.status, std::string(exchange.reply)});
        return true;
    });
    server.reply(201, "text/xml", resultReply("SUCCESS"));
    EXPECT_EQ(call(client), 1);
    ASSERT_EQ(seen.size(), 2U);
    for (const Seen& each : seen) {
        EXPECT_EQ(each.method, CWapiClient::METHOD_POST);
        EXPECT_EQ(each.url, server.address(kOperationPath));
        EXPECT_EQ(each.body, "cmd=get&cred=c");
        EXPECT_EQ(each.body, lastBody());
        for (const std::string& line : each.headers) {
            const std::size_t colon = line.find(": ");
            ASSERT_NE(colon, std::string::npos) << line;
            EXPECT_EQ(server.requests().back().header(line.substr(0, colon)), line.substr(colon + 2));
        }
    }
    EXPECT_EQ(seen[0].status, 0);
    EXPECT_EQ(seen[0].reply, "");
    EXPECT_EQ(seen[1].status, 201);
    EXPECT_EQ(seen[1].reply, resultReply("SUCCESS"));

    server.script(Script().close());
    EXPECT_EQ(call(client), 0);
    EXPECT_EQ(seen.back().status, -1);
    EXPECT_EQ(seen.back().reply, "");
}

TEST_F(ControlTest, RedirectIsAnExchangeOfItsOwn)
{
    std::vector<std::string> urls;
    client.onExchange([&](const CWapiClient::Exchange& exchange) {
        if (exchange.status != 0) urls.push_back(std::to_string(exchange.status) + ' ' + std::string(exchange.url));
        return true;
    });
    server.reply(302, "", "", {{"Location", "/there"}});
    server.reply(404, "", "");
    CStringT path;
    EXPECT_EQ(client.GetSpaceIcon("c"_w, server.url("/here"), path), 0);
    EXPECT_EQ(urls,
              (std::vector<std::string>{"302 " + server.address("/here?cred=c"), "404 " + server.address("/there")}));
}

TEST_F(ControlTest, ExchangeThatIsNotWantedIsNotSent)
{
    client.onExchange([](const CWapiClient::Exchange&) { return false; });
    EXPECT_EQ(call(client), 0);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_CANCELLED);
    EXPECT_EQ(client.logout("c"_w), 1);
    EXPECT_EQ(server.connections(), 0U);
    client.onExchange({});
    otherwise(resultReply("SUCCESS"));
    EXPECT_EQ(call(client), 1);
}
