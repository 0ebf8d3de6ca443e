// The bar of a transfer, on a terminal that the test holds the other end of.
#include <regex>

#include "tests/host/HostFixture.h"
#include "tests/host/posix/Pty.h"

namespace {

using testing::HasSubstr;

/// What the program writes to its terminal.
std::string onTerminal(const Words& words, const Environment& environment)
{
    Pty terminal(words, environment);
    EXPECT_EQ(terminal.end(), 0) << terminal.text();
    return terminal.text();
}

TEST_F(SessionHostTest, BarIsShownOnATerminalAndTakenAway)
{
    writeFile(path("picture.jpg"), std::string(std::size_t{3} << 20, 'x'), true);
    succeed("<return><url>http://x/1</url></return>");
    const std::string text = onTerminal({"icon", "set", "W1", path("picture.jpg")}, environment);
    EXPECT_THAT(text, testing::StartsWith("\r["));
    EXPECT_THAT(text, HasSubstr("[########################################] 100 % of "));
    // Nothing of the bar stays before the answer: blanks over all of it, then the answer from the line's beginning.
    EXPECT_TRUE(std::regex_search(text, std::regex("\r +\rurl  http://x/1\r\n$"))) << text;
}

TEST_F(SessionHostTest, OtherCommandsShowNoBar)
{
    succeed("<return></return>");
    EXPECT_EQ(onTerminal({"user", "profile"}, environment), "userID  firstName  middleName  lastName\r\n");
}

}  // namespace
