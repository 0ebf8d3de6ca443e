#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;

constexpr const char* kTabNames = "/kznapi/return/workspace/tabs/tab/tabName";

class Tabs : public DemoService {
protected:
    std::string addTab(const std::string& name, int order)
    {
        return textAt(anna_.addTab(spaceID_, name, order), "/kznapi/return/tab/tabID");
    }

    std::vector<std::string> names()
    {
        return textsAt(anna_.call("cmd=get&type=workspace&select=tabs&id=" + spaceID_), kTabNames);
    }

    static std::string setTab(const std::string& tabID, const std::string& name)
    {
        return "cmd=set&type=tab&id=" + tabID +
               "&xml=" + encoded("<tab><tabName><![CDATA[" + name + "]]></tabName></tab>");
    }

    User anna_{port_, "anna"};
    User ben_{port_, "ben"};
    std::string spaceID_ = anna_.makeSpace("Tabs");
};

TEST_F(Tabs, AreRenamedMovedAndDeleted)
{
    const std::string tabID = addTab("Ideas", 3);
    EXPECT_THAT(names(), ElementsAre("Discussions", "Files", "Ideas"));
    EXPECT_SUCCESS(anna_.call(setTab(tabID, "A & <B>")));
    EXPECT_SUCCESS(anna_.call("cmd=set&type=wksp&id=" + spaceID_ + "&xml=" +
                              encoded("<workspace><tabs><tab><tabID>" + tabID +
                                      "</tabID><tabOrder>1</tabOrder></tab>"
                                      "<tab><tabID>commTab</tabID><tabOrder>2</tabOrder></tab>"
                                      "<tab><tabID>docTab</tabID><tabOrder>3</tabOrder></tab></tabs></workspace>")));
    EXPECT_THAT(names(), ElementsAre("A & <B>", "Discussions", "Files"));
    EXPECT_SUCCESS(anna_.call("cmd=delete&type=tab&id=" + tabID));
    EXPECT_THAT(names(), ElementsAre("Discussions", "Files"));
    EXPECT_FAILURE(anna_.call("cmd=delete&type=tab&id=" + tabID), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.call(setTab(tabID, "x")), "KZN:NoSuchObject");
}

class TabPlaces : public Tabs {
protected:
    std::vector<std::string> places()
    {
        const std::string at = "/kznapi/return/workspace/tabs/tab/";
        const std::string reply = anna_.call("cmd=get&type=workspace&select=tabs&id=" + spaceID_);
        const std::vector<std::string> orders = textsAt(reply, at + "tabOrder");
        std::vector<std::string> texts = textsAt(reply, at + "tabName");
        for (std::size_t i = 0; i < texts.size(); ++i) texts[i] += " " + orders.at(i);
        return texts;
    }

    std::string order(const std::vector<std::pair<std::string, int>>& tabs)
    {
        std::string xml;
        for (const auto& [tabID, place] : tabs) {
            xml += "<tab><tabID>" + tabID + "</tabID><tabOrder>" + std::to_string(place) + "</tabOrder></tab>";
        }
        return anna_.call("cmd=set&type=wksp&id=" + spaceID_ +
                          "&xml=" + encoded("<workspace><tabs>" + xml + "</tabs></workspace>"));
    }
};

TEST_F(TabPlaces, ANewTabStandsBehindThoseThatHoldItsPlace)
{
    addTab("A", 1);
    EXPECT_THAT(places(), ElementsAre("Discussions 1", "A 2", "Files 3"));
    addTab("B", 0);
    addTab("C", 0);
    EXPECT_THAT(places(), ElementsAre("B 0", "C 1", "Discussions 2", "A 3", "Files 4"));
    addTab("D", 9);
    addTab("E", 4);
    EXPECT_THAT(places(), ElementsAre("B 0", "C 1", "Discussions 2", "A 3", "Files 4", "E 5", "D 9"));
}

