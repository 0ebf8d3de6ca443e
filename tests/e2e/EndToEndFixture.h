// The library against the stand-in service. TEST_SERVICE_URL is the operation endpoint of a service that was started
// for this program: the demo organisation, and sessions that live for six seconds without use.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "client/WapiClient.h"
#include "tests/support/Text.h"

inline constexpr std::chrono::milliseconds kSession{6000};

inline CStringT serviceUrl()
{
    const char* url = std::getenv("TEST_SERVICE_URL");
    return wide(url != nullptr ? url : "http://no-service-was-started.invalid/");
}

inline int signIn(CWapiClient& client, const std::string& user)
{
    return client.login(wide(user), {}, "Nordwind Messenger"_w, wide(user + "-demo-1"), 0, 1);
}

/// The workspaces and invitations of the user who is signed in.
struct Listing {
    explicit Listing(CWapiClient& client)
    {
        EXPECT_EQ(client.GetWkspList(client.getRootCred(), {}, {}, spaces, invitations), 1)
            << narrow(client.GetLstMsg().reason);
    }

    /// The workspace of that ID or name; null where there is none.
    const SpaceForList* find(const CStringT& idOrName) const
    {
        const auto found = std::ranges::find_if(spaces, [&](const SpaceForList& space) {
            return space.workspaceID == idOrName || space.workspaceName == idOrName;
        });
        return found == spaces.end() ? nullptr : &*found;
    }

    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
};

/// The workspaces that the user keeps as favourites under the user's own ID.
inline std::vector<CStringT> favouritesOf(CWapiClient& client, const std::string& userID)
{
    std::vector<space_t> spaces;
    EXPECT_EQ(client.GetFavoriteSpaceList(client.getRootCred(), wide(userID), spaces), 1)
        << narrow(client.GetLstMsg().reason);
    std::vector<CStringT> ids;
    for (const space_t& space : spaces) ids.push_back(space.workspaceID);
    return ids;
}

/// Checks that a call succeeded, and says what the service said if it did not.
inline void expectDone(int result, CWapiClient& client)
{
    EXPECT_EQ(result, 1) << narrow(client.GetLstMsg().reason);
}

inline void expectRefused(int result, CWapiClient& client, const std::string& exceptionID)
{
    EXPECT_EQ(result, 0);
    EXPECT_EQ(narrow(client.GetLstMsg().exceptionID), exceptionID);
    EXPECT_NE(client.GetLstMsg().reason, CStringT());
    EXPECT_THAT(narrow(client.GetLstMsg().response), testing::HasSubstr("FAILURE"));
    EXPECT_EQ(client.getNetworkError(), 0);
}

/// Anna is signed in.
class EndToEndFixture : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(signIn(client, "anna"), 1) << narrow(client.GetLstMsg().reason);
        cred = client.getRootCred();
        ASSERT_FALSE(cred.empty());
    }

    CWapiClient client{serviceUrl()};
    CStringT cred;
};
