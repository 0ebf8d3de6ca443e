#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

// What came into a library, and goes again.
class Library : public DemoService {
protected:
    static std::vector<std::string> shown(User& user, const std::string& what, const std::string& element)
    {
        return textsAt(user.execute("GetUserLibraries", "<library><with><" + what + ">true</" + what +
                                                            "></with><readonly>true</readonly></library>"),
                       "//library/" + what + "/" + element);
    }

    std::string save(User& user, const std::string& libraryID, const std::string& name)
    {
        return textAt(
            user.execute("SaveWorkspaceAsApp", "<workspace><workspaceID>" + spaceID_ + "</workspaceID><appName>" +
                                                   name + "</appName><groupID>" + libraryID + "</groupID></workspace>"),
            "/kznapi/return/widget/widgetID");
    }

    static std::string removeTemplate(User& user, const std::string& libraryID, const std::string& templateID)
    {
        return user.call("cmd=remove&type=grp&id=" + libraryID +
                         "&select=" + encoded("group/templates/template[templateID='" + templateID + "']"));
    }

    User anna_{port_, "anna"};
    User ben_{port_, "ben"};
    std::string spaceID_ = anna_.makeSpace("Saved");
};

TEST_F(Library, ApplicationsAreDeletedByWhoMayChangeTheLibrary)
{
    const std::string offices = save(anna_, "lib-nordwind", "Office's");
    const std::string own = save(anna_, "lib-anna", "Own");
    ASSERT_THAT(shown(ben_, "widget", "widgetID"), Contains(offices));
    EXPECT_FAILURE(ben_.call("cmd=delete&type=widget&id=" + offices), "KZN:AccessDenied");
    const std::string hidden = ben_.call("cmd=delete&type=widget&id=" + own);
    EXPECT_FAILURE(hidden, "KZN:NoSuchObject");
    EXPECT_THAT(hidden, Not(testing::HasSubstr("lib-anna")));
    EXPECT_FAILURE(anna_.call("cmd=delete&type=widget"), "KZN:BadRequest");

    for (const std::string& widgetID : {offices, own}) {
        EXPECT_SUCCESS(anna_.call("cmd=delete&type=widget&id=" + widgetID));
        EXPECT_THAT(shown(anna_, "widget", "widgetID"), Not(Contains(widgetID)));
        EXPECT_FAILURE(anna_.call("cmd=delete&type=widget&id=" + widgetID), "KZN:NoSuchObject");
    }
    // Its name is free again, and its tabs are gone with it.
    EXPECT_NE(save(anna_, "lib-anna", "Own"), "");
    EXPECT_THAT(shown(anna_, "widget", "widgetName"), Contains("Project"));
}

TEST_F(Library, TemplatesAreRemovedByWhoMayChangeTheLibrary)
{
    const std::vector<std::string> before = shown(ben_, "template", "templateID");
    ASSERT_EQ(before.size(), 1U);
    const std::string& templateID = before.front();
    EXPECT_FAILURE(removeTemplate(ben_, "lib-nordwind", templateID), "KZN:AccessDenied");
    EXPECT_FAILURE(removeTemplate(ben_, "lib-anna", templateID), "KZN:NoSuchObject");
    EXPECT_FAILURE(removeTemplate(anna_, "lib-anna", templateID), "KZN:NoSuchObject");
    EXPECT_FAILURE(removeTemplate(anna_, "lib-nordwind", spaceID_), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.call("cmd=remove&type=grp&id=lib-nordwind&select=group/templates"), "KZN:BadRequest");
    EXPECT_FAILURE(anna_.call("cmd=remove&type=grp&id=lib-nordwind&select=" +
                              encoded("workspace/members/member[userID='" + templateID + "']")),
                   "KZN:BadRequest");

    EXPECT_SUCCESS(removeTemplate(anna_, "lib-nordwind", templateID));
    EXPECT_THAT(shown(ben_, "template", "templateID"), IsEmpty());
    EXPECT_FAILURE(removeTemplate(anna_, "lib-nordwind", templateID), "KZN:NoSuchObject");
    // The workspace itself stays its members'.
    EXPECT_SUCCESS(User(port_, "dmitri").fieldsOf(templateID));
}

}  // namespace

}  // namespace service::test
