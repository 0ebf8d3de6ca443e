// What a host is told of the timer that keeps the session alive, ticking for real.
#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <utility>

#include "pvtrace/pvtrace.h"
#include "tests/client/ClientFixture.h"

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class RefreshListenerTest : public ClientFixture {
protected:
    /// The service names the interval again with each tick, so that the ticks go on.
    void arm(CWapiClient& of, Milliseconds interval = 30ms)
    {
        shortenInterval(of, interval);
        CStringT cred;
        of.cloneSession("any"_w, {}, cred);
    }

    CWapiClient::RefreshListener keep()
    {
        return [this](int result) { told.push_back(result); };
    }

    bool isTold(std::size_t times)
    {
        return pumpUntil([&] { return told.size() >= times; });
    }

    std::unique_ptr<CWapiClient> otherClient() const
    {
        return std::make_unique<CWapiClient>(server.url(kOperationPath));
    }

    std::vector<int> told;
};

}  // namespace

TEST_F(RefreshListenerTest, IsToldOnceOfEachTickWithItsResult)
{
    client.onRefresh(keep());
    arm(client);
    const std::size_t before = requestCount();
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(requestCount(), before + told.size());

    otherwise(resultReply("FAILURE", "<response><reason>gone</reason></response>"));
    told.clear();
    ASSERT_TRUE(isTold(2));
    EXPECT_THAT(told, ElementsAre(0, 0));
    otherwise(sessionReply(60));
    ASSERT_TRUE(isTold(3));
    EXPECT_THAT(told, ElementsAre(0, 0, 1));
}

TEST_F(RefreshListenerTest, FindsWhyARefreshFailed)
{
    std::string response;
    client.onRefresh([&](int) { response = narrow(client.GetLstMsg().response); });
    arm(client);
    otherwise(resultReply("FAILURE"));
    ASSERT_TRUE(pumpUntil([&] { return !response.empty(); }));
    EXPECT_EQ(response, resultReply("FAILURE"));
}

TEST_F(RefreshListenerTest, IsToldOnTheThreadOfTheLoop)
{
    std::optional<std::thread::id> thread;
    client.onRefresh([&](int) { thread = std::this_thread::get_id(); });
    arm(client);
    ASSERT_TRUE(pumpUntil([&] { return thread.has_value(); }));
    EXPECT_EQ(*thread, std::this_thread::get_id());
}

TEST_F(RefreshListenerTest, IsNotToldBeforeTheLoopRuns)
{
    client.onRefresh(keep());
    arm(client);
    std::this_thread::sleep_for(100ms);
    std::vector<CZelTab> tabs;
    client.getTabs({}, {}, tabs);
    EXPECT_THAT(told, ElementsAre());
    EXPECT_TRUE(isTold(1));
}

TEST_F(RefreshListenerTest, IsNotToldOfTheHostsOwnCalls)
{
    client.onRefresh(keep());
    otherwise(sessionReply(7'200'000));
    EXPECT_EQ(client.getSessionInfo("any"_w), 1);
    otherwise(resultReply("FAILURE"));
    EXPECT_EQ(client.getSessionInfo("any"_w), 0);
    EXPECT_TRUE(staysQuiet(100ms));
    EXPECT_THAT(told, ElementsAre());
}

TEST_F(RefreshListenerTest, MaySignInAgain)
{
    client.setRootCred("old"_w);
    client.onRefresh([&](int result) {
        told.push_back(result);
        if (result == 1) return;
        reply(credReply("new"));
        told.push_back(client.login("anna"_w, {}, {}, "secret"_w, 0, 1) + 10);
        otherwise(sessionReply(60));
    });
    arm(client);
    otherwise(resultReply("FAILURE"));
    ASSERT_TRUE(isTold(3));
    EXPECT_THAT(told, ElementsAre(0, 11, 1));
    EXPECT_EQ(narrow(client.getRootCred()), "new");
    EXPECT_THAT(lastBody(), testing::StartsWith("cmd=get&cred=new&"));
}

TEST_F(RefreshListenerTest, MayClearItself)
{
    const auto alive = std::make_shared<int>(0);
    client.onRefresh([this, alive](int result) {
        client.onRefresh(nullptr);
        told.push_back(result + static_cast<int>(alive.use_count() > 1));
    });
    arm(client);
    ASSERT_TRUE(isTold(1));
    EXPECT_EQ(alive.use_count(), 1);
    EXPECT_TRUE(nextTickComes());
    EXPECT_THAT(told, ElementsAre(2));
}

