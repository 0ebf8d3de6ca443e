// A person at the terminal: asked for the password, and pressing Ctrl-C.
#include <signal.h>

#include <chrono>
#include <thread>

#include "tests/host/HostFixture.h"
#include "tests/host/posix/Pty.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Clock = std::chrono::steady_clock;

constexpr const char* kCtrlC = "\x03";
constexpr const char* kSignIn = "cmd=login&username=anna&password=p%26w&isp=&autocommit=true";

class TerminalHostTest : public HostTest {
protected:
    /// Whether so many requests have come before anybody loses patience.
    bool came(std::size_t count) const
    {
        for (int patience = 500; patience > 0 && bodies().size() < count; --patience) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return bodies().size() >= count;
    }

    /// The next request gets an answer that takes its time.
    void answerAfter(std::chrono::milliseconds time)
    {
        server.script(kzn::test::Script().pause(time).send(
            kzn::test::replyText(200, "text/xml", "<kznapi><response><result>SUCCESS</result></response></kznapi>")));
    }
};

TEST_F(TerminalHostTest, PasswordIsAskedForAndNotShown)
{
    environment.erase("PVWAPI_PASSWORD");
    signInAs("C1");
    Pty terminal({"login"}, environment);
    ASSERT_TRUE(terminal.shows("Password for anna: "));
    EXPECT_FALSE(terminal.echoes());
    terminal.type("p&w\n");
    EXPECT_EQ(terminal.end(), 0) << terminal.text();
    EXPECT_THAT(terminal.text(), testing::AllOf(Not(HasSubstr("p&w")), testing::EndsWith("\r\nC1\r\n")));
    EXPECT_THAT(bodies(), ElementsAre(kSignIn));
    EXPECT_TRUE(terminal.echoes());
}

TEST_F(TerminalHostTest, NothingTypedIsNoPassword)
{
    environment.erase("PVWAPI_PASSWORD");
    Pty terminal({"session", "renew"}, environment);
    ASSERT_TRUE(terminal.shows("Password for anna: "));
    terminal.type("\n");
    EXPECT_EQ(terminal.end(), 2);
    EXPECT_THAT(terminal.text(), HasSubstr("session renew: no credentials"));
    EXPECT_TRUE(bodies().empty());
}

TEST_F(TerminalHostTest, NobodyIsAskedForWhatIsThere)
{
    environment["PVWAPI_PASSWORD"] = "";
    environment["PVWAPI_TOKEN"] = "t";
    signInAs("C1");
    Pty terminal({"login"}, environment);
    EXPECT_EQ(terminal.end(), 0);
    EXPECT_EQ(terminal.text(), "C1\r\n");
}

TEST_F(TerminalHostTest, CtrlCAtTheQuestionEndsTheProgramAndShowsAgainWhatIsTyped)
{
    environment.erase("PVWAPI_PASSWORD");
    Pty terminal({"login"}, environment);
    ASSERT_TRUE(terminal.shows("Password for anna: "));
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.end(), 4) << terminal.text();
    EXPECT_TRUE(terminal.echoes());
    EXPECT_TRUE(bodies().empty());
}

TEST_F(TerminalHostTest, CtrlCEndsTheCommandAndItsOwnSession)
{
    signInAs("C1");
    answerAfter(std::chrono::seconds(1));
    Pty terminal({"av", "create"}, environment);
    ASSERT_TRUE(came(2));
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.end(), 4) << terminal.text();
    EXPECT_THAT(terminal.text(), HasSubstr("pvwapi: av create: stopped: "));
    EXPECT_THAT(bodies(), ElementsAre(kSignIn, HasSubstr("type=user"), "cmd=logout&cred=C1"));
}

TEST_F(TerminalHostTest, CtrlCLeavesAGivenSessionOpen)
{
    environment["PVWAPI_CRED"] = "C1";
    answerAfter(std::chrono::seconds(1));
    Pty terminal({"av", "create"}, environment);
    ASSERT_TRUE(came(1));
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.end(), 4) << terminal.text();
    EXPECT_EQ(bodies().size(), 1U);
}

TEST_F(TerminalHostTest, CallThatHangsEndsAtOnce)
{
    environment["PVWAPI_CRED"] = "C1";
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        answerAfter(std::chrono::seconds(8));
        const std::size_t before = bodies().size();
        Pty terminal({"session"}, environment);
        ASSERT_TRUE(came(before + 1));
        const auto begin = Clock::now();
        terminal.signal(number);
        EXPECT_EQ(terminal.end(), 4) << terminal.text();
        EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
        EXPECT_THAT(terminal.text(), HasSubstr("pvwapi: session: stopped: "));
    }
}

TEST_F(TerminalHostTest, SecondCtrlCWaitsForNothing)
{
    signInAs("C1");
    server.otherwise(kzn::test::Script().stall());
    Pty terminal({"session"}, environment);
    ASSERT_TRUE(came(2));
    const auto begin = Clock::now();
    terminal.type(kCtrlC);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.end(), 4) << terminal.text();
    EXPECT_LT(Clock::now() - begin, std::chrono::milliseconds(2500));
}

TEST_F(TerminalHostTest, WaitForAPipeCanBeEnded)
{
    Pty terminal({"logout", "--credentials", "-"}, environment);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.end(), 4) << terminal.text();
    EXPECT_TRUE(bodies().empty());
}

TEST_F(TerminalHostTest, AnswerStandsBeforeTheSignOutWhichCtrlCEnds)
{
    signInAs("C1");
    succeed();
    server.otherwise(kzn::test::Script().stall());
    Pty terminal({"session"}, environment);
    ASSERT_TRUE(came(3));
    ASSERT_TRUE(terminal.shows("operationURL"));
    const auto begin = Clock::now();
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.end(), 0) << terminal.text();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(2));
}

TEST_F(TerminalHostTest, SignOutTakesThreeSecondsAtMost)
{
    signInAs("C1");
    succeed();
    server.otherwise(kzn::test::Script().stall());
    const auto begin = Clock::now();
    EXPECT_EQ(pvwapi({"session"}).status, 0);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(6));
}

TEST_F(TerminalHostTest, CtrlCAtTheQuestionStopsTheCommand)
{
    Pty terminal({"spaces", "delete", "W1"}, environment);
    ASSERT_TRUE(terminal.shows("[y/N] "));
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.end(), 4) << terminal.text();
    EXPECT_THAT(terminal.text(), testing::EndsWith("\r\npvwapi: spaces delete: stopped\r\n"));
    Pty ended({"spaces", "delete", "W1"}, environment);
    ASSERT_TRUE(ended.shows("[y/N] "));
    ended.type("\x04");
    EXPECT_EQ(ended.end(), 2);
    EXPECT_THAT(ended.text(), HasSubstr("[y/N] \r\npvwapi: spaces delete: nothing was done"));
    EXPECT_TRUE(bodies().empty());
}

}  // namespace
