// The listing of workspaces and invitations through the library.
#include "tests/e2e/EndToEndFixture.h"

namespace {

using ListingTest = EndToEndFixture;

}  // namespace

TEST_F(ListingTest, ShowsTheSpacesAndInvitationsOfTheUser)
{
    const Listing listing(client);
    const SpaceForList* stand = listing.find("Messestand Köln"_w);
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

    ASSERT_NE(listing.find("Autumn catalogue"_w), nullptr);
    const SpaceForList* archive = listing.find("Photo archive"_w);
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(narrow(archive->userID), "user-ben");
    EXPECT_EQ(archive->role, 1);
    EXPECT_TRUE(listing.invitations.empty());
}

TEST_F(ListingTest, ShowsEachUserWhatIsHers)
{
    CWapiClient clara(serviceUrl());
    ASSERT_EQ(signIn(clara, "clara"), 1);
    const Listing listing(clara);
    ASSERT_EQ(listing.spaces.size(), 1U);
    EXPECT_EQ(narrow(listing.spaces.front().workspaceName), "Autumn catalogue");
    EXPECT_EQ(listing.spaces.front().role, 1);

    ASSERT_EQ(listing.invitations.size(), 1U);
    EXPECT_EQ(narrow(listing.invitations.front().workspaceName), "Messestand Köln");
    EXPECT_EQ(narrow(listing.invitations.front().userDescriptor), "user-clara");
    EXPECT_EQ(narrow(listing.invitations.front().ownerID), "user-anna");
    EXPECT_EQ(narrow(listing.invitations.front().ownerName), "anna");
    EXPECT_EQ(listing.invitations.front().inviteType, 1);
    EXPECT_EQ(listing.invitations.front().inviteAsType, 1);
    EXPECT_NE(listing.invitations.front().spaceInviteID, CStringT());
    EXPECT_NE(listing.invitations.front().expires, CStringT());
}

TEST_F(ListingTest, ShowsSpacesThatWereMade)
{
    CWapiClient dmitri(serviceUrl());
    ASSERT_EQ(signIn(dmitri, "dmitri"), 1);
    const Listing before(dmitri);

    const std::vector<std::string> names = {"Планы é𝄞😀", "two words", "100% a+b=c;d"};
    for (const std::string& name : names) {
        std::vector<CWapiClient::WKSP_Field_Value> fields = {{0, wide("about " + name)}, {1, "skipped"_w}};
        CStringT id = "before"_w;
        ASSERT_EQ(dmitri.createSpace(dmitri.getRootCred(), wide(name), fields, id, 0, 1), 1)
            << narrow(dmitri.GetLstMsg().reason);
        EXPECT_NE(id, "before"_w);

        const Listing listing(dmitri);
        const SpaceForList* made = listing.find(wide(name));
        ASSERT_NE(made, nullptr) << name;
        EXPECT_EQ(made->workspaceID, id);
        EXPECT_EQ(narrow(made->description), "about " + name);
        EXPECT_EQ(narrow(made->userName), "dmitri");
        EXPECT_EQ(made->role, 2);
    }
    EXPECT_EQ(Listing(dmitri).spaces.size(), before.spaces.size() + names.size());
}

TEST_F(ListingTest, ShowsSpacesWhoseNamesHoldMarkup)
{
    CWapiClient dmitri(serviceUrl());
    ASSERT_EQ(signIn(dmitri, "dmitri"), 1);
    const std::string name = "R&D <plan> ]]>";
    std::vector<CWapiClient::WKSP_Field_Value> fields = {{0, "a & b < c ]]> d"_w}};
    CStringT id;
    ASSERT_EQ(dmitri.createSpace(dmitri.getRootCred(), wide(name), fields, id, 1, 0), 1)
        << narrow(dmitri.GetLstMsg().reason);

    const Listing listing(dmitri);
    const SpaceForList* made = listing.find(wide(name));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(narrow(made->type), "1");
    EXPECT_EQ(narrow(made->description), "a & b < c ]]> d");
}
