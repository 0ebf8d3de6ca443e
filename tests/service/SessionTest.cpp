#include <thread>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

constexpr const char* kDuration = "/kznapi/return/sessionInfo/sessionDuration";

std::string sessionInfo(unsigned short port, const std::string& cred)
{
    return form(port, "cmd=get&cred=" + cred + "&type=sessionInfo&id=sessioninfo&select=sessionInfo");
}

class Session : public DemoService {};

TEST_F(Session, OpensWithPasswordOrToken)
{
    for (const std::string secret : {"password=anna-demo-1", "token=anna-token-1"}) {
        const std::string reply = form(port_, "cmd=login&username=anna&" + secret + "&isp=&autocommit=true");
        EXPECT_SUCCESS(reply);
        EXPECT_THAT(textAt(reply, kCred), IsLike("[0-9a-f]{40}"));
        EXPECT_EQ(textAt(sessionInfo(port_, textAt(reply, kCred)), kDuration), "7200000");
    }
}

TEST_F(Session, GivesEverySignInACredentialOfItsOwn)
{
    EXPECT_NE(signIn(port_, "anna"), signIn(port_, "anna"));
}

TEST_F(Session, RefusesWrongSecretsWithoutTellingWhichNamesExist)
{
    const std::string wrong = form(port_, "cmd=login&username=anna&password=wrong&isp=&autocommit=true");
    const std::string nobody = form(port_, "cmd=login&username=nobody&password=wrong&isp=&autocommit=true");
    EXPECT_FAILURE(wrong, "KZN:LoginRefused");
    EXPECT_EQ(wrong, nobody);
    EXPECT_EQ(textAt(wrong, kCred), "");
    EXPECT_FAILURE(form(port_, "cmd=login&username=anna&token=anna-demo-1&isp="), "KZN:LoginRefused");
    EXPECT_FAILURE(form(port_, "cmd=login&username=anna&password=anna-token-1&isp="), "KZN:LoginRefused");
    EXPECT_FAILURE(form(port_, "cmd=login&username=anna&password=&isp="), "KZN:LoginRefused");
    EXPECT_FAILURE(form(port_, "cmd=login&username=anna&isp="), "KZN:BadRequest");
    EXPECT_FAILURE(form(port_, "cmd=login&password=anna-demo-1"), "KZN:BadRequest");
    EXPECT_FAILURE(form(port_, "cmd=login&username=anna&password=" + std::string(100'000, 'x')), "KZN:LoginRefused");
}

TEST_F(Session, KnowsTheIdentityProvidersOfTheUser)
{
    const std::string login = "cmd=login&username=anna&password=anna-demo-1&autocommit=true&isp=";
    EXPECT_SUCCESS(form(port_, login + "isp-nordwind"));
    EXPECT_SUCCESS(form(port_, login + "Nordwind%20Messenger"));
    EXPECT_FAILURE(form(port_, login + "elsewhere"), "KZN:LoginRefused");
}

TEST_F(Session, NeedsACredentialForEverythingButLogin)
{
    for (const std::string command :
         {"logout", "cloneSession", "get&type=org&id=current", "execute&task=RunScript&xml=<script/>"}) {
        EXPECT_FAILURE(form(port_, "cmd=" + command), "KZN:InvalidCredential");
        EXPECT_FAILURE(form(port_, "cmd=" + command + "&cred=none"), "KZN:InvalidCredential");
    }
}

TEST_F(Session, EndsAtLogout)
{
    const std::string cred = signIn(port_, "anna");
    EXPECT_SUCCESS(form(port_, "cmd=logout&cred=" + cred));
    EXPECT_FAILURE(sessionInfo(port_, cred), "KZN:InvalidCredential");
}

TEST_F(Session, IsClonedIntoOneThatOutlivesIt)
{
    const std::string cred = signIn(port_, "anna");
    const std::string reply = form(port_, "cmd=cloneSession&autocommit=true&cred=" + cred);
    EXPECT_SUCCESS(reply);
    const std::string clone = textAt(reply, kCred);
    EXPECT_NE(clone, cred);
    form(port_, "cmd=logout&cred=" + cred);
    EXPECT_SUCCESS(sessionInfo(port_, clone));
}

TEST_F(Session, IsClonedForAWorkspaceOfTheCallerOnly)
{
    const std::string spaceID = User(port_, "ben").makeSpace("Ben's");
    const std::string body = "cmd=cloneSession&autocommit=true&workspace=" + spaceID + "&cred=";
    const std::string reply = form(port_, body + signIn(port_, "ben"));
    EXPECT_SUCCESS(reply);
    EXPECT_EQ(textAt(sessionInfo(port_, textAt(reply, kCred)), "/kznapi/return/sessionInfo/workspaceID"), spaceID);
    EXPECT_FAILURE(form(port_, body + signIn(port_, "clara")), "KZN:NoSuchObject");
}

class WorkspaceSession : public DemoService {
protected:
    std::string clone(const std::string& cred, const std::string& spaceID)
    {
        return form(port_, "cmd=cloneSession&autocommit=true&workspace=" + spaceID + "&cred=" + cred);
    }

    std::string call(const std::string& body) { return form(port_, body + "&cred=" + confined_); }

    std::string execute(const std::string& task, const std::string& xml)
    {
        return call("cmd=execute&task=" + task + "&xml=" + encoded(xml));
    }

    User ben_{port_, "ben"};
    std::string own_ = ben_.makeSpace("Own");
    std::string other_ = ben_.makeSpace("Other");
    std::string confined_ = textAt(clone(ben_.cred(), own_), kCred);
};

// What changes a workspace, as this one or another.
TEST_F(WorkspaceSession, ChangesNoOtherWorkspace)
{
    const std::string thing = "<thing><thingName>MeetingRecording</thingName><ext><KZN><meetingRecording><workspaceID>";
    const auto requests = [&](const std::string& id) {
        const std::string space = "<workspaceID>" + id + "</workspaceID>";
        return std::vector<std::string>{
            call("cmd=set&type=workspace&id=" + id + "&xml=<workspace><workspaceName>New</workspaceName></workspace>"),
            execute("AddTabs", "<workspace>" + space + "<tabs><tab><tabName>t</tabName></tab></tabs></workspace>"),
            execute("BulkSpaceInvite", "<invitations><invite>" + space + "<user>clara</user></invite></invitations>"),
            execute("SendNotificationEvent",
                    "<eventData><eventNotification><eventType>REALTIME_COMMUNICATION_EVENT</eventType><eventName>"
                    "START_MEETING</eventName><eventWorkspaceID>" +
                        id + "</eventWorkspaceID></eventNotification></eventData>"),
            call("cmd=create&type=thng&xml=" + thing + id + "</workspaceID></meetingRecording></KZN></ext></thing>"),
            uploadIcon(port_, confined_, id, "GIF89a").body,
            execute("SaveWorkspaceAsApp",
                    "<workspace>" + space + "<appName>" + id + "</appName><groupID>lib-ben</groupID></workspace>"),
            call("cmd=delete&type=invt&where=<eq><path>workspaceID</path><value>" + id + "</value></eq>"),
            execute("DeleteWorkspace", "<workspace>" + space + "</workspace>"),
        };
    };
    EXPECT_SUCCESS(ben_.invite(other_, "clara"));
    const std::string before = ben_.fieldsOf(other_);
    for (const std::string& reply : requests(other_)) EXPECT_FAILURE(reply, "KZN:AccessDenied");
    EXPECT_FAILURE(execute("LeaveSpace", "<workspaceID>" + ben_.spaceNamed("Autumn catalogue") + "</workspaceID>"),
                   "KZN:AccessDenied");
    EXPECT_FAILURE(call("cmd=remove&type=workspace&id=" + ben_.spaceNamed("Autumn catalogue") +
                        "&select=" + encoded("workspace/members/member[userID='user-ben']")),
                   "KZN:AccessDenied");
    EXPECT_EQ(ben_.fieldsOf(other_), before);
    EXPECT_SUCCESS(User(port_, "clara").answer(other_, "accept"));
    for (const std::string& reply : requests(own_)) EXPECT_SUCCESS(reply);
}

TEST_F(WorkspaceSession, ReportsAboutNoOtherWorkspace)
{
    const auto told = [&](const std::string& ask) {
        return textsAt(
            execute("GetWorkspaceNotificationCount", "<" + ask + "><workspace><workspaceID>" + own_ +
                                                         "</workspaceID></workspace><workspace><workspaceID>" + other_ +
                                                         "</workspaceID></workspace></" + ask + ">"),
            "/kznapi/return/Results/workspace/workspaceID");
    };
    EXPECT_EQ(told("getCount"), (std::vector<std::string>{own_, other_}));
    EXPECT_EQ(told("getActivity"), std::vector<std::string>{own_});
}

TEST_F(WorkspaceSession, JoinsNoOtherWorkspace)
{
    User anna(port_, "anna");
    const std::string annas = anna.makeSpace("Anna's");
    anna.invite(annas, "ben");
    const std::string accept = "<invite><workspaceID>" + annas + "</workspaceID><action>accept</action></invite>";
    EXPECT_FAILURE(execute("JoinSpace", accept), "KZN:AccessDenied");
    EXPECT_SUCCESS(ben_.execute("JoinSpace", accept));
}

TEST_F(WorkspaceSession, IsToldWhatItMayDo)
{
    const auto access = [&](const std::string& id) {
        return textsAt(
            execute("ProbeAccess", "<tests><get-workspace><id>" + id + "</id></get-workspace><set-workspace><id>" + id +
                                       "</id></set-workspace></tests>"),
            "/kznapi/return/*/access");
    };
    EXPECT_EQ(access(own_), (std::vector<std::string>{"true", "true"}));
    EXPECT_EQ(access(other_), (std::vector<std::string>{"true", "false"}));
}

TEST_F(WorkspaceSession, SeesWhatItsUserSees)
{
    EXPECT_SUCCESS(call("cmd=get&type=workspace&id=" + other_));
    EXPECT_FAILURE(call("cmd=get&type=workspace&id=none"), "KZN:NoSuchObject");
    EXPECT_FAILURE(execute("DeleteWorkspace", "<workspace><workspaceID>none</workspaceID></workspace>"),
                   "KZN:NoSuchObject");
}

TEST_F(WorkspaceSession, IsClonedForNothingElse)
{
    EXPECT_FAILURE(clone(confined_, other_), "KZN:AccessDenied");
    for (const std::string& spaceID : {std::string(), own_}) {
        const std::string further = textAt(clone(confined_, spaceID), kCred);
        EXPECT_EQ(textAt(sessionInfo(port_, further), "/kznapi/return/sessionInfo/workspaceID"), own_);
    }
}

TEST_F(WorkspaceSession, EndsWithTheSessionThatItCameFrom)
{
    const std::string further = textAt(clone(confined_, own_), kCred);
    const std::string plain = textAt(form(port_, "cmd=cloneSession&autocommit=true&cred=" + ben_.cred()), kCred);
    const std::string ofPlain = textAt(clone(plain, own_), kCred);
    EXPECT_SUCCESS(form(port_, "cmd=logout&cred=" + ben_.cred()));
    EXPECT_FAILURE(sessionInfo(port_, confined_), "KZN:InvalidCredential");
    EXPECT_FAILURE(sessionInfo(port_, further), "KZN:InvalidCredential");
    EXPECT_SUCCESS(sessionInfo(port_, plain));
    EXPECT_SUCCESS(sessionInfo(port_, ofPlain));
    EXPECT_SUCCESS(form(port_, "cmd=logout&cred=" + plain));
    EXPECT_FAILURE(sessionInfo(port_, ofPlain), "KZN:InvalidCredential");
}

TEST_F(WorkspaceSession, EndsAlone)
{
    const std::string further = textAt(clone(confined_, own_), kCred);
    EXPECT_SUCCESS(form(port_, "cmd=logout&cred=" + confined_));
    EXPECT_FAILURE(sessionInfo(port_, confined_), "KZN:InvalidCredential");
    EXPECT_SUCCESS(sessionInfo(port_, further));
    EXPECT_SUCCESS(sessionInfo(port_, ben_.cred()));
}

TEST_F(Session, SurvivesARestart)
{
    const std::string cred = signIn(port_, "anna");
    process_.kill();
    ServiceProcess again(ServiceProcess::on(folder_.file("data")));
    EXPECT_SUCCESS(sessionInfo(again.port(), cred));
}

class ShortSession : public DemoService {
protected:
    ShortSession() : DemoService({"--seed", "demo", "--session-duration", "1500"}) {}
};

TEST_F(ShortSession, ExpiresUnusedAndIsKeptAliveByUse)
{
    const std::string unused = signIn(port_, "ben");
    const std::string used = signIn(port_, "anna");
    EXPECT_EQ(textAt(sessionInfo(port_, used), kDuration), "1500");
    for (int i = 0; i < 6; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        // A refused command is a use as well.
        const std::string reply = i % 2 == 0 ? sessionInfo(port_, used) : form(port_, "cmd=get&type=x&cred=" + used);
        EXPECT_NE(textAt(reply, kException), "KZN:SessionExpired");
    }
    EXPECT_FAILURE(sessionInfo(port_, unused), "KZN:SessionExpired");
    std::this_thread::sleep_for(std::chrono::milliseconds(1600));
    EXPECT_FAILURE(sessionInfo(port_, used), "KZN:SessionExpired");
}

}  // namespace

}  // namespace service::test
