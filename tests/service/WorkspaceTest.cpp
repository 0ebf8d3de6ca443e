#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;

// The end of every creation body, as a host writes it: literal markup, encoded texts.
constexpr const char* kNoDescription = "<ext><KZN><description></description></KZN></ext></workspace>";

std::string creation(const std::string& name, const std::string& rest)
{
    return "cmd=execute&task=AddTabs&xml=<workspace><workspaceName>" + encoded(name) +
           "</workspaceName><isTemplate>false</isTemplate>" + rest;
}

class Workspace : public DemoService {
protected:
    std::string fields(const std::string& id)
    {
        return anna_.script("<step><cmd>get</cmd><type>workspace</type><id>" + id +
                            "</id><select>workspace</select></step>");
    }

    User anna_{port_, "anna"};
    User ben_{port_, "ben"};
};

constexpr const char* kStep = "/kznapi/return/step/workspace/";

TEST_F(Workspace, IsMadeWithTabsRoomAndDescription)
{
    const std::string reply =
        anna_.call(creation("Plans",
                            "<type>0</type><chatRoomName>Group Discussion</chatRoomName>"
                            "<tabs><tab><tabName>Discussions</tabName><tabType>1</tabType><tabOrder>1</tabOrder></tab>"
                            "<tab><tabName>Files</tabName><tabType>2</tabType><tabOrder>2</tabOrder></tab></tabs>"
                            "<ext><KZN><description><text><![CDATA[first]]></text><text><![CDATA[second]]></text>"
                            "</description></KZN></ext></workspace>"));
    EXPECT_SUCCESS(reply);
    const std::string all = fields(textAt(reply, kSpaceID));
    const std::string at = kStep;
    EXPECT_EQ(textAt(all, at + "workspaceName"), "Plans");
    EXPECT_EQ(textAt(all, at + "type"), "0");
    EXPECT_EQ(textAt(all, at + "isTemplate"), "false");
    EXPECT_EQ(textAt(all, at + "userID"), "user-anna");
    EXPECT_EQ(textAt(all, at + "userName"), "anna");
    EXPECT_EQ(textAt(all, at + "namespaceID"), "ns-nordwind");
    EXPECT_EQ(textAt(all, at + "namespaceName"), "nordwind");
    EXPECT_THAT(textAt(all, at + "createTime"), IsLike("20..-..-..T..:..:..Z"));
    EXPECT_THAT(textsAt(all, at + "ext/KZN/description/text"), ElementsAre("first", "second"));
    EXPECT_THAT(textsAt(all, at + "tabs/tab/tabName"), ElementsAre("Discussions", "Files"));
    EXPECT_THAT(textsAt(all, at + "tabs/tab/tabID"), ElementsAre("commTab", "docTab"));
    EXPECT_THAT(textsAt(all, at + "tabs/tab/tabOrder"), ElementsAre("1", "2"));
    EXPECT_THAT(textsAt(all, at + "chatRooms/chatRoom/chatRoomName"), ElementsAre("Group Discussion"));
    EXPECT_THAT(textsAt(all, at + "members/member/userID"), ElementsAre("user-anna"));
    EXPECT_THAT(textsAt(all, at + "members/member/roles/role/roleID"), ElementsAre("KZN:Creator"));
    EXPECT_EQ(textAt(all, at + "ext/KZN/discussionTab"), "commTab");
    EXPECT_EQ(textAt(all, at + "ext/KZN/filesTab"), "docTab");
}

TEST_F(Workspace, KeepsANameThatLooksLikeMarkup)
{
    const std::string name = " R&D <b>100%</b> + ]]> &amp; Ä \xF0\x9F\x98\x80 ";
    const std::string reply =
        anna_.call(creation(name, std::string("<type>3</type>") +
                                      "<ext><KZN><description><text>"
                                      "<![CDATA[" +
                                      encoded(name) + "]]></text></description></KZN></ext></workspace>"));
    EXPECT_SUCCESS(reply);
    const std::string all = fields(textAt(reply, kSpaceID));
    EXPECT_EQ(textAt(all, std::string(kStep) + "workspaceName"), name);
    EXPECT_EQ(textAt(all, std::string(kStep) + "ext/KZN/description/text"), name);
    EXPECT_EQ(textAt(all, std::string(kStep) + "type"), "3");
}

