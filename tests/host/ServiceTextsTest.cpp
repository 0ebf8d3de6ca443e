// Texts that look like markup, written to the service and read back.
#include "tests/host/ServiceFixture.h"

namespace {

using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;

constexpr const char* kHostile = "R&D <b>\"x\"</b> ]]> é \U0001F600";
constexpr const char* kElement = "R&amp;D &lt;b&gt;\"x\"&lt;/b&gt; ]]&gt; é \U0001F600";

class ServiceTextsTest : public ServiceHostTest {
protected:
    ServiceTextsTest()
    {
        workspace = shown({"spaces", "create", kHostile, "--description", kHostile}).at("workspaceID");
    }
    ~ServiceTextsTest() override { done({"spaces", "delete", workspace}); }

    void expectNamedAsTyped(const std::string& space)
    {
        const json found = shown({"spaces", "show", space}).at("space");
        EXPECT_EQ(found.at("workspaceName"), kHostile);
        EXPECT_EQ(found.at("descriptionText"), kHostile);
    }

    std::string workspace;
};

TEST_F(ServiceTextsTest, WorkspacesKeepTheirTexts)
{
    expectNamedAsTyped(workspace);
    const std::string copy =
        shown({"spaces", "clone", kHostile, workspace, "--description", kHostile}).at("workspaceID");
    expectNamedAsTyped(copy);
    done({"spaces", "edit", copy, "--name", "plain", "--description", "plain"});
    done({"spaces", "edit", copy, "--name", kHostile, "--description", kHostile});
    expectNamedAsTyped(copy);
    done({"spaces", "edit", copy, "--description", "a\r\nb\tc\rd"});
    EXPECT_EQ(shown({"spaces", "show", copy}).at("space").at("descriptionText"), "a\r\nb\tc\rd");
    done({"spaces", "delete", copy});
}

TEST_F(ServiceTextsTest, TabsKeepTheirNames)
{
    const std::string tab = shown({"tabs", "create", workspace, kHostile}).at("tabID");
    EXPECT_EQ(recordWith(shown({"tabs", "list", workspace}), "ID", tab).at("name"), kHostile);
    done({"tabs", "rename", workspace, tab, "plain"});
    done({"tabs", "rename", workspace, tab, kHostile});
    EXPECT_EQ(recordWith(shown({"tabs", "list", workspace}), "ID", tab).at("name"), kHostile);
}

TEST_F(ServiceTextsTest, ApplicationsKeepTheirNames)
{
    shown({"apps", "save", workspace, kHostile, "lib-anna", "--description", kHostile});
    const std::string made =
        shown({"apps", "instantiate", kHostile, kHostile, "--description", kHostile}).at("workspaceID");
    expectNamedAsTyped(made);
    done({"spaces", "delete", made});
}

TEST_F(ServiceTextsTest, UserKeepsTheFieldsApart)
{
    const json before = shown({"user", "show"});
    done({"user", "edit", "--host-name", "x</hostName><websiteURL>http://evil.example</websiteURL><hostName>y"});
    const json after = shown({"user", "show"});
    EXPECT_EQ(after.at("hostName"), "x</hostName><websiteURL>http://evil.example</websiteURL><hostName>y");
    EXPECT_EQ(after.at("websiteURL"), before.at("websiteURL"));
    done({"user", "edit", "--host-name", kHostile});
    EXPECT_EQ(shown({"user", "show"}).at("hostName"), kHostile);
}

TEST_F(ServiceTextsTest, InvitationsAndFavouritesKeepTheirs)
{
    const std::string guest = "R&D]]><b>\"x\"@x.example";
    shown({"members", "invite", workspace, guest, "--message", kHostile});
    const auto invited = [&] { return shown({"invitations", "list", "--workspace", workspace}); };
    EXPECT_THAT(valuesOf(invited(), "userDescriptor"), Contains(guest));
    done({"invitations", "withdraw", workspace, guest});
    EXPECT_TRUE(invited().empty());

    done({"favourites", "add", workspace, "--list", kHostile});
    EXPECT_EQ(valuesOf(shown({"favourites", "list", "--list", kHostile}), "workspaceID"),
              std::vector<std::string>{workspace});
    done({"favourites", "remove", workspace, "--list", kHostile});
    EXPECT_TRUE(shown({"favourites", "list", "--list", kHostile}).empty());
}

TEST_F(ServiceTextsTest, MeetingsKeepTheirs)
{
    done({"meeting", "record", workspace, "--site", kHostile, "--session", kHostile});
    done({"event", "send", workspace, "end-voice", "--workspace-name", kHostile, "--message", kHostile, "--tag",
          kHostile, "--sender", "anna"});
    const std::string things = run({"proxy",
                                    "cmd=get&type=thng&where=<eq><path>thingName</path><value>MeetingRecording</value>"
                                    "</eq>&select=*"})
                                   .out;
    EXPECT_THAT(things, HasSubstr(std::string("<siteName>") + kElement + "</siteName>"));
    EXPECT_THAT(things, HasSubstr(std::string("<sessionName>") + kElement + "</sessionName>"));
}

}  // namespace