TEST_F(TabPlaces, ATabThatIsMovedPushesTheOthers)
{
    const std::string a = addTab("A", 3);
    const std::string b = addTab("B", 4);
    EXPECT_SUCCESS(anna_.call("cmd=set&type=tab&id=" + b + "&xml=<tab><tabOrder>1</tabOrder></tab>"));
    EXPECT_THAT(places(), ElementsAre("B 1", "Discussions 2", "Files 3", "A 4"));
    EXPECT_SUCCESS(order({{"docTab", 1}, {a, 3}}));
    EXPECT_THAT(places(), ElementsAre("Files 1", "B 2", "A 3", "Discussions 4"));
    // All change places at once.
    EXPECT_SUCCESS(order({{"docTab", 2}, {b, 1}, {"commTab", 3}, {a, 4}}));
    EXPECT_THAT(places(), ElementsAre("B 1", "Files 2", "Discussions 3", "A 4"));
}

TEST_F(TabPlaces, NoTwoTabsAreGivenOnePlace)
{
    const std::vector<std::string> before = places();
    EXPECT_FAILURE(order({{"docTab", 5}, {"commTab", 5}}), "KZN:BadRequest");
    EXPECT_EQ(places(), before);
}

TEST_F(TabPlaces, TabsThatComeWithAWorkspaceHaveOneEach)
{
    spaceID_ = textAt(anna_.execute("AddTabs",
                                    "<workspace><workspaceName>n</workspaceName><tabs><tab><tabName>A</tabName></tab>"
                                    "<tab><tabName>B</tabName></tab><tab><tabName>C</tabName><tabOrder>1</tabOrder>"
                                    "</tab></tabs></workspace>"),
                      kSpaceID);
    EXPECT_THAT(places(), ElementsAre("A 0", "B 1", "C 2"));
}

TEST_F(Tabs, TheFixedOnesStay)
{
    EXPECT_FAILURE(anna_.call("cmd=delete&type=tab&id=commTab"), "KZN:AccessDenied");
    EXPECT_FAILURE(anna_.call("cmd=delete&type=tab&id=docTab"), "KZN:AccessDenied");
    EXPECT_THAT(names(), ElementsAre("Discussions", "Files"));
}

// Every workspace has its own: which one is meant is said by the session, and never guessed.
TEST_F(Tabs, TheFixedOnesAreRenamedThroughASessionOfTheirWorkspace)
{
    EXPECT_FAILURE(anna_.call(setTab("commTab", "Talk")), "KZN:Conflict");
    const std::string clone = textAt(anna_.call("cmd=cloneSession&autocommit=true&workspace=" + spaceID_), kCred);
    EXPECT_SUCCESS(form(port_, setTab("commTab", "Talk") + "&cred=" + clone));
    EXPECT_THAT(names(), ElementsAre("Talk", "Files"));
}

TEST_F(Tabs, AreChangedByAdministratorsOnly)
{
    const std::string tabID = addTab("Ideas", 3);
    EXPECT_FAILURE(ben_.call("cmd=delete&type=tab&id=" + tabID), "KZN:NoSuchObject");
    EXPECT_FAILURE(ben_.call(setTab(tabID, "x")), "KZN:NoSuchObject");
    anna_.invite(spaceID_, "ben");
    EXPECT_SUCCESS(ben_.answer(spaceID_, "accept"));
    EXPECT_FAILURE(ben_.call("cmd=delete&type=tab&id=" + tabID), "KZN:AccessDenied");
    EXPECT_FAILURE(ben_.call(setTab(tabID, "x")), "KZN:AccessDenied");
    EXPECT_FAILURE(
        anna_.call("cmd=set&type=wksp&id=" + spaceID_ + "&xml=" +
                   encoded("<workspace><tabs><tab><tabID>none</tabID><tabOrder>1</tabOrder></tab></tabs></workspace>")),
        "KZN:NoSuchObject");
    EXPECT_FAILURE(
        anna_.call(
            "cmd=set&type=wksp&id=" + spaceID_ + "&xml=" +
            encoded("<workspace><tabs><tab><tabID>docTab</tabID><tabOrder>x</tabOrder></tab></tabs></workspace>")),
        "KZN:BadRequest");
    EXPECT_THAT(names(), ElementsAre("Discussions", "Files", "Ideas"));
}

}  // namespace

}  // namespace service::test
