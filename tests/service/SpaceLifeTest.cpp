#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SpaceLife : public DemoService {
protected:
    explicit SpaceLife(std::vector<std::string> more = {"--seed", "demo"}) : DemoService(std::move(more)) {}

    std::vector<std::string> texts(const std::string& spaceID, const std::string& path)
    {
        return textsAt(anna_.fieldsOf(spaceID), "/kznapi/return/workspace/" + path);
    }

    std::string setSpace(const std::string& content)
    {
        return anna_.call("cmd=set&type=workspace&id=" + spaceID_ +
                          "&xml=" + encoded("<workspace>" + content + "</workspace>"));
    }

    std::string cloning(const std::string& name, const std::string& rest) const
    {
        return "cmd=execute&task=CloneWorkspace&xml=<workspace><useWkspID>" + spaceID_ + "</useWkspID><workspaceName>" +
               encoded(name) + "</workspaceName>" + rest +
               "<ext><KZN><description></description></KZN></ext></workspace>";
    }

    HttpReply upload(const std::string& picture, const std::string& cred, const std::string& spaceID) const
    {
        return uploadIcon(port_, cred, spaceID, picture);
    }

    static std::string pathOf(const std::string& url) { return url.substr(url.find('/', 8)); }

    User anna_{port_, "anna"};
    User ben_{port_, "ben"};
    std::string spaceID_ = anna_.makeSpace("Life");
};

TEST_F(SpaceLife, IsRenamedAndDescribed)
{
    EXPECT_SUCCESS(setSpace("<ext><KZN><description><text><![CDATA[a & b]]></text></description></KZN></ext>"));
    EXPECT_SUCCESS(setSpace("<ext><KZN><description></description></KZN></ext><workspaceName>New</workspaceName>"));
    EXPECT_THAT(texts(spaceID_, "workspaceName"), ElementsAre("New"));
    EXPECT_THAT(texts(spaceID_, "ext/KZN/description/text"), ElementsAre("a & b"));
    EXPECT_SUCCESS(setSpace("<ext><KZN><description><text></text></description></KZN></ext>"));
    EXPECT_THAT(texts(spaceID_, "ext/KZN/description/text"), IsEmpty());
    EXPECT_FAILURE(setSpace("<workspaceName></workspaceName>"), "KZN:BadRequest");
    EXPECT_FAILURE(setSpace("<workspaceName>R&D</workspaceName>"), "KZN:BadXml");
    EXPECT_FAILURE(ben_.call("cmd=set&type=workspace&id=" + spaceID_ +
                             "&xml=" + encoded("<workspace><workspaceName>x</workspaceName></workspace>")),
                   "KZN:NoSuchObject");
    EXPECT_THAT(texts(spaceID_, "workspaceName"), ElementsAre("New"));
}

TEST_F(SpaceLife, IsClonedWithTabsAndDescription)
{
    setSpace("<ext><KZN><description><text>told</text></description></KZN></ext>");
    anna_.addTab(spaceID_, "Ideas", -3);
    const std::string body = cloning("Kopie & mehr", "<type>3</type><isTemplate>true</isTemplate>");
    const std::string reply = anna_.call(body);
    EXPECT_SUCCESS(reply);
    const std::string cloneID = textAt(reply, kSpaceID);
    EXPECT_NE(cloneID, spaceID_);
    EXPECT_THAT(texts(cloneID, "workspaceName"), ElementsAre("Kopie & mehr"));
    EXPECT_THAT(texts(cloneID, "type"), ElementsAre("3"));
    EXPECT_THAT(texts(cloneID, "isTemplate"), ElementsAre("true"));
    EXPECT_THAT(texts(cloneID, "tabs/tab/tabName"), ElementsAre("Ideas", "Discussions", "Files"));
    EXPECT_THAT(texts(cloneID, "tabs/tab/tabType"), ElementsAre("0", "1", "2"));
    EXPECT_THAT(texts(cloneID, "tabs/tab/tabOrder"), ElementsAre("-3", "1", "2"));
    EXPECT_THAT(texts(cloneID, "ext/KZN/description/text"), ElementsAre("told"));
    EXPECT_FAILURE(ben_.call(body), "KZN:NoSuchObject");
}

