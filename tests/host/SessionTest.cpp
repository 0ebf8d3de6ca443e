// Signing in and out, and where the credentials come from.
#include <fstream>
#include <iterator>

#include "tests/host/HostFixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kDuration =
    "<return><sessionInfo><sessionDuration>7200000</sessionDuration></sessionInfo></return>";
constexpr const char* kSignIn = "cmd=login&username=anna&password=p%26w&isp=&autocommit=true";

std::string contentOf(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST_F(HostTest, CommandSignsInAndOutByItself)
{
    signInAs("C 1");
    succeed(kDuration);
    const Ended ended = pvwapi({"session"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "operationURL     " + environment["PVWAPI_BASE_URL"] + "\nrefreshInterval  3600000\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_THAT(bodies(), ElementsAre(kSignIn, HasSubstr("C%201"), "cmd=logout&cred=C%201"));
}

TEST_F(HostTest, OwnSessionEndsAfterAFailureToo)
{
    signInAs("C1");
    refuse("Not now", "Busy");
    const Ended ended = pvwapi({"session"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: session: Not now (Busy)\n");
    EXPECT_THAT(bodies(), ElementsAre(kSignIn, HasSubstr("C1"), "cmd=logout&cred=C1"));
}

TEST_F(HostTest, GivenSessionStaysOpen)
{
    environment["PVWAPI_CRED"] = "given";
    succeed(kDuration);
    EXPECT_EQ(pvwapi({"session"}).status, 0);
    EXPECT_THAT(bodies(), ElementsAre(HasSubstr("given")));
}

TEST_F(HostTest, TokenIsSentInThePlaceOfThePassword)
{
    environment["PVWAPI_TOKEN"] = "t/1";
    environment["PVWAPI_ISP"] = "Büro";
    signInAs("C1");
    EXPECT_EQ(pvwapi({"login"}).status, 0);
    EXPECT_THAT(bodies(), ElementsAre("cmd=login&username=anna&token=t%2F1&isp=B%C3%BCro&autocommit=true"));
}

TEST_F(HostTest, LoginPrintsTheCredential)
{
    signInAs("C&amp;ü");
    EXPECT_EQ(pvwapi({"login"}).out, "C&ü\n");
    signInAs("C2");
    EXPECT_EQ(pvwapi({"login", "--format", "json"}).out, "{\n  \"cred\": \"C2\"\n}\n");
    EXPECT_EQ(bodies().size(), 2U);
}

TEST_F(HostTest, SavedSessionServesLaterCommandsAndEndsWithLogout)
{
    const std::string file = path("session");
    writeFile(file, "left from before, and open to others", false);
    signInAs("C1");
    const Ended saved = pvwapi({"login", "--save", file});
    EXPECT_EQ(saved.status, 0) << saved.err;
    EXPECT_EQ(saved.out, "saved  " + file + "\n");
    EXPECT_EQ(contentOf(file), "cred=C1\n");
    EXPECT_TRUE(isPrivate(file));

    succeed(kDuration);
    EXPECT_EQ(pvwapi({"session", "--credentials", file}).status, 0);
    EXPECT_EQ(pvwapi({"logout", "--credentials", file}).status, 0);
    EXPECT_THAT(bodies(), ElementsAre(kSignIn, HasSubstr("C1"), "cmd=logout&cred=C1"));
}

TEST_F(HostTest, SessionThatCannotBeSavedIsEnded)
{
    signInAs("C1");
    const std::string file = path("no/such/folder");
    const Ended ended = pvwapi({"login", "--save", file});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("pvwapi: login: " + file + ": "));
    EXPECT_THAT(bodies(), ElementsAre(kSignIn, "cmd=logout&cred=C1"));
}

TEST_F(HostTest, FileOfCredentialsTakesThePlaceOfTheEnvironment)
{
    const std::string file = path("credentials");
    writeFile(file, "\xEF\xBB\xBF# the team's account\r\n\r\n  user = karl \r\npassword=a=b c\r\n", true);
    signInAs("C1");
    EXPECT_EQ(pvwapi({"login", "--credentials", file}).out, "C1\n");
    EXPECT_THAT(bodies(), ElementsAre("cmd=login&username=karl&password=a%3Db%20c&isp=&autocommit=true"));
}

TEST_F(HostTest, RefusedSignInEndsTheCommand)
{
    refuse("Wrong name or password", "LoginException");
    const Ended ended = pvwapi({"spaces", "list"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: spaces list: Wrong name or password (LoginException)\n");
    EXPECT_THAT(bodies(), ElementsAre(kSignIn));
}

TEST_F(HostTest, SignInWithoutACredentialIsAFailure)
{
    succeed();
    const Ended ended = pvwapi({"login"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "pvwapi: login: the service signed in without a credential\n");
}

TEST_F(HostTest, FurtherCredentialsOfASession)
{
    environment["PVWAPI_CRED"] = "C1";
    signInAs("C2");
    EXPECT_EQ(pvwapi({"session", "clone", "--workspace", "W 7"}).out, "C2\n");
    signInAs("C3");
    EXPECT_EQ(pvwapi({"session", "renew"}).out, "C3\n");
    EXPECT_THAT(bodies(), ElementsAre("cmd=cloneSession&autocommit=true&cred=C1&workspace=W%207", kSignIn));
}

}  // namespace
