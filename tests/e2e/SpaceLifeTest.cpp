// A workspace from its first to its last day, each step seen through other operations.
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "tests/e2e/EndToEndFixture.h"
#include "tests/support/FileBytes.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Fields = std::vector<CWapiClient::WKSP_Field_Value>;
using Names = std::vector<std::string>;

/// Everything that is told of one workspace at once.
struct Details {
    Details(CWapiClient& client, const CStringT& workspaceID)
    {
        CStringT unused;
        EXPECT_EQ(client.getSpaceBatch(client.getRootCred(), workspaceID, space, invitations, access, unused), 1)
            << narrow(client.GetLstMsg().reason);
    }

    space_t space;
    std::vector<CZelSpaceInvite> invitations;
    SPACE_ACCESS access;
};

Names namesOf(const std::vector<CZelTab>& tabs)
{
    Names names;
    for (const CZelTab& tab : tabs) names.push_back(narrow(tab.GetName()));
    return names;
}

/// Anna has made a workspace; it goes with the test.
class SpaceLifeTest : public EndToEndFixture {
protected:
    void SetUp() override
    {
        EndToEndFixture::SetUp();
        Fields fields = {{0, "Pläne & <Listen>"_w}};
        expectDone(client.createSpace(cred, "Umbau 𝄞"_w, fields, workspaceID, 0, 0), client);
        ASSERT_FALSE(workspaceID.empty());
    }

    void TearDown() override
    {
        for (const CStringT& id : {workspaceID, further})
            if (!id.empty()) expectDone(client.deleteWksp(cred, id), client);
    }

    std::vector<CZelTab> tabsOf(const CStringT& id)
    {
        std::vector<CZelTab> tabs;
        expectDone(client.getTabs(cred, id, tabs), client);
        return tabs;
    }

    CStringT workspaceID;
    CStringT further;  // another workspace, where the test makes one
};

}  // namespace

TEST_F(SpaceLifeTest, BeginsWithTwoTabsAndItsMaker)
{
    const Details made(client, workspaceID);
    EXPECT_EQ(narrow(made.space.workspaceName), "Umbau 𝄞");
    EXPECT_EQ(narrow(made.space.descriptionText), "Pläne & <Listen>");
    EXPECT_EQ(narrow(made.space.userName), "anna");
    EXPECT_EQ(narrow(made.space.isTemplate), "false");
    EXPECT_THAT(namesOf(made.space.tabs), ElementsAre("Discussions", "Files"));
    ASSERT_EQ(made.space.members.size(), 1U);
    EXPECT_EQ(narrow(made.space.members.front().userID), "user-anna");
    EXPECT_TRUE(made.invitations.empty());
    EXPECT_EQ(narrow(made.access.deleteWorkspaceAccess), "true");
}

TEST_F(SpaceLifeTest, IsRenamedAndDescribedAnew)
{
    Fields fields = {{0, "Neu & \"alt\" <b>"_w}};
    expectDone(client.editExtWksp(cred, workspaceID, "Umbau und Umzug"_w, 1, fields), client);
    const Listing listing(client);
    const SpaceForList* listed = listing.find(workspaceID);
    ASSERT_NE(listed, nullptr);
    EXPECT_EQ(narrow(listed->workspaceName), "Umbau und Umzug");
    EXPECT_EQ(narrow(listed->description), "Neu & \"alt\" <b>");

    Fields other = {{0, "nur der Text"_w}};
    expectDone(client.editExtWksp(cred, workspaceID, "not sent"_w, 0, other), client);
    const Details edited(client, workspaceID);
    EXPECT_EQ(narrow(edited.space.workspaceName), "Umbau und Umzug");
    EXPECT_EQ(narrow(edited.space.descriptionText), "nur der Text");
}

TEST_F(SpaceLifeTest, IsClonedWithItsTabsAndItsDescription)
{
    CStringT tabID;
    expectDone(client.createTab(cred, workspaceID, "Skizzen"_w, 3, tabID), client);
    Fields none;
    expectDone(client.cloneWksp(cred, "Vorlage"_w, workspaceID, 0x13, none, further, 1), client);
    EXPECT_NE(further, workspaceID);

    const Details cloned(client, further);
    EXPECT_EQ(narrow(cloned.space.workspaceName), "Vorlage");
    EXPECT_EQ(narrow(cloned.space.type), "3");
    EXPECT_EQ(narrow(cloned.space.isTemplate), "true");
    EXPECT_EQ(cloned.space.kind, 16 | 3);
    EXPECT_EQ(narrow(cloned.space.descriptionText), "Pläne & <Listen>");
    EXPECT_THAT(namesOf(cloned.space.tabs), ElementsAre("Discussions", "Files", "Skizzen"));
    EXPECT_THAT(favouritesOf(client, "user-anna"), AllOf(Contains(further), Not(Contains(workspaceID))));
}