TEST_F(Workspace, IsAFavouriteWhereAskedFor)
{
    EXPECT_SUCCESS(anna_.call(creation("Plain", std::string("<type>0</type>") + kNoDescription)));
    EXPECT_SUCCESS(
        anna_.call(creation("Plain", std::string("<type>0</type><isFavourite>false</isFavourite>") + kNoDescription)));
    EXPECT_THAT(anna_.favourites(), testing::IsEmpty());
    const std::string reply =
        anna_.call(creation("Dear", std::string("<type>0</type><isFavourite>true</isFavourite>") + kNoDescription));
    EXPECT_THAT(anna_.favourites(), ElementsAre(textAt(reply, kSpaceID)));
    EXPECT_THAT(ben_.favourites(), testing::IsEmpty());
    const std::string things = anna_.script("<step><cmd>list</cmd><type>wtng</type></step>");
    EXPECT_EQ(textAt(things, "/kznapi/return/step/workspaceThing/thingName"), "user-anna");
}

TEST_F(Workspace, IsRefusedWithoutANameOrWithWrongNumbers)
{
    const std::string before = anna_.script("<step><cmd>list</cmd><type>workspace</type></step>");
    EXPECT_FAILURE(anna_.call(creation("", kNoDescription)), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call(creation("   ", kNoDescription)), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call(creation(std::string(1001, 'n'), kNoDescription)), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call(creation("n", std::string("<type>16</type>") + kNoDescription)), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call(creation("n", std::string("<type>-1</type>") + kNoDescription)), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call(creation("n", std::string("<type>one</type>") + kNoDescription)), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call(creation("n", std::string("<isFavourite>yes</isFavourite>") + kNoDescription)),
                   "KZN:BadRequest");
    EXPECT_FAILURE(anna_.execute("AddTabs", "<space/>"), "KZN:BadRequest");
    // The second tab is refused, so the workspace of the same request is not there either.
    EXPECT_FAILURE(anna_.call(creation(
                       "n", std::string("<tabs><tab><tabName>a</tabName></tab><tab></tab></tabs>") + kNoDescription)),
                   "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call(creation("n", std::string("<tabs><tab><tabName>a</tabName><tabType>1</tabType></tab><tab>"
                                                        "<tabName>b</tabName><tabType>1</tabType></tab></tabs>") +
                                                kNoDescription)),
                   "KZN:Conflict");
    EXPECT_EQ(anna_.script("<step><cmd>list</cmd><type>workspace</type></step>"), before);
}

TEST_F(Workspace, TakesFurtherTabsFromItsAdministrators)
{
    const std::string spaceID = anna_.makeSpace("Tabs");
    const std::string xml = "<workspace><workspaceID>" + spaceID +
                            "</workspaceID><tabs><tab><tabName><![CDATA[Ideas & <more>]]></tabName><tabType>0</tabType>"
                            "<tabOrder>0</tabOrder></tab></tabs></workspace>";
    const std::string reply = anna_.execute("AddTabs", xml);
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(textAt(reply, "/kznapi/return/tab/tabID"), IsLike("tab-[0-9a-f]{16}"));
    const std::string all = fields(spaceID);
    EXPECT_THAT(textsAt(all, std::string(kStep) + "tabs/tab/tabName"),
                ElementsAre("Ideas & <more>", "Discussions", "Files"));

    EXPECT_FAILURE(ben_.execute("AddTabs", xml), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.execute("AddTabs", "<workspace><workspaceID>none</workspaceID></workspace>"),
                   "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.execute("AddTabs", "<workspace><workspaceID>" + spaceID + "</workspaceID></workspace>"),
                   "KZN:BadRequest");
}

TEST_F(Workspace, IsSeenByItsMembersOnly)
{
    const std::string spaceID = anna_.makeSpace("Private");
    const std::string step = "<step><cmd>get</cmd><type>workspace</type><id>" + spaceID + "</id></step>";
    EXPECT_SUCCESS(anna_.script(step));
    EXPECT_FAILURE(ben_.script(step), "KZN:NoSuchObject");
    EXPECT_FAILURE(ben_.call("cmd=get&type=workspace&id=" + spaceID), "KZN:NoSuchObject");
}

TEST_F(Workspace, ShowsItsTabsAlone)
{
    const std::string reply = anna_.call("cmd=get&type=workspace&select=tabs&id=" + anna_.makeSpace("Tabs"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/workspace/tabs/tab/tabName"), ElementsAre("Discussions", "Files"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/workspace/*").size(), 1U);
}

}  // namespace

}  // namespace service::test
