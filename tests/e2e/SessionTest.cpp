// Sessions through the library: signing in, staying, being sent away.
#include <thread>

#include "pvutil/MessageLoop.h"
#include "tests/e2e/EndToEndFixture.h"

namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

using SessionTest = EndToEndFixture;

}  // namespace

TEST_F(SessionTest, SignsInWithAPasswordOrAToken)
{
    CWapiClient other(serviceUrl());
    EXPECT_EQ(other.login("ben"_w, "ben-token-1"_w, {}, {}, 1, 1), 1);
    EXPECT_NE(other.getRootCred(), CStringT());
    EXPECT_NE(other.getRootCred(), cred);
}

TEST_F(SessionTest, RefusesWrongSecretsAndLeavesTheSession)
{
    expectRefused(client.login("anna"_w, {}, {}, "wrong"_w, 0, 1), client, "KZN:LoginRefused");
    expectRefused(client.login("nobody"_w, {}, {}, "anna-demo-1"_w, 0, 1), client, "KZN:LoginRefused");
    expectRefused(client.login("anna"_w, "anna-demo-1"_w, {}, {}, 1, 1), client, "KZN:LoginRefused");
    expectRefused(client.login("anna"_w, {}, "no provider"_w, "anna-demo-1"_w, 0, 1), client, "KZN:LoginRefused");
    expectRefused(client.login("é𝄞 &=%"_w, {}, {}, "]]>"_w, 0, 1), client, "KZN:LoginRefused");
    EXPECT_EQ(client.getRootCred(), cred);
    EXPECT_EQ(client.getSessionInfo(cred), 1);
    EXPECT_EQ(client.GetLstMsg().reason, CStringT());
}

TEST_F(SessionTest, ReadsTheSessionsDuration)
{
    EXPECT_EQ(client.getRefreshInterval(), 3'600'000U);
    EXPECT_EQ(client.getSessionInfo(cred), 1);
    EXPECT_EQ(client.getRefreshInterval(), kSession.count() / 2);
}

TEST_F(SessionTest, DerivesCredentialsFromASession)
{
    CStringT further;
    ASSERT_EQ(client.cloneSession(cred, {}, further), 1);
    EXPECT_NE(further, cred);
    EXPECT_EQ(client.getSessionInfo(further), 1);
    EXPECT_EQ(client.getRootCred(), cred);

    const Listing listing(client);
    const SpaceForList* stand = listing.find("Messestand Köln"_w);
    ASSERT_NE(stand, nullptr);
    EXPECT_EQ(client.cloneSession(cred, stand->workspaceID, further), 1);
    EXPECT_EQ(client.getSessionInfo(further), 1);

    CStringT untouched = "before"_w;
    EXPECT_EQ(client.cloneSession(cred, "no such workspace"_w, untouched), 0);
    EXPECT_EQ(untouched, "before"_w);
    EXPECT_NE(client.GetLstMsg().reason, CStringT());
}

TEST_F(SessionTest, EndsASessionWithTheLogout)
{
    EXPECT_EQ(client.logout(cred), 1);
    expectRefused(client.getSessionInfo(cred), client, "KZN:InvalidCredential");
    EXPECT_EQ(client.logout(cred), 1);
    EXPECT_EQ(client.getRootCred(), cred);
}

TEST_F(SessionTest, FindsAnUnusedSessionExpiredAndRenewsIt)
{
    std::this_thread::sleep_for(kSession + 300ms);
    expectRefused(client.getSessionInfo(cred), client, "KZN:SessionExpired");

    CStringT fresh;
    ASSERT_EQ(client.getCredForExpired(fresh, "anna"_w, {}, {}, "anna-demo-1"_w, 0), 1);
    EXPECT_EQ(client.getRootCred(), cred);
    client.setRootCred(fresh);
    EXPECT_EQ(client.getSessionInfo(fresh), 1);
}

TEST_F(SessionTest, KeepsTheSessionAliveWhileTheHostsLoopRuns)
{
    ASSERT_EQ(client.getSessionInfo(cred), 1);
    const Listing listing(client);  // re-arms the timer with the session's own interval
    const auto end = std::chrono::steady_clock::now() + 2 * kSession + 500ms;
    while (std::chrono::steady_clock::now() < end) {
        kzn::pvutil::DispatchPendingMessages();
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_EQ(client.getSessionInfo(cred), 1) << "without the ticks it would have expired twice over";
}

TEST_F(SessionTest, PassesCommandsOfTheHostsOwn)
{
    EXPECT_EQ(client.callWapi(cred, "cmd=get&type=sessionInfo&id=sessioninfo&select=sessionInfo"_w), 1);
    expectRefused(client.callWapi(cred, "cmd=juggle"_w), client, "KZN:UnknownCommand");
    expectRefused(client.callWapi("no cred"_w, "cmd=get&type=user"_w), client, "KZN:InvalidCredential");

    CStringT reply;
    const CStringT command = "cmd=get&type=sessionInfo&id=sessioninfo&select=sessionInfo"_w;
    EXPECT_EQ(client.WapiProxyCall(cred, command, CWapiClient::METHOD_POST, serviceUrl(), {}, 1, reply), 1);
    EXPECT_THAT(narrow(reply), HasSubstr("<sessionDuration>6000</sessionDuration>"));
}
