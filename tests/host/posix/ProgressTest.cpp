// The bar of a transfer, on a terminal that the test holds the other end of.
#include <regex>

#include "tests/host/HostFixture.h"
#include "tests/host/posix/OnTerminal.h"

namespace {

using testing::HasSubstr;

TEST_F(SessionHostTest, BarIsShownOnATerminalAndTakenAway)
{
    writeFile(path("picture.jpg"), std::string(std::size_t{3} << 20, 'x'), true);
    environment["TERM"] = "dumb";
    succeed("<return><url>http://x/1</url></return>");
    const Ended ended = onTerminal({"icon", "set", "W1", path("picture.jpg")}, environment);
    EXPECT_EQ(ended.status, 0);
    const std::string& text = ended.out;
    EXPECT_THAT(text, testing::StartsWith("\r["));
    EXPECT_THAT(text, HasSubstr("[########################################] 100 % of "));
    // Nothing of the bar stays before the answer: blanks over all of it, then the answer from the line's beginning.
    EXPECT_TRUE(std::regex_search(text, std::regex("\r +\rurl  http://x/1\r\n$"))) << text;
}

TEST_F(SessionHostTest, BarFitsANarrowTerminal)
{
    writeFile(path("picture.jpg"), std::string(std::size_t{3} << 20, 'x'), true);
    succeed("<return><url>http://x/1</url></return>");
    const Ended ended = onTerminal({"icon", "set", "W1", path("picture.jpg")}, environment, "", 40);
    EXPECT_THAT(ended.out, HasSubstr("\r[################] 100 % of "));
}

TEST_F(SessionHostTest, NoBarStandsBeforeTheLineOfAnExchange)
{
    writeFile(path("picture.jpg"), std::string(std::size_t{3} << 20, 'x'), true);
    succeed("<return><url>http://x/1</url></return>");
    const Ended ended = onTerminal({"icon", "set", "W1", path("picture.jpg"), "-v"}, environment);
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, testing::StartsWith("pvwapi: "));
    EXPECT_THAT(ended.out, testing::Not(HasSubstr("[#")));
}

TEST_F(SessionHostTest, OtherCommandsShowNoBar)
{
    succeed("<return></return>");
    environment["TERM"] = "dumb";
    EXPECT_EQ(onTerminal({"user", "profile"}, environment).out, "userID  firstName  middleName  lastName\r\n");
}

}  // namespace