TEST_F(SpaceLifeTest, HasTabsThatAreMadeNamedMovedAndDeleted)
{
    CStringT tabID;
    expectDone(client.createTab(cred, workspaceID, "Skizzen & <mehr>"_w, 3, tabID), client);
    std::vector<CZelTab> tabs = tabsOf(workspaceID);
    ASSERT_THAT(namesOf(tabs), ElementsAre("Discussions", "Files", "Skizzen & <mehr>"));
    EXPECT_EQ(tabs.back().GetID(), tabID);
    EXPECT_EQ(narrow(tabs.back().GetType()), "0");
    EXPECT_EQ(tabs.back().GetTabPos(), 3);

    tabs.back().SetName("Überblick"_w);
    expectDone(client.editTab(cred, workspaceID, tabs.back()), client);
    std::ranges::reverse(tabs);
    for (int place = 1; CZelTab & tab : tabs) tab.SetTabPos(place++);
    expectDone(client.editTabOrder(cred, workspaceID, tabs), client);
    EXPECT_THAT(namesOf(Details(client, workspaceID).space.tabs), ElementsAre("Überblick", "Files", "Discussions"));

    EXPECT_EQ(client.deleteTab(cred, workspaceID, "docTab"_w), 0);
    expectDone(client.deleteTab(cred, workspaceID, tabID), client);
    EXPECT_THAT(namesOf(tabsOf(workspaceID)), ElementsAre("Files", "Discussions"));
    expectRefused(client.deleteTab(cred, workspaceID, tabID), client, "KZN:NoSuchObject");
}

// A name goes out as it stands: one that ends its own section makes a request that the service cannot read.
TEST_F(SpaceLifeTest, HasNoTabWhoseNameBreaksTheRequest)
{
    CStringT tabID = "before"_w;
    expectRefused(client.createTab(cred, workspaceID, "a]]>b"_w, 3, tabID), client, "KZN:BadXml");
    EXPECT_EQ(narrow(tabID), "before");
    EXPECT_THAT(namesOf(tabsOf(workspaceID)), ElementsAre("Discussions", "Files"));
}

