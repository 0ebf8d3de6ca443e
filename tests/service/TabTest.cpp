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
