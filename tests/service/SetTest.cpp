#include "tests/service/DemoService.h"

namespace service::test {

namespace {

// What a change says that it cannot do, and that it then leaves everything as it was.
class Set : public DemoService {
protected:
    std::string set(const std::string& type, const std::string& id, const std::string& xml,
                    const std::string& more = {})
    {
        return anna_.call("cmd=set&type=" + type + "&id=" + id + "&xml=" + encoded(xml) + more);
    }

    std::string state() { return anna_.fieldsOf(spaceID_) + anna_.call("cmd=get&type=user&id=current&select=user"); }

    void expectRefused(const std::string& reply, const std::string& reason)
    {
        SCOPED_TRACE(reason);
        EXPECT_FAILURE(reply, "KZN:BadRequest");
        EXPECT_EQ(textAt(reply, kReason), reason);
        EXPECT_EQ(state(), before_);
    }

    User anna_{port_, "anna"};
    std::string spaceID_ = anna_.makeSpace("Set");
    std::string tabID_ = textAt(anna_.addTab(spaceID_, "Ideas", 3), "/kznapi/return/tab/tabID");
    std::string before_ = state();
};

TEST_F(Set, ElementsThatItDoesNotKnowAreNamed)
{
    const auto workspace = [&](const std::string& content) {
        return set("workspace", spaceID_, "<workspace>" + content + "</workspace>");
    };
    expectRefused(workspace("<workspaceName>n</workspaceName><colour>red</colour>"),
                  "unknown element \"colour\" in \"workspace\"");
    expectRefused(workspace("<type>3</type>"), "unknown element \"type\" in \"workspace\"");
    expectRefused(workspace("<ext><KZN><description><text>t</text><icon>i</icon></description></KZN></ext>"),
                  "unknown element \"icon\" in \"workspace/ext/KZN/description\"");
    expectRefused(workspace("<ext><other/></ext>"), "unknown element \"other\" in \"workspace/ext\"");
    expectRefused(workspace("<workspaceName>n<b>m</b></workspaceName>"),
                  "unknown element \"b\" in \"workspace/workspaceName\"");
    expectRefused(
        workspace("<tabs><tab><tabID>" + tabID_ + "</tabID><tabOrder>1</tabOrder><tabName>n</tabName></tab></tabs>"),
        "unknown element \"tabName\" in \"workspace/tabs/tab\"");
    expectRefused(set("tab", tabID_, "<tab><tabName>n</tabName><tabType>1</tabType></tab>"),
                  "unknown element \"tabType\" in \"tab\"");
    const auto user = [&](const std::string& content) {
        return set("user", "current", "<user>" + content + "</user>");
    };
    expectRefused(user("<email>a@b</email><ext><KZN><hostName>h</hostName></KZN></ext>"),
                  "unknown element \"email\" in \"user\"");
    expectRefused(user("<ext><KZN><hostName>h</hostName><firstName>f</firstName></KZN></ext>"),
                  "unknown element \"firstName\" in \"user/ext/KZN\"");
    expectRefused(user("<ext><KZN><client><name>n</name></client></KZN></ext>"),
                  "unknown element \"name\" in \"user/ext/KZN/client\"");
}

TEST_F(Set, FieldsThatItDoesNotKnowAreNamed)
{
    const std::string xml = "<workspace><workspaceName>n</workspaceName></workspace>";
    expectRefused(set("workspace", spaceID_, xml, "&workspaceName=n"), "unknown form field \"workspaceName\"");
    expectRefused(set("workspace", spaceID_, xml, "&select=*"), "unknown form field \"select\"");
    expectRefused(set("user", "current", "<user><ext><KZN/></ext></user>", "&where="), "unknown form field \"where\"");
}

TEST_F(Set, AChangeOfNothingIsNone)
{
    expectRefused(set("workspace", spaceID_, "<workspace/>"), "the request changes nothing");
    expectRefused(set("workspace", spaceID_, "<workspace>name</workspace>"), "the request changes nothing");
    expectRefused(set("wksp", spaceID_, "<workspace><tabs/></workspace>"), "the request changes nothing");
    expectRefused(set("tab", tabID_, "<tab/>"), "the request changes nothing");
    expectRefused(set("user", "current", "<user/>"), "the request changes nothing");
}

// An edit of the name alone carries an empty description, and one of fields that nobody knows an empty extension.
TEST_F(Set, WhatHostsSendWithoutAChangeIsTaken)
{
    EXPECT_SUCCESS(
        set("workspace", spaceID_, "<workspace><ext><KZN><description></description></KZN></ext></workspace>"));
    EXPECT_SUCCESS(set("user", "user-anna", "<user><ext><KZN></KZN></ext></user>"));
    EXPECT_SUCCESS(set("user", "user-anna",
                       "<user><ext><KZN><hostName>a</hostName><hostName>b</hostName><client><build>1</build><version>"
                       "2</version><build>3</build></client></KZN></ext></user>"));
}

}  // namespace

}  // namespace service::test
