// The user, the organisation, libraries, events and meetings.
#include "tests/host/ServiceFixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST_F(ServiceHostTest, UserShowsAndChangesTheOwnRecord)
{
    const json before = shown({"user", "show"});
    EXPECT_EQ(before.at("userID"), "user-anna");
    EXPECT_EQ(before.at("email"), "anna@nordwind.example");
    EXPECT_EQ(before.at("namespaceID"), "ns-nordwind");
    EXPECT_EQ(valuesOf(before.at("ISProviders"), "ISProviderName"), std::vector<std::string>{"Nordwind Messenger"});

    done({"user", "edit", "--host-name", "anna-laptop", "--build", "7", "--client-version", "1.2"});
    const json after = shown({"user", "show"});
    EXPECT_EQ(after.at("hostName"), "anna-laptop");
    EXPECT_EQ(after.at("websiteURL"), before.at("websiteURL"));
    refused({"user", "edit", "--user", "user-ben", "--host-name", "x"}, "AccessDenied");

    const json profiles = shown({"user", "profile", "user-clara", "nobody", "user-ben"});
    EXPECT_EQ(valuesOf(profiles, "userID"), (std::vector<std::string>{"user-clara", "user-ben"}));
    EXPECT_EQ(profiles.at(0).at("middleName"), "Sofie");
}

TEST_F(ServiceHostTest, AudioVideoAccountIsMadeOnce)
{
    actAs("clara");
    EXPECT_EQ(shown({"user", "show"}).at("QueltID"), "");
    done({"av", "create"});
    EXPECT_NE(shown({"user", "show"}).at("QueltID"), "");
    EXPECT_NE(shown({"user", "show"}).at("Password"), "");
    refused({"av", "create"}, "Conflict");
}

TEST_F(ServiceHostTest, OrganisationShowsItsRules)
{
    EXPECT_EQ(shown({"org", "show"}).at("changePasswordURL"), "http://intranet.nordwind.example/password/change");
    EXPECT_EQ(run({"org", "domains"}).out, "nordwind.example,nordwind.example,studio.nordwind.example,\n");
    const json policy = shown({"org", "policy"});
    EXPECT_EQ(policy.at("VoIPInt"), 1);
    EXPECT_EQ(policy.at("VoIPExt"), 0);
    EXPECT_EQ(policy.at("CreateWorkspace"), 1);
}

TEST_F(ServiceHostTest, LibrariesTakeTemplates)
{
    const std::string made = shown({"spaces", "clone", "Vorlage für Messen",
                                    shown({"spaces", "create", "Messe"}).at("workspaceID"), "--template"})
                                 .at("workspaceID");
    done({"libraries", "add-template", "lib-anna", made});
    refused({"libraries", "add-template", "lib-anna", made}, "Conflict");
    const json own = recordWith(shown({"libraries", "list", "--templates"}), "ID", "lib-anna");
    ASSERT_FALSE(own.is_null());
    EXPECT_EQ(own.at("name"), "Anna's library");
    EXPECT_EQ(own.at("type"), 1);
    EXPECT_EQ(valuesOf(own.at("templates"), "name"), std::vector<std::string>{"Vorlage für Messen"});

    actAs("ben");
    refused({"libraries", "add-template", "lib-nordwind", made}, "AccessDenied");
    const json office = recordWith(shown({"libraries", "apps", "--top-level", "--read-only"}), "ID", "lib-nordwind");
    ASSERT_FALSE(office.is_null());
    const json sheet = recordWith(office.at("apps"), "name", "Time sheet");
    EXPECT_EQ(sheet.at("topLevel"), true);
    EXPECT_EQ(sheet.at("appType"), "standalone");
    EXPECT_EQ(recordWith(shown({"libraries", "apps", "--top-level"}), "ID", "lib-nordwind"), json());
}

TEST_F(ServiceHostTest, EventsAreCountedForTheOthers)
{
    const std::string workspace = shown({"spaces", "create", "Telefon"}).at("workspaceID");
    shown({"members", "invite", workspace, "ben"});
    actAs("ben");
    done({"invitations", "accept", workspace});
    actAs("anna");
    done({"event", "send", workspace, "start-meeting", "--workspace-name", "Telefon", "--message", "Raum <3> & mehr",
          "--sender", "anna"});
    done({"event", "send", workspace, "end-meeting"});
    refused({"event", "send", "no-such-workspace", "end-meeting"}, "NoSuchObject");
    EXPECT_EQ(shown({"notify", workspace}).at(0).at("count"), 0);
    EXPECT_EQ(shown({"activity", workspace, "--unread", "3", "--active", "2"}).at(0).at("count"), 5);

    done({"meeting", "record", workspace, "--site", "Köln", "--meeting", "M-1", "--host", "Q-1", "--session",
          "Jour fixe"});
    actAs("ben");
    EXPECT_EQ(shown({"notify", workspace}).at(0).at("count"), 2);
    const Ended things = run({"proxy",
                              "cmd=get&type=thng&where=<eq><path>thingName</path><value>MeetingRecording</value></eq>&"
                              "select=*"});
    EXPECT_THAT(things.out, AllOf(HasSubstr("<siteName>Köln</siteName>"), HasSubstr("<sessionName>Jour fixe<")));
    actAs("anna");
    done({"spaces", "delete", workspace});
    actAs("ben");
    EXPECT_EQ(recordWith(shown({"spaces", "list"}), "workspaceID", workspace), json());
}

}  // namespace