TEST_F(SpaceLifeTest, HasAPictureThatComesBackAsItWent)
{
    std::string picture("\x89PNG\r\n\x1A\n\0", 9);
    for (int value = 0; value < 300'000; ++value) picture.push_back(static_cast<char>(value % 251));
    const fs::path file = fs::temp_directory_path() / ("life-" + narrow(workspaceID) + ".png");
    std::ofstream(file, std::ios::binary) << picture;
    CStringT url;
    expectDone(client.SetSpaceIcon(cred, workspaceID, wide(file.string()), url), client);
    fs::remove(file);
    EXPECT_EQ(narrow(Listing(client).find(workspaceID)->spaceIconURL), narrow(url));

    CStringT path;
    expectDone(client.GetSpaceIcon(cred, url, path), client);
    EXPECT_EQ(bytesOf(narrow(path)), picture);
    fs::remove(narrow(path));

    CWapiClient stranger(serviceUrl());
    ASSERT_EQ(signIn(stranger, "dmitri"), 1);
    EXPECT_EQ(stranger.GetSpaceIcon(stranger.getRootCred(), url, path = "before"_w), 0);
    EXPECT_EQ(narrow(path), "before");

    expectDone(client.deleteWksp(cred, workspaceID), client);
    workspaceID.clear();
    EXPECT_EQ(client.GetSpaceIcon(cred, url, path), 0);
    EXPECT_EQ(client.getNetworkError(), 0);
}

// A little beyond the limit the service reads the picture and refuses it; far beyond, it does not read on.
TEST_F(SpaceLifeTest, HasNoPictureLargerThanTheServiceTakes)
{
    const fs::path file = fs::temp_directory_path() / ("large-" + narrow(workspaceID) + ".png");
    for (const std::uintmax_t size : {1'000'001U, 10'000'000U}) {
        std::ofstream(file).close();
        fs::resize_file(file, size);
        CStringT url = "before"_w;
        expectRefused(client.SetSpaceIcon(cred, workspaceID, wide(file.string()), url), client, "KZN:LimitExceeded");
        EXPECT_EQ(narrow(url), "before");
    }
    std::ofstream(file).close();
    fs::resize_file(file, 1'000'000);
    CStringT url;
    expectDone(client.SetSpaceIcon(cred, workspaceID, wide(file.string()), url), client);
    fs::remove(file);
    EXPECT_EQ(Listing(client).find(workspaceID)->spaceIconURL, url);
}

TEST_F(SpaceLifeTest, IsSavedAsAnApplicationThatMakesAnother)
{
    CStringT tabID;
    expectDone(client.createTab(cred, workspaceID, "Skizzen"_w, 1, tabID), client);
    const CStringT appName = "Umbau "_w + workspaceID;
    CStringT widgetID;
    expectDone(client.saveWorkspaceAsApp(cred, workspaceID, appName, "lib-anna"_w, widgetID, "A & B"_w), client);
    EXPECT_FALSE(widgetID.empty());
    CStringT untouched = "before"_w;
    expectRefused(client.saveWorkspaceAsApp(cred, workspaceID, appName, "lib-anna"_w, untouched, {}), client,
                  "KZN:Conflict");
    EXPECT_EQ(narrow(untouched), "before");

    CStringT libraries;
    const CStringT ask =
        "cmd=execute&task=GetUserLibraries&xml=<library><with><widget>true</widget><template>false</template></with>"
        "<readonly>false</readonly></library>"_w;
    EXPECT_EQ(client.WapiProxyCall(cred, ask, CWapiClient::METHOD_POST, serviceUrl(), {}, 1, libraries), 1);
    EXPECT_THAT(narrow(libraries), HasSubstr("<widgetID>" + narrow(widgetID) + "</widgetID>"));

    expectDone(client.createSpaceUsingApp(cred, "Zweiter Umbau"_w, appName, further, "neu"_w, 1, 0), client);
    const Details made(client, further);
    EXPECT_EQ(narrow(made.space.descriptionText), "neu");
    EXPECT_EQ(namesOf(made.space.tabs), namesOf(tabsOf(workspaceID)));
    EXPECT_THAT(namesOf(made.space.tabs), Contains("Skizzen"));
    expectRefused(client.createSpaceUsingApp(cred, "Nichts"_w, "no such application"_w, untouched, {}, 0, 0), client,
                  "KZN:NoSuchObject");
    EXPECT_EQ(narrow(untouched), "before");
}

TEST_F(SpaceLifeTest, IsLeftOnlyWhenAnotherLooksAfterIt)
{
    expectRefused(client.leaveWorkspace(cred, workspaceID), client, "KZN:Conflict");

    std::vector<SPACEINVT> invitation(1);
    invitation.front().workspaceID = workspaceID;
    invitation.front().user = "user-ben"_w;
    invitation.front().inviteAs = WAPI_INVITEAS_ADMIN;
    expectDone(client.inviteMembers(cred, invitation, {}), client);
    CWapiClient ben(serviceUrl());
    ASSERT_EQ(signIn(ben, "ben"), 1);
    expectDone(ben.responseInvitation(ben.getRootCred(), workspaceID, 1), ben);

    expectDone(client.leaveWorkspace(cred, workspaceID), client);
    EXPECT_EQ(Listing(client).find(workspaceID), nullptr);
    expectRefused(client.deleteWksp(cred, workspaceID), client, "KZN:NoSuchObject");
    expectRefused(ben.leaveWorkspace(ben.getRootCred(), workspaceID), ben, "KZN:Conflict");
    expectDone(ben.deleteWksp(ben.getRootCred(), workspaceID), ben);
    EXPECT_EQ(Listing(ben).find(workspaceID), nullptr);
    workspaceID.clear();
}

TEST_F(SpaceLifeTest, EndsForGood)
{
    expectDone(client.deleteWksp(cred, workspaceID), client);
    EXPECT_EQ(Listing(client).find(workspaceID), nullptr);
    expectRefused(client.deleteWksp(cred, workspaceID), client, "KZN:NoSuchObject");
    std::vector<CZelTab> tabs(1);
    expectRefused(client.getTabs(cred, workspaceID, tabs), client, "KZN:NoSuchObject");
    EXPECT_EQ(tabs.size(), 1U);
    Fields none;
    expectRefused(client.editExtWksp(cred, workspaceID, "again"_w, 1, none), client, "KZN:NoSuchObject");
    workspaceID.clear();
}