TEST_F(SpaceLife, IsAFavouriteOfWhoClonedItWhereAskedFor)
{
    EXPECT_SUCCESS(anna_.call(cloning("Plain", "<type>0</type>")));
    EXPECT_SUCCESS(anna_.call(cloning("Plain", "<isFavourite>false</isFavourite>")));
    EXPECT_THAT(anna_.favourites(), IsEmpty());
    const std::string reply = anna_.call(cloning("Dear", "<isFavourite>true</isFavourite>"));
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(anna_.favourites(), ElementsAre(textAt(reply, kSpaceID)));
    EXPECT_THAT(ben_.favourites(), IsEmpty());
}

TEST_F(SpaceLife, IsDeletedByAnAdministratorOnly)
{
    const std::string xml = "<workspace><workspaceID>" + spaceID_ + "</workspaceID></workspace>";
    EXPECT_FAILURE(ben_.execute("DeleteWorkspace", xml), "KZN:NoSuchObject");
    EXPECT_SUCCESS(anna_.execute("DeleteWorkspace", xml));
    EXPECT_FAILURE(anna_.execute("DeleteWorkspace", xml), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.call("cmd=get&type=workspace&select=tabs&id=" + spaceID_), "KZN:NoSuchObject");
}

TEST_F(SpaceLife, IsNotLeftByItsLastAdministrator)
{
    EXPECT_FAILURE(anna_.execute("LeaveSpace", "<workspaceID>" + spaceID_ + "</workspaceID>"), "KZN:Conflict");
    const std::string autumn = ben_.spaceNamed("Autumn catalogue");
    EXPECT_SUCCESS(ben_.execute("LeaveSpace", "<workspaceID>" + autumn + "</workspaceID>"));
    EXPECT_FAILURE(ben_.execute("LeaveSpace", "<workspaceID>" + autumn + "</workspaceID>"), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.execute("LeaveSpace", "<workspaceID>" + autumn + "</workspaceID>"), "KZN:Conflict");
}

TEST_F(SpaceLife, HasAnIconThatComesBackByteForByte)
{
    const std::string picture =
        std::string("\x89PNG\r\n\x1A\n\0\xFF", 10) + "\r\n--" + kBoundary + "--\r\nmore\r\n--" + kBoundary;
    const HttpReply reply = upload(picture, anna_.cred(), spaceID_);
    EXPECT_SUCCESS(reply.body);
    const std::string url = textAt(reply.body, "/kznapi/return/url");
    EXPECT_THAT(url,
                IsLike("http://127\\.0\\.0\\.1:" + std::to_string(port_) + "/kzndms/icon/icon-[0-9a-f]{16}\\.png"));
    EXPECT_THAT(texts(spaceID_, "ext/KZN/spaceIcon/url"), ElementsAre(url));

    const HttpReply icon = Talk(port_).get(pathOf(url) + "?cred=" + anna_.cred());
    EXPECT_EQ(icon.status, 200U);
    EXPECT_EQ(icon.contentType, "image/png");
    EXPECT_EQ(icon.body, picture);

    EXPECT_EQ(Talk(port_).get(pathOf(url)).status, 403U);
    EXPECT_EQ(Talk(port_).get(pathOf(url) + "?cred=none").status, 403U);
    EXPECT_EQ(Talk(port_).get(pathOf(url) + "?cred=" + ben_.cred()).status, 404U);
    EXPECT_EQ(Talk(port_).get("/kzndms/icon/none?cred=" + anna_.cred()).status, 404U);

    const std::string second = textAt(upload("other", anna_.cred(), spaceID_).body, "/kznapi/return/url");
    EXPECT_NE(second, url);
    EXPECT_EQ(Talk(port_).get(pathOf(url) + "?cred=" + anna_.cred()).status, 404U);
}

TEST_F(SpaceLife, TakesItsIconAway)
{
    const std::string url = textAt(upload("picture", anna_.cred(), spaceID_).body, "/kznapi/return/url");
    const std::string target = pathOf(url) + "?cred=" + anna_.cred();
    EXPECT_EQ(Talk(port_).get(target).status, 200U);
    EXPECT_SUCCESS(
        anna_.execute("DeleteWorkspace", "<workspace><workspaceID>" + spaceID_ + "</workspaceID></workspace>"));
    const HttpReply gone = Talk(port_).get(target);
    EXPECT_EQ(gone.status, 404U);
    EXPECT_FAILURE(gone.body, "KZN:NoSuchObject");
}

