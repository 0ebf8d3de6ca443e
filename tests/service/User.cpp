#include "tests/service/User.h"

namespace service::test {

std::string signIn(unsigned short port, const std::string& name)
{
    return textAt(form(port, "cmd=login&username=" + name + "&password=" + name + "-demo-1&isp=&autocommit=true"),
                  kCred);
}

User::User(unsigned short port, const std::string& name) : talk_(port), cred_(signIn(port, name)) {}

std::string User::call(const std::string& body)
{
    return talk_.post("/kznconnect/op.do", body + "&cred=" + cred_).body;
}

std::string User::execute(const std::string& task, const std::string& xml)
{
    return call("cmd=execute&task=" + task + "&xml=" + encoded(xml));
}

std::string User::script(const std::string& steps)
{
    return execute("RunScript", "<script>" + steps + "</script>");
}

std::string User::makeSpace(const std::string& name)
{
    return textAt(call("cmd=execute&task=AddTabs&xml=<workspace><workspaceName>" + encoded(name) +
                       "</workspaceName><isTemplate>false</isTemplate><type>0</type>"
                       "<chatRoomName>Group Discussion</chatRoomName>"
                       "<tabs><tab><tabName>Discussions</tabName><tabType>1</tabType><tabOrder>1</tabOrder></tab>"
                       "<tab><tabName>Files</tabName><tabType>2</tabType><tabOrder>2</tabOrder></tab></tabs>"
                       "<ext><KZN><description></description></KZN></ext></workspace>"),
                  kSpaceID);
}

std::string User::spaceNamed(const std::string& name)
{
    return textAt(script("<step><cmd>list</cmd><type>workspace</type><where><eq><path>workspaceName</path><value>" +
                         name + "</value></eq></where><select>workspaceID</select></step>"),
                  "/kznapi/return/step/workspace/workspaceID");
}

std::string User::fieldsOf(const std::string& spaceID)
{
    return call("cmd=get&type=workspace&id=" + spaceID + "&select=*");
}

std::string User::addTab(const std::string& spaceID, const std::string& name, int order)
{
    return execute("AddTabs", "<workspace><workspaceID>" + spaceID + "</workspaceID><tabs><tab><tabName><![CDATA[" +
                                  name + "]]></tabName><tabType>0</tabType><tabOrder>" + std::to_string(order) +
                                  "</tabOrder></tab></tabs></workspace>");
}

std::string User::invite(const std::string& spaceID, const std::string& user)
{
    return execute("BulkSpaceInvite", "<invitations><invite><workspaceID>" + spaceID + "</workspaceID><user>" + user +
                                          "</user><inviteAs>1</inviteAs></invite></invitations>");
}

std::string User::answer(const std::string& spaceID, const std::string& action)
{
    return execute("JoinSpace",
                   "<invite><workspaceID>" + spaceID + "</workspaceID><action>" + action + "</action></invite>");
}

std::vector<std::string> User::favourites()
{
    return textsAt(script("<step><cmd>get</cmd><type>wtng</type><where><eq><path>thingType</path>"
                          "<value>favouriteWorkspaces</value></eq></where></step>"),
                   "/kznapi/return/step/workspaceThing/workspaceID");
}

HttpReply uploadIcon(unsigned short port, const std::string& cred, const std::string& spaceID,
                     const std::string& picture)
{
    const std::string open = std::string("--") + kBoundary;
    const auto field = [&](const std::string& name, const std::string& value) {
        return open + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
    };
    const std::string body =
        field("cred", cred) + field("name", "logo.png") + field("cmd", "execute") + field("task", "ManageSpaceIcon") +
        field("xml",
              "<code><workspaceID>" + spaceID + "</workspaceID><dmsURL>http://elsewhere.example</dmsURL></code>") +
        field("fileFields", "theFile") + open +
        "\r\nContent-Disposition: form-data; name=\"theFile\"; filename=\"C:\\Pictures\\my \"best\" logo.png\"\r\n"
        "Content-Type: image/jpeg\r\n\r\n" +
        picture + "\r\n--" + kBoundary + "--";
    return Talk(port).post("/kznconnect/upload.do?", body, std::string("multipart/form-data; boundary=") + kBoundary);
}

}  // namespace service::test
