// The bar of a transfer, on a terminal that the test holds the other end of.
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <regex>

#include "tests/host/HostFixture.h"

namespace {

using testing::HasSubstr;

/// What the program writes to its terminal.
std::string onTerminal(Words words, const Environment& environment)
{
    words.insert(words.begin(), PVWAPI_HOST_PROGRAM);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        execv(arguments.front(), arguments.data());
        _exit(127);
    }
    std::string text;
    std::array<char, 4096> piece{};
    // The end shows as an error once the child has closed its side.
    for (ssize_t got = 0; (got = read(terminal, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(got));
    }
    close(terminal);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << text;
    return text;
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