TEST_F(SpaceLife, TakesNoIconFromOthersOrWithoutAPicture)
{
    EXPECT_FAILURE(upload("x", ben_.cred(), spaceID_).body, "KZN:NoSuchObject");
    EXPECT_FAILURE(upload("x", "none", spaceID_).body, "KZN:InvalidCredential");
    EXPECT_FAILURE(upload("", anna_.cred(), spaceID_).body, "KZN:BadRequest");
    EXPECT_FAILURE(anna_.execute("ManageSpaceIcon", "<code><workspaceID>" + spaceID_ + "</workspaceID></code>"),
                   "KZN:BadRequest");
}

TEST_F(SpaceLife, RefusesUploadsThatItCannotRead)
{
    const std::string type = "multipart/form-data; boundary=b";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"text/plain", "x"},
        {"multipart/form-data", "x"},
        {"multipart/form-data; boundary=", "x"},
        {"multipart/form-data; boundary=" + std::string(1000, 'b'), "x"},
        {type, ""},
        {type, "--b"},
        {type, "--bx"},
        {type, "--b\r\n"},
        {type, "--b\r\nContent-Disposition: form-data; name=\"cmd\"\r\n\r\nexecute"},
        {type, "--b\r\nContent-Disposition: form-data; name=\"cmd\r\n\r\nexecute\r\n--b--"},
        {type, "--b\r\nContent-Disposition: form-data\r\n\r\nexecute\r\n--b--"},
        {type, "--b\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\n\xFF\r\n--b--"},
        {type, "--b\r\nContent-Disposition: form-data; name=\"f\"; filename=\"f\"\r\n\r\nhalf a picture"},
        {type, "--b--"},
    };
    for (const auto& [contentType, body] : cases) {
        SCOPED_TRACE(contentType + " | " + body);
        const HttpReply reply = Talk(port_).post("/kznconnect/upload.do", body, contentType);
        EXPECT_FAILURE(reply.body, "KZN:BadRequest");
    }
    EXPECT_SUCCESS(upload("x", anna_.cred(), spaceID_).body);
}

class SmallUploads : public SpaceLife {
protected:
    SmallUploads() : SpaceLife({"--seed", "demo", "--max-upload", "100000"}) {}
};

