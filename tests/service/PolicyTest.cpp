#include <array>
#include <csignal>

#include "service/base/Secret.h"
#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "service/store/Organisations.h"
#include "service/store/Users.h"
#include "tests/service/InnerService.h"

namespace service::test {

namespace {

using testing::ElementsAre;

// In the order in which a host asks for them.
constexpr std::array<std::string_view, 21> kFeatures{"AutomaticUpdates",
                                                     "PremiumServices",
                                                     "SecureCollaboration",
                                                     "IMExt",
                                                     "IMInt",
                                                     "DisableIMCatchExt",
                                                     "DisableIMCatchInt",
                                                     "LocalArchive",
                                                     "VoIPExt",
                                                     "VoIPInt",
                                                     "VideoExt",
                                                     "VideoInt",
                                                     "DesktopShareExt",
                                                     "DesktopShareInt",
                                                     "RemoteControlExt",
                                                     "RemoteControlInt",
                                                     "FileTransferExt",
                                                     "FileTransferInt",
                                                     "FileXferVirusScan",
                                                     "HasSpaces",
                                                     "create-workspace"};

// Two organisations in one data file: the demo's, and a small one with emil in it.
class Policy : public testing::Test {
protected:
    Policy()
    {
        store::Database database(file_);
        seed::fillDemo(database);
        const std::string org = "org-suedwind";
        store::insertOrganisation(database, {org, "Suedwind", "ns-suedwind", "suedwind", "", "", "", "", ""});
        store::User emil;
        emil.userID = "user-emil";
        emil.orgID = org;
        emil.userName = "emil";
        emil.email = "emil@suedwind.example";
        store::insertUser(database, emil, {hashSecret("emil-demo-1"), hashSecret("emil-token-1")});
        store::setPolicy(database, org, "VoIPExt", true);
        store::setPolicy(database, org, "VoIPInt", false);
        store::setPolicy(database, org, "HasSpaces", true);
    }

    static std::vector<std::string> allowedTo(User& user)
    {
        std::string tests;
        for (const std::string_view feature : kFeatures) tests.append("<").append(feature).append("/>");
        const std::string reply = user.execute("ProbeAccess", "<tests>" + tests + "</tests>");
        EXPECT_SUCCESS(reply);
        std::vector<std::string> allowed;
        for (const std::string_view feature : kFeatures) {
            const std::string at = "/kznapi/return/" + std::string(feature) + "/";
            const std::string access = textAt(reply, at + "access");
            EXPECT_THAT(access, testing::AnyOf("true", "false")) << feature;
            EXPECT_EQ(textAt(reply, at + "reason").empty(), access == "true") << feature;
            if (access == "true") allowed.emplace_back(feature);
        }
        return allowed;
    }

    TemporaryFolder folder_;
    std::string file_ = folder_.file("data");
};

TEST_F(Policy, BelongsToTheUsersOrganisation)
{
    ServiceProcess process(ServiceProcess::on(file_));
    User anna(process.port(), "anna");
    User emil(process.port(), "emil");
    EXPECT_THAT(allowedTo(anna), ElementsAre("AutomaticUpdates", "PremiumServices", "SecureCollaboration", "IMExt",
                                             "IMInt", "LocalArchive", "VoIPInt", "VideoInt", "DesktopShareExt",
                                             "DesktopShareInt", "RemoteControlInt", "FileTransferExt",
                                             "FileTransferInt", "FileXferVirusScan", "HasSpaces", "create-workspace"));
    EXPECT_THAT(allowedTo(emil), ElementsAre("VoIPExt", "HasSpaces"));
    EXPECT_NE(anna.makeSpace("Allowed"), "");
    EXPECT_FAILURE(emil.execute("AddTabs", "<workspace><workspaceName>Not allowed</workspaceName></workspace>"),
                   "KZN:AccessDenied");
}

TEST_F(Policy, FollowsTheRowsOfTheDataFile)
{
    std::vector<std::string> annas;
    {
        ServiceProcess before(ServiceProcess::on(file_));
        User anna(before.port(), "anna");
        annas = allowedTo(anna);
        before.signal(SIGTERM);
        EXPECT_EQ(before.wait(), 0);
    }
    {
        store::Database database(file_);
        database.run("INSERT OR REPLACE INTO org_policy VALUES ('org-suedwind', 'VoIPExt', 0)");
        database.run("INSERT OR REPLACE INTO org_policy VALUES ('org-suedwind', 'VideoExt', 1)");
        database.run("INSERT OR REPLACE INTO org_policy VALUES ('org-suedwind', 'create-workspace', 1)");
        database.run("INSERT OR REPLACE INTO org_policy VALUES ('org-suedwind', 'create-chatRoom', 1)");
    }
    ServiceProcess after(ServiceProcess::on(file_));
    User anna(after.port(), "anna");
    User emil(after.port(), "emil");
    EXPECT_THAT(allowedTo(emil), ElementsAre("VideoExt", "HasSpaces", "create-workspace"));
    EXPECT_NE(emil.makeSpace("Allowed now"), "");
    EXPECT_EQ(allowedTo(anna), annas);
}

class Switches : public InnerService {
protected:
    // Makes a workspace in each of the ways that there are, and says what came of it.
    std::vector<std::string> outcomes(const std::string& more)
    {
        const std::string fields = "<workspaceName>n</workspaceName>" + more;
        std::vector<std::string> reasons;
        for (const auto& [task, xml] :
             {std::pair<std::string, std::string>{"AddTabs", "<workspace>" + fields + "</workspace>"},
              {"CloneWorkspace", "<workspace><useWkspID>" + spaceID_ + "</useWkspID>" + fields + "</workspace>"},
              {"CreateWorkspaceUsingApp", "<workspace>" + fields + "</workspace>"},
              {"CreateWorkspaceUsingApp", "<workspace><appName>Project</appName>" + fields + "</workspace>"}}) {
            const std::string reply = execute(anna_, task, xml);
            EXPECT_THAT(textAt(reply, kException), testing::AnyOf("", "KZN:AccessDenied"));
            reasons.push_back(textAt(reply, kReason));
        }
        return reasons;
    }

    void turn(const std::string& feature, bool on) { store::setPolicy(database_, "org-nordwind", feature, on); }

    std::string anna_ = credOf("anna");
    std::string spaceID_ = makeSpace(anna_);
};

TEST_F(Switches, ThatAreOffKeepWorkspacesFromBeingMade)
{
    const std::string room = "<chatRoomName>r</chatRoomName>";
    EXPECT_THAT(outcomes(room), testing::Each(""));
    for (const std::string feature : {"HasSpaces", "create-workspace"}) {
        turn(feature, false);
        EXPECT_THAT(outcomes({}), testing::Each("your organisation does not allow " + feature));
        EXPECT_THAT(outcomes(room), testing::Each("your organisation does not allow " + feature));
        turn(feature, true);
    }
    EXPECT_THAT(outcomes(room), testing::Each(""));
}

TEST_F(Switches, ThatAreOffKeepRoomsFromBeingMade)
{
    turn("create-chatRoom", false);
    EXPECT_THAT(outcomes({}), testing::Each(""));
    EXPECT_THAT(outcomes("<chatRoomName></chatRoomName>"), testing::Each(""));
    EXPECT_THAT(outcomes("<chatRoomName>r</chatRoomName>"),
                testing::Each("your organisation does not allow create-chatRoom"));
}

}  // namespace

}  // namespace service::test
