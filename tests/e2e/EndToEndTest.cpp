// The library and the stand-in service, end to end. TEST_SERVICE_URL is the operation endpoint of a service that was
// started for this program: the demo organisation, and sessions that live for six seconds without use.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "client/WapiClient.h"
#include "pvutil/MessageLoop.h"
#include "tests/support/Text.h"

namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

constexpr auto kSession = 6000ms;

CStringT serviceUrl()
{
    const char* url = std::getenv("TEST_SERVICE_URL");
    return wide(url != nullptr ? url : "http://no-service-was-started.invalid/");
}

class EndToEndTest : public testing::Test {
protected:
    int signIn(CWapiClient& of, const std::string& user)
    {
        return of.login(wide(user), {}, "Nordwind Messenger"_w, wide(user + "-demo-1"), 0, 1);
    }

    void SetUp() override
    {
        ASSERT_EQ(signIn(client, "anna"), 1) << narrow(client.GetLstMsg().reason);
        cred = client.getRootCred();
        ASSERT_FALSE(cred.empty());
    }

    std::vector<SpaceForList> spacesOf(CWapiClient& of)
    {
        std::vector<SpaceForList> spaces;
        invitations.clear();
        EXPECT_EQ(of.GetWkspList(of.getRootCred(), {}, {}, spaces, invitations), 1) << narrow(of.GetLstMsg().reason);
        return spaces;
    }

    static const SpaceForList* find(const std::vector<SpaceForList>& spaces, const std::string& name)
    {
        const auto found = std::ranges::find(spaces, wide(name), &SpaceForList::workspaceName);
        return found == spaces.end() ? nullptr : &*found;
    }

    void expectRefused(int result, const std::string& exceptionID)
    {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(narrow(client.GetLstMsg().exceptionID), exceptionID);
        EXPECT_NE(client.GetLstMsg().reason, CStringT());
        EXPECT_THAT(narrow(client.GetLstMsg().response), HasSubstr("FAILURE"));
        EXPECT_EQ(client.getNetworkError(), 0);
    }

    CWapiClient client{serviceUrl()};
    CStringT cred;
    std::vector<CZelSpaceInvite> invitations;
};

}  // namespace

TEST_F(EndToEndTest, SignsInWithAPasswordOrAToken)
{
    CWapiClient other(serviceUrl());
    EXPECT_EQ(other.login("ben"_w, "ben-token-1"_w, {}, {}, 1, 1), 1);
    EXPECT_NE(other.getRootCred(), CStringT());
    EXPECT_NE(other.getRootCred(), cred);
}

TEST_F(EndToEndTest, RefusesWrongSecretsAndLeavesTheSession)
{
    expectRefused(client.login("anna"_w, {}, {}, "wrong"_w, 0, 1), "KZN:LoginRefused");
    expectRefused(client.login("nobody"_w, {}, {}, "anna-demo-1"_w, 0, 1), "KZN:LoginRefused");
    expectRefused(client.login("anna"_w, "anna-demo-1"_w, {}, {}, 1, 1), "KZN:LoginRefused");
    expectRefused(client.login("anna"_w, {}, "no provider"_w, "anna-demo-1"_w, 0, 1), "KZN:LoginRefused");
    expectRefused(client.login("é𝄞 &=%"_w, {}, {}, "]]>"_w, 0, 1), "KZN:LoginRefused");
    EXPECT_EQ(client.getRootCred(), cred);
    EXPECT_EQ(client.getSessionInfo(cred), 1);
    EXPECT_EQ(client.GetLstMsg().reason, CStringT());
}

TEST_F(EndToEndTest, ReadsTheSessionsDuration)
{
    EXPECT_EQ(client.getRefreshInterval(), 3'600'000U);
    EXPECT_EQ(client.getSessionInfo(cred), 1);
    EXPECT_EQ(client.getRefreshInterval(), kSession.count() / 2);
}