TEST_F(SmallUploads, EndAtTheLimit)
{
    EXPECT_SUCCESS(upload(std::string(100'000, 'p'), anna_.cred(), spaceID_).body);
    EXPECT_FAILURE(upload(std::string(100'001, 'p'), anna_.cred(), spaceID_).body, "KZN:LimitExceeded");
    const HttpReply huge = upload(std::string(3'000'000, 'p'), anna_.cred(), spaceID_);
    EXPECT_EQ(huge.status, 413U);
    EXPECT_FAILURE(huge.body, "KZN:LimitExceeded");
}

TEST_F(SpaceLife, BeginsAsAnApplication)
{
    const auto make = [&](const std::string& app, const std::string& rest, const std::string& favourite = "false") {
        return textAt(anna_.execute("CreateWorkspaceUsingApp",
                                    "<workspace><workspaceName>From app</workspaceName>" + app + "<isFavourite>" +
                                        favourite + "</isFavourite>" + rest +
                                        "<ext><KZN><description><text><![CDATA[told]]></text></description></KZN></ext>"
                                        "</workspace>"),
                      kSpaceID);
    };
    const std::string room = "<chatRoomName>Group Discussion</chatRoomName><type>0</type>";
    const std::string project = make("<appName>Project</appName>", room);
    EXPECT_THAT(texts(project, "tabs/tab/tabName"), ElementsAre("Discussions", "Files", "Schedule"));
    EXPECT_THAT(texts(project, "ext/KZN/description/text"), ElementsAre("told"));
    EXPECT_THAT(texts(make("", room), "tabs/tab/tabName"), ElementsAre("Discussions", "Files"));
    EXPECT_THAT(texts(make("", "<type>2</type>"), "tabs/tab/tabName"), ElementsAre("default"));
    EXPECT_EQ(make("<appName>blank</appName>", room), "");
    EXPECT_THAT(anna_.favourites(), IsEmpty());
    const std::string dear = make("", room, "true");
    EXPECT_THAT(anna_.favourites(), ElementsAre(dear));
}

TEST_F(SpaceLife, IsSavedAsAnApplication)
{
    const auto save = [&](User& user, const std::string& libraryID) {
        return user.execute("SaveWorkspaceAsApp", "<workspace><workspaceID>" + spaceID_ +
                                                      "</workspaceID><appName>Mine</appName>"
                                                      "<groupID>" +
                                                      libraryID +
                                                      "</groupID><description><![CDATA[saved]]>"
                                                      "</description></workspace>");
    };
    const std::string reply = save(anna_, "lib-anna");
    EXPECT_SUCCESS(reply);
    const std::string libraries = anna_.execute("GetUserLibraries",
                                                "<library><with><widget>true</widget><template>false"
                                                "</template></with><readonly>false</readonly></library>");
    EXPECT_THAT(textsAt(libraries, "//widget/widgetID"),
                testing::Contains(textAt(reply, "/kznapi/return/widget/widgetID")));
    EXPECT_FAILURE(save(anna_, "lib-anna"), "KZN:Conflict");
    EXPECT_FAILURE(save(anna_, "lib-ben"), "KZN:NoSuchObject");
    EXPECT_FAILURE(save(anna_, ""), "KZN:BadRequest");
    EXPECT_FAILURE(save(ben_, "lib-ben"), "KZN:NoSuchObject");
}

TEST_F(SpaceLife, LibrariesShowTemplatesAndApplications)
{
    const auto libraries = [&](User& user, const std::string& with, const std::string& readOnly) {
        return user.execute("GetUserLibraries",
                            "<library><with>" + with + "</with><readonly>" + readOnly + "</readonly></library>");
    };
    const std::string path = "/kznapi/return/libraries/library/";
    const std::string with = "<widget>false</widget><template>true</template>";
    const std::string all = libraries(ben_, with, "true");
    EXPECT_THAT(textsAt(all, path + "libraryID"), ElementsAre("lib-ben", "lib-nordwind"));
    EXPECT_THAT(textsAt(all, path + "librayType"), ElementsAre("1", "2"));
    EXPECT_THAT(textsAt(all, path + "template/templateName"), ElementsAre("Client project"));
    EXPECT_THAT(textsAt(all, path + "template/description/text"),
                ElementsAre("What every project for a client begins with"));
    EXPECT_THAT(textsAt(all, path + "widget"), IsEmpty());
    EXPECT_THAT(textsAt(libraries(ben_, with, "false"), path + "libraryID"), ElementsAre("lib-ben"));

    const std::string apps = ben_.execute("GetUserLibrariesWithApps",
                                          "<library><readonly>true</readonly> <with><widget>false"
                                          "</widget><topLevelApp>true</topLevelApp></with></library>");
    EXPECT_THAT(textsAt(apps, path + "topLevelApp/widgetName"), ElementsAre("Time sheet"));
    EXPECT_THAT(textsAt(apps, path + "topLevelApp/identity/name"), ElementsAre("Time sheet"));
    EXPECT_THAT(textsAt(apps, path + "libraryType"), ElementsAre("1", "2"));
}

TEST_F(SpaceLife, ATemplateJoinsALibrary)
{
    const auto add = [&](User& user, const std::string& libraryID, const std::string& templateID) {
        return user.call("cmd=add&type=grp&id=" + libraryID + "&xml=" +
                         encoded("<group><templates><template><templateID>" + templateID +
                                 "</templateID></template></templates></group>"));
    };
    const std::string made = anna_.call(cloning("T", "<isTemplate>true</isTemplate>"));
    const std::string templateID = textAt(made, kSpaceID);
    EXPECT_FAILURE(add(anna_, "lib-anna", spaceID_), "KZN:BadRequest");
    EXPECT_FAILURE(add(ben_, "lib-nordwind", templateID), "KZN:AccessDenied");
    EXPECT_FAILURE(add(ben_, "lib-ben", templateID), "KZN:NoSuchObject");
    EXPECT_SUCCESS(add(anna_, "lib-nordwind", templateID));
    EXPECT_FAILURE(add(anna_, "lib-nordwind", templateID), "KZN:Conflict");
    // Who sees the library may make workspaces from the template without being in it.
    EXPECT_SUCCESS(ben_.call("cmd=execute&task=CloneWorkspace&xml=<workspace><useWkspID>" + templateID +
                             "</useWkspID><workspaceName>Ben's</workspaceName></workspace>"));
}

}  // namespace

}  // namespace service::test
