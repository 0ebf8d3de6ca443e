#include <csignal>
#include <thread>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::MatchesRegex;

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
        EXPECT_THAT(textAt(reply, kCred), MatchesRegex("[0-9a-f]{40}"));
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

TEST_F(Session, SurvivesARestart)
{
    const std::string cred = signIn(port_, "anna");
    process_.signal(SIGKILL);
    process_.wait();
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