TEST_F(EndToEndTest, ListsTheSpacesAndInvitationsOfTheUser)
{
    const std::vector<SpaceForList> spaces = spacesOf(client);
    const SpaceForList* stand = find(spaces, "Messestand Köln");
    ASSERT_NE(stand, nullptr);
    EXPECT_EQ(narrow(stand->status), "accepted");
    EXPECT_EQ(narrow(stand->userID), "user-anna");
    EXPECT_EQ(narrow(stand->userName), "anna");
    EXPECT_EQ(narrow(stand->type), "0");
    EXPECT_EQ(narrow(stand->isTemplate), "false");
    EXPECT_EQ(narrow(stand->description), "Plans and suppliers for the stand in Cologne");
    EXPECT_EQ(stand->role, 2);
    EXPECT_NE(stand->workspaceID, CStringT());
    EXPECT_NE(stand->namespaceID, CStringT());

    ASSERT_NE(find(spaces, "Autumn catalogue"), nullptr);
    const SpaceForList* archive = find(spaces, "Photo archive");
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(narrow(archive->userID), "user-ben");
    EXPECT_EQ(archive->role, 1);
    EXPECT_TRUE(invitations.empty());
}

TEST_F(EndToEndTest, ListsForEachUserWhatIsHers)
{
    CWapiClient clara(serviceUrl());
    ASSERT_EQ(signIn(clara, "clara"), 1);
    const std::vector<SpaceForList> spaces = spacesOf(clara);
    ASSERT_EQ(spaces.size(), 1U);
    EXPECT_EQ(narrow(spaces.front().workspaceName), "Autumn catalogue");
    EXPECT_EQ(spaces.front().role, 1);

    ASSERT_EQ(invitations.size(), 1U);
    EXPECT_EQ(narrow(invitations.front().workspaceName), "Messestand Köln");
    EXPECT_EQ(narrow(invitations.front().userDescriptor), "user-clara");
    EXPECT_EQ(narrow(invitations.front().ownerID), "user-anna");
    EXPECT_EQ(narrow(invitations.front().ownerName), "anna");
    EXPECT_EQ(invitations.front().inviteType, 1);
    EXPECT_EQ(invitations.front().inviteAsType, 1);
    EXPECT_NE(invitations.front().spaceInviteID, CStringT());
    EXPECT_NE(invitations.front().expires, CStringT());
}

TEST_F(EndToEndTest, MakesSpacesThatTheListThenShows)
{
    CWapiClient dmitri(serviceUrl());
    ASSERT_EQ(signIn(dmitri, "dmitri"), 1);
    const std::vector<SpaceForList> before = spacesOf(dmitri);

    const std::vector<std::string> names = {"Планы é𝄞😀", "two words", "100% a+b=c;d"};
    for (const std::string& name : names) {
        std::vector<CWapiClient::WKSP_Field_Value> fields = {{0, wide("about " + name)}, {1, "skipped"_w}};
        CStringT id = "before"_w;
        ASSERT_EQ(dmitri.createSpace(dmitri.getRootCred(), wide(name), fields, id, 0, 1), 1)
            << narrow(dmitri.GetLstMsg().reason);
        EXPECT_NE(id, "before"_w);

        const std::vector<SpaceForList> spaces = spacesOf(dmitri);
        const SpaceForList* made = find(spaces, name);
        ASSERT_NE(made, nullptr) << name;
        EXPECT_EQ(made->workspaceID, id);
        EXPECT_EQ(narrow(made->description), "about " + name);
        EXPECT_EQ(narrow(made->userName), "dmitri");
        EXPECT_EQ(made->role, 2);
    }
    EXPECT_EQ(spacesOf(dmitri).size(), before.size() + names.size());
}

