// The timer that keeps the session alive, ticking for real.
#include "pvtrace/pvtrace.h"
#include "tests/client/ClientFixture.h"
#include "tests/client/TimedOperations.h"
#include "tests/support/TraceLines.h"

namespace {

using RefreshTimerTest = ClientFixture;
using namespace std::chrono_literals;

const std::string kSessionRequest = "cmd=get&cred=root%20cred&type=sessionInfo&id=sessioninfo&select=sessionInfo";

/// Re-arms the timer, whatever the service answers.
void rearm(CWapiClient& client)
{
    CStringT cred;
    client.cloneSession("any"_w, {}, cred);
}

int createSpace(CWapiClient& client, const CStringT& name)
{
    std::vector<CWapiClient::WKSP_Field_Value> fields;
    CStringT id;
    return client.createSpace({}, name, fields, id, 0, 0);
}

class TimedOperationTest : public ClientFixture, public testing::WithParamInterface<std::size_t> {};

}  // namespace

TEST_P(TimedOperationTest, ArmsTheTimerOrLeavesIt)
{
    const TimedOperation& operation = timedOperations().at(GetParam());
    shortenInterval(client, 50ms);
    EXPECT_EQ(operation.call(client), operation.refused() ? 0 : 1);
    if (operation.arms != Arms::never) EXPECT_TRUE(nextTickComes());
    else EXPECT_TRUE(staysQuiet());
}

// The answer takes longer than the interval: whoever armed the timer first has a tick waiting when the call returns.
TEST_P(TimedOperationTest, ArmsTheTimerBeforeItAsksAndWhateverIsAnswered)
{
    const TimedOperation& operation = timedOperations().at(GetParam());
    shortenInterval(client, 20ms);
    const std::string refusal = resultReply("FAILURE");
    server.otherwise(kzn::test::Script().pause(60ms).send(
        "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: " + std::to_string(refusal.size()) + "\r\n\r\n" +
        refusal));
    operation.call(client);
    const bool isDue = kzn::pvutil::DispatchPendingMessages() > 0;
    switch (operation.arms) {
    case Arms::atEntry: EXPECT_TRUE(isDue || (operation.refused() && nextTickComes())); break;
    case Arms::afterAnswer: EXPECT_TRUE(!isDue && nextTickComes()); break;
    case Arms::afterSuccess:
    case Arms::never: EXPECT_TRUE(!isDue && staysQuiet(100ms)); break;
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, TimedOperationTest, testing::Range(std::size_t{0}, timedOperations().size()),
                         [](const auto& of) { return std::string(timedOperations().at(of.param).name); });

TEST_F(RefreshTimerTest, AsksForTheSessionWithTheRootCredential)
{
    client.setRootCred("root cred"_w);
    shortenInterval(client, 200ms);
    const auto armed = Clock::now();
    rearm(client);
    ASSERT_TRUE(nextTickComes());
    EXPECT_GE(Clock::now() - armed, 180ms);
    EXPECT_EQ(lastBody(), kSessionRequest);
}

TEST_F(RefreshTimerTest, IsPushedBackByEachOperationThatRearms)
{
    shortenInterval(client, 600ms);
    rearm(client);
    auto armed = Clock::now();
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(staysQuiet(300ms)) << "round " << i;
        armed = Clock::now();
        rearm(client);
    }
    ASSERT_TRUE(nextTickComes());
    EXPECT_GE(Clock::now() - armed, 550ms);
}

TEST_F(RefreshTimerTest, IsPushedBackByARefusalWithoutARequest)
{
    shortenInterval(client, 600ms);
    rearm(client);
    ASSERT_TRUE(staysQuiet(300ms));
    const auto armed = Clock::now();
    ASSERT_EQ(createSpace(client, {}), 0);
    ASSERT_TRUE(nextTickComes());
    EXPECT_GE(Clock::now() - armed, 550ms);
}

TEST_F(RefreshTimerTest, StartsEvenWhenTheOperationFails)
{
    shortenInterval(client, 50ms);
    otherwise(resultReply("FAILURE"));
    rearm(client);
    EXPECT_TRUE(nextTickComes());
}

TEST_F(RefreshTimerTest, DoesNotStartWithAFailedLogin)
{
    shortenInterval(client, 50ms);
    otherwise(resultReply("FAILURE"));
    ASSERT_EQ(client.login({}, {}, {}, {}, 0, 1), 0);
    EXPECT_TRUE(staysQuiet());
}

TEST_F(RefreshTimerTest, GoesOnThroughALogoutAndAFailedLogin)
{
    shortenInterval(client, 50ms);
    rearm(client);
    otherwise(resultReply("FAILURE"));
    client.logout({});
    EXPECT_TRUE(nextTickComes());
    EXPECT_EQ(client.login({}, {}, {}, {}, 0, 1), 0);
    EXPECT_TRUE(nextTickComes());
    CStringT cred;
    EXPECT_EQ(client.getCredForExpired(cred, {}, {}, {}, {}, 0), 0);
    EXPECT_TRUE(nextTickComes());
}

