#include "service/store/Events.h"
#include "service/store/Sessions.h"
#include "service/store/Tabs.h"
#include "tests/service/InnerService.h"

namespace service::test {

namespace {

using testing::ElementsAre;

// What came after version 2, taken back.
constexpr const char* kBackToVersion2 = R"sql(
DROP INDEX invitation_by_descriptor;
DROP INDEX invitation_by_invitee;
DROP INDEX user_by_email;
DROP INDEX session_by_root;
CREATE INDEX invitation_by_workspace ON invitation (workspace_id);
ALTER TABLE member DROP COLUMN seen_event;
ALTER TABLE session DROP COLUMN root;
DROP TABLE service_setting;
DROP TABLE fault;
DROP TABLE exchange;
PRAGMA user_version = 2;
)sql";

// A workspace of anna's and ben's, made by the earlier version.
class Upgrade : public testing::Test {
protected:
    Upgrade()
    {
        store::Database database(file_);
        seed::fillDemo(database);
        database.script(kBackToVersion2);
        database.script(
            "INSERT INTO workspace (workspace_id, name, type, is_template, owner_id, org_id, created, modified)"
            " VALUES ('w', 'Old', 0, 0, 'user-anna', 'org-nordwind', 1000, 1000);"
            "INSERT INTO member (workspace_id, user_id, joined)"
            " VALUES ('w', 'user-anna', 1000), ('w', 'user-ben', 2000);"
            "INSERT INTO event (event_id, workspace_id, sender_id, sender_name, type, name, display_name, message, tag,"
            " created) VALUES ('e1', 'w', 'user-anna', 'anna', '', '', '', '', '', 1500),"
            " ('e2', 'w', 'user-anna', 'anna', '', '', '', '', '', 2500);"
            "INSERT INTO activity (workspace_id, user_id, unread, active)"
            " VALUES ('w', 'user-anna', 1, 2), ('w', 'user-clara', 50, 50);"
            "INSERT INTO tab (tab_id, workspace_id, name, type, tab_order)"
            " VALUES ('a', 'w', 'A', 0, 2), ('b', 'w', 'B', 0, 1), ('c', 'w', 'C', 0, 2), ('d', 'w', 'D', 0, 7);"
            "UPDATE tab SET tab_order = 9 WHERE name = 'Files';"
            "INSERT INTO session (cred, user_id, workspace_id, duration, expires)"
            " VALUES ('cred', 'user-anna', '', 1000, 5000);");
    }

    TemporaryFolder folder_;
    std::string file_ = folder_.file("data");
};

TEST_F(Upgrade, KeepsWhatStandsAndMendsWhatWasWrong)
{
    store::Database database(file_);
    EXPECT_EQ(database.value("PRAGMA user_version"), "5");
    EXPECT_EQ(store::notificationCount(database, "w", "user-ben"), 1);
    EXPECT_EQ(store::activityValue(database, "w"), 3);
    std::vector<std::string> tabs;
    for (const store::Tab& tab : store::tabsOf(database, "w")) {
        tabs.push_back(tab.name + " " + std::to_string(tab.order));
    }
    EXPECT_THAT(tabs, ElementsAre("B 1", "A 2", "C 3", "D 4"));
    const auto session = store::findSession(database, "cred");
    ASSERT_TRUE(session);
    EXPECT_EQ(session->root, "");
}

// Places that were one tab's each are not touched.
TEST_F(Upgrade, LeavesTheTabsOfOtherWorkspaces)
{
    store::Database database(file_);
    const std::string spaceID =
        database.value("SELECT workspace_id FROM workspace WHERE name = 'Autumn catalogue'").value_or("");
    std::vector<long long> orders;
    for (const store::Tab& tab : store::tabsOf(database, spaceID)) orders.push_back(tab.order);
    EXPECT_THAT(orders, ElementsAre(1, 9));
}

}  // namespace

}  // namespace service::test