TEST_F(EndToEndTest, MakesSpacesWhoseNamesHoldMarkup)
{
    CWapiClient dmitri(serviceUrl());
    ASSERT_EQ(signIn(dmitri, "dmitri"), 1);
    const std::string name = "R&D <plan> ]]>";
    std::vector<CWapiClient::WKSP_Field_Value> fields = {{0, "a & b < c ]]> d"_w}};
    CStringT id;
    ASSERT_EQ(dmitri.createSpace(dmitri.getRootCred(), wide(name), fields, id, 1, 0), 1)
        << narrow(dmitri.GetLstMsg().reason);

    const std::vector<SpaceForList> spaces = spacesOf(dmitri);
    const SpaceForList* made = find(spaces, name);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(narrow(made->type), "1");
    EXPECT_EQ(narrow(made->description), "a & b < c ]]> d");
}

TEST_F(EndToEndTest, DerivesCredentialsFromASession)
{
    CStringT further;
    ASSERT_EQ(client.cloneSession(cred, {}, further), 1);
    EXPECT_NE(further, cred);
    EXPECT_EQ(client.getSessionInfo(further), 1);
    EXPECT_EQ(client.getRootCred(), cred);

    const std::vector<SpaceForList> spaces = spacesOf(client);
    const SpaceForList* stand = find(spaces, "Messestand Köln");
    ASSERT_NE(stand, nullptr);
    EXPECT_EQ(client.cloneSession(cred, stand->workspaceID, further), 1);
    EXPECT_EQ(client.getSessionInfo(further), 1);

    CStringT untouched = "before"_w;
    EXPECT_EQ(client.cloneSession(cred, "no such workspace"_w, untouched), 0);
    EXPECT_EQ(untouched, "before"_w);
    EXPECT_NE(client.GetLstMsg().reason, CStringT());
}

TEST_F(EndToEndTest, EndsASessionWithTheLogout)
{
    EXPECT_EQ(client.logout(cred), 1);
    expectRefused(client.getSessionInfo(cred), "KZN:InvalidCredential");
    EXPECT_EQ(client.logout(cred), 1);
    EXPECT_EQ(client.getRootCred(), cred);
}

TEST_F(EndToEndTest, FindsAnUnusedSessionExpiredAndRenewsIt)
{
    std::this_thread::sleep_for(kSession + 300ms);
    expectRefused(client.getSessionInfo(cred), "KZN:SessionExpired");

    CStringT fresh;
    ASSERT_EQ(client.getCredForExpired(fresh, "anna"_w, {}, {}, "anna-demo-1"_w, 0), 1);
    EXPECT_EQ(client.getRootCred(), cred);
    client.setRootCred(fresh);
    EXPECT_EQ(client.getSessionInfo(fresh), 1);
}

TEST_F(EndToEndTest, KeepsTheSessionAliveWhileTheHostsLoopRuns)
{
    ASSERT_EQ(client.getSessionInfo(cred), 1);
    spacesOf(client);  // re-arms the timer with the session's own interval
    const auto end = std::chrono::steady_clock::now() + 2 * kSession + 500ms;
    while (std::chrono::steady_clock::now() < end) {
        kzn::pvutil::DispatchPendingMessages();
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_EQ(client.getSessionInfo(cred), 1) << "without the ticks it would have expired twice over";
}

TEST_F(EndToEndTest, PassesCommandsOfTheHostsOwn)
{
    EXPECT_EQ(client.callWapi(cred, "cmd=get&type=sessionInfo&id=sessioninfo&select=sessionInfo"_w), 1);
    expectRefused(client.callWapi(cred, "cmd=juggle"_w), "KZN:UnknownCommand");
    expectRefused(client.callWapi("no cred"_w, "cmd=get&type=user"_w), "KZN:InvalidCredential");

    CStringT reply;
    const CStringT command = "cmd=get&type=sessionInfo&id=sessioninfo&select=sessionInfo"_w;
    EXPECT_EQ(client.WapiProxyCall(cred, command, CWapiClient::METHOD_POST, serviceUrl(), {}, 1, reply), 1);
    EXPECT_THAT(narrow(reply), HasSubstr("<sessionDuration>6000</sessionDuration>"));
}