TEST_F(RefreshListenerTest, MayReplaceItself)
{
    client.onRefresh([this](int) {
        client.onRefresh(keep());
        told.push_back(42);
    });
    arm(client);
    ASSERT_TRUE(isTold(3));
    EXPECT_THAT(told, ElementsAre(42, 1, 1));
}

TEST_F(RefreshListenerTest, MayDestroyTheClient)
{
    auto other = otherClient();
    other->onRefresh([&](int result) {
        other.reset();
        told.push_back(result);
    });
    arm(*other);
    ASSERT_TRUE(isTold(1));
    EXPECT_TRUE(staysQuiet(150ms));
    EXPECT_THAT(told, ElementsAre(1));
}

TEST_F(RefreshListenerTest, MayDestroyTheClientAndLeaveACopy)
{
    auto other = otherClient();
    other->onRefresh([&](int result) {
        other.reset();
        told.push_back(result);
    });
    arm(*other);
    CWapiClient copy(*other);
    ASSERT_TRUE(isTold(3));
    copy.onRefresh(nullptr);
    EXPECT_EQ(other, nullptr);
}

TEST_F(RefreshListenerTest, MayAssignAnotherClient)
{
    auto other = otherClient();
    client.onRefresh([&](int result) {
        client = *other;
        told.push_back(result);
    });
    arm(client);
    ASSERT_TRUE(isTold(1));
    EXPECT_TRUE(staysQuiet(150ms));
    EXPECT_THAT(told, ElementsAre(1));
}

TEST_F(RefreshListenerTest, MayRunALoopOfItsOwn)
{
    client.onRefresh([&](int) {
        told.push_back(static_cast<int>(told.size()));
        if (told.size() == 1) isTold(2);
        told.push_back(-1);
    });
    arm(client);
    ASSERT_TRUE(isTold(4));
    EXPECT_THAT(told, ElementsAre(0, 1, -1, -1));
}

TEST_F(RefreshListenerTest, IsNotToldOnceTheClientIsGone)
{
    {
        auto other = otherClient();
        other->onRefresh(keep());
        arm(*other);
        std::this_thread::sleep_for(100ms);
    }
    EXPECT_TRUE(staysQuiet(150ms));
    EXPECT_THAT(told, ElementsAre());
}

TEST_F(RefreshListenerTest, OfACopyIsToldOnceTheTicksGoThere)
{
    auto oldest = otherClient();
    oldest->onRefresh(keep());
    arm(*oldest);
    CWapiClient copy(*oldest);
    const std::size_t before = requestCount();
    ASSERT_TRUE(isTold(3));
    EXPECT_EQ(requestCount(), before + told.size()) << "told of a tick by both";

    copy.onRefresh([this](int result) { told.push_back(result + 10); });
    told.clear();
    ASSERT_TRUE(isTold(1));
    EXPECT_EQ(told.front(), 1);
    oldest.reset();
    told.clear();
    ASSERT_TRUE(isTold(2));
    EXPECT_THAT(told, ElementsAre(11, 11));
}

// A host that shows a window in a listener runs its loop there, and a tick that is due comes in the middle of a call.
TEST_F(RefreshListenerTest, MayBeToldInALoopThatAnExchangeListenerRuns)
{
    client.onRefresh(keep());
    arm(client);
    bool isOuter = true;
    client.onExchange([&](const CWapiClient::Exchange&) { return !std::exchange(isOuter, false) || isTold(1); });
    std::this_thread::sleep_for(50ms);
    reply(sessionReply(60));
    reply(credReply("of the call"));
    CStringT cred;
    EXPECT_EQ(client.cloneSession("any"_w, {}, cred), 1);
    EXPECT_EQ(narrow(cred), "of the call");
    EXPECT_EQ(told.front(), 1);
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
    told.clear();
    EXPECT_TRUE(isTold(1));
}

namespace {

// Not within itself: a tick writes lines too, and on a slow machine the next one is due by then.
void pumpInSink(int, const kzn::pvutil::stringex::CharT*)
{
    static bool isPumping = false;
    if (std::exchange(isPumping, true)) return;
    kzn::pvutil::DispatchPendingMessages();
    isPumping = false;
}

}  // namespace

TEST_F(RefreshListenerTest, MayBeToldInALoopThatATraceSinkRuns)
{
    client.onRefresh(keep());
    arm(client, 10ms);
    otherwise(sessionReply(20));
    PvTraceSetSink(&pumpInSink);
    for (int times = 0; times < 20; ++times) {
        std::this_thread::sleep_for(12ms);
        EXPECT_EQ(client.callWapi("c"_w, "cmd=x"_w), 1);
    }
    PvTraceSetSink(nullptr);
    EXPECT_FALSE(told.empty());
    EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
    told.clear();
    EXPECT_TRUE(isTold(1));
}