namespace {

int ticksAtEnter = 0;

/// Takes longer than the interval when an operation is entered, and sees what is due then.
void dawdle(int, const kzn::pvutil::stringex::CharT* text)
{
    if (narrow(text).find("Enter CWapiClient::getTabs") == std::string::npos) return;
    PvTraceSetSink(nullptr);
    std::this_thread::sleep_for(60ms);
    ticksAtEnter = kzn::pvutil::DispatchPendingMessages();
}

}  // namespace

TEST_F(RefreshTimerTest, IsArmedBeforeTheOperationIsTraced)
{
    shortenInterval(client, 20ms);
    ticksAtEnter = 0;
    PvTraceSetSink(&dawdle);
    std::vector<CZelTab> tabs;
    client.getTabs({}, {}, tabs);
    PvTraceSetSink(nullptr);
    EXPECT_EQ(ticksAtEnter, 1);
}

TEST_F(RefreshTimerTest, StartsWithALoginAndUsesItsCredential)
{
    shortenInterval(client, 50ms);
    reply(credReply("root cred"));
    ASSERT_EQ(client.login({}, {}, {}, {}, 0, 1), 1);
    ASSERT_TRUE(nextTickComes());
    EXPECT_EQ(lastBody(), kSessionRequest);
}

TEST_F(RefreshTimerTest, GoesOnAfterAFailedRefresh)
{
    shortenInterval(client, 50ms);
    rearm(client);
    otherwise(resultReply("FAILURE"));
    ASSERT_TRUE(nextTickComes());
    EXPECT_EQ(narrow(client.GetLstMsg().response), resultReply("FAILURE"));
    EXPECT_EQ(client.getRefreshInterval(), 50U);
    EXPECT_TRUE(nextTickComes());
    EXPECT_TRUE(nextTickComes());
}

TEST_F(RefreshTimerTest, TakesTheNewIntervalFromTheTickOn)
{
    shortenInterval(client, 50ms);
    rearm(client);
    otherwise(sessionReply(1'000'000));
    ASSERT_TRUE(nextTickComes());
    EXPECT_EQ(client.getRefreshInterval(), 500'000U);
    EXPECT_TRUE(staysQuiet());
}

TEST_F(RefreshTimerTest, DoesNotRaceWithANegativeInterval)
{
    otherwise(sessionReply(-100));
    ASSERT_EQ(client.getSessionInfo({}), 1);
    ASSERT_EQ(client.getRefreshInterval(), 4'294'967'246U);
    rearm(client);
    EXPECT_TRUE(staysQuiet());
}

TEST_F(RefreshTimerTest, CollapsesTicksThatNobodyDispatched)
{
    shortenInterval(client, 50ms);
    rearm(client);
    otherwise(sessionReply(1'000'000));
    std::this_thread::sleep_for(500ms);
    const std::size_t before = requestCount();
    ASSERT_TRUE(nextTickComes());
    EXPECT_TRUE(staysQuiet());
    EXPECT_EQ(requestCount(), before + 1);
}

TEST_F(RefreshTimerTest, EndsWithTheClient)
{
    {
        CWapiClient shortLived(server.url(kOperationPath));
        shortenInterval(shortLived, 50ms);
        rearm(shortLived);
        ASSERT_TRUE(nextTickComes());
    }
    EXPECT_TRUE(staysQuiet());
}

TEST_F(RefreshTimerTest, EndsWithTheClientEvenWhenATickIsDue)
{
    {
        CWapiClient shortLived(server.url(kOperationPath));
        shortenInterval(shortLived, 20ms);
        rearm(shortLived);
        std::this_thread::sleep_for(100ms);
    }
    EXPECT_TRUE(staysQuiet());
}

TEST_F(RefreshTimerTest, BelongsToOneClientEach)
{
    CWapiClient other(server.url(kOperationPath));
    other.setRootCred("other"_w);
    shortenInterval(client, 50ms);
    client.setRootCred("root cred"_w);
    rearm(client);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(nextTickComes());
        EXPECT_EQ(lastBody(), kSessionRequest);
    }
}

TEST_F(RefreshTimerTest, TracesTheTickBeforeItsRequest)
{
    client.setRootCred("root cred"_w);
    otherwise(sessionReply(7'200'000));
    const TraceLines trace;
    client.OnTimer(42);
    EXPECT_EQ(TraceLines::all(), (std::vector<std::string>{
                                     "9 Debug: Refresh root cred timer.",
                                     "9 Debug: ---->>>> Enter CWapiClient::getSessionInfo",
                                     "9 Debug: " + kSessionRequest,
                                     "9 Debug: " + sessionReply(7'200'000),
                                     "9 Debug: Root Cred (user session) being refreshed.",
                                     "9 Debug: <<<<---- Leave CWapiClient::getSessionInfo",
                                 }));
    EXPECT_EQ(client.getRefreshInterval(), 3'600'000U);
}
