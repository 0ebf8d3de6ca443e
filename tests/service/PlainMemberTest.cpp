#include <functional>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

struct Request {
    std::string name;
    std::function<std::string(User&)> send;
};

// Ben has joined anna's workspace, as a plain member.
class PlainMember : public DemoService {
protected:
    PlainMember()
    {
        anna_.invite(spaceID_, "ben");
        EXPECT_SUCCESS(ben_.answer(spaceID_, "accept"));
    }

    Request edit(const std::string& name, const std::string& content) const
    {
        return {name, [this, content](User& user) {
                    return user.call("cmd=set&type=workspace&id=" + spaceID_ +
                                     "&xml=" + encoded("<workspace>" + content + "</workspace>"));
                }};
    }

    // What only an administrator may do to the workspace; its end comes last.
    std::vector<Request> requests() const
    {
        const std::string id = "<workspaceID>" + spaceID_ + "</workspaceID>";
        return {
            edit("name", "<workspaceName>Ben's now</workspaceName>"),
            edit("description", "<ext><KZN><description><text>Ben was here</text></description></KZN></ext>"),
            {"icon", [this](User& user) { return uploadIcon(port_, user.cred(), spaceID_, "picture").body; }},
            {"application",
             [id](User& user) {
                 return user.execute("SaveWorkspaceAsApp", "<workspace>" + id +
                                                               "<appName>Mine</appName><groupID>lib-ben</groupID>"
                                                               "<description>saved</description></workspace>");
             }},
            {"tab", [this](User& user) { return user.addTab(spaceID_, "Ideas", 3); }},
            {"end", [id](User& user) { return user.execute("DeleteWorkspace", "<workspace>" + id + "</workspace>"); }},
        };
    }

    // All that the requests could change: the workspace, and the library that the application would be in.
    std::vector<std::string> state()
    {
        return {anna_.fieldsOf(spaceID_),
                ben_.execute("GetUserLibraries", "<library><with><widget>true</widget></with></library>")};
    }

    User anna_{port_, "anna"};
    User ben_{port_, "ben"};
    std::string spaceID_ = anna_.makeSpace("Anna's");
};

TEST_F(PlainMember, ChangesNothing)
{
    const std::vector<std::string> before = state();
    EXPECT_EQ(textAt(before.front(), "/kznapi/return/workspace/workspaceName"), "Anna's");
    for (const Request& request : requests()) {
        SCOPED_TRACE(request.name);
        EXPECT_FAILURE(request.send(ben_), "KZN:AccessDenied");
        EXPECT_EQ(state(), before);
    }
}

// The very requests are fine: it is the role that they lack.
TEST_F(PlainMember, ChangesEverythingAsAnAdministrator)
{
    EXPECT_SUCCESS(anna_.execute("ChangeRole", "<code><workspaceID>" + spaceID_ +
                                                   "</workspaceID><toRoleID>KZN:SpaceAdmin</toRoleID>"
                                                   "<userID>user-ben</userID></code>"));
    for (const Request& request : requests()) {
        SCOPED_TRACE(request.name);
        const std::vector<std::string> before = state();
        EXPECT_SUCCESS(request.send(ben_));
        EXPECT_NE(state(), before);
    }
}

TEST_F(PlainMember, TakesACopyAndLeaves)
{
    const std::string copy = textAt(ben_.call("cmd=execute&task=CloneWorkspace&xml=<workspace><useWkspID>" + spaceID_ +
                                              "</useWkspID><workspaceName>Mine</workspaceName></workspace>"),
                                    kSpaceID);
    EXPECT_EQ(textAt(ben_.fieldsOf(copy), "/kznapi/return/workspace/userID"), "user-ben");
    EXPECT_SUCCESS(ben_.execute("LeaveSpace", "<workspaceID>" + spaceID_ + "</workspaceID>"));
    EXPECT_FAILURE(ben_.fieldsOf(spaceID_), "KZN:NoSuchObject");
}

}  // namespace

}  // namespace service::test
