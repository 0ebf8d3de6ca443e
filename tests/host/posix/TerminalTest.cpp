// What is different when somebody sits in front of a terminal: questions, widths, bold letters.
#include "tests/host/HostFixture.h"
#include "tests/host/posix/OnTerminal.h"

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct Deletion {
    Words words;
    std::string question;
};

const std::vector<Deletion>& deletions()
{
    static const std::vector<Deletion> all{
        {{"spaces", "delete", "W1"}, "Delete workspace W1 with all that it holds? [y/N] "},
        {{"spaces", "leave", "W1"}, "Leave workspace W1? [y/N] "},
        {{"tabs", "delete", "W1", "T1"}, "Delete tab T1 of workspace W1? [y/N] "},
        {{"members", "remove", "W1", "U\u202e1"}, "Remove U\\u202e1 from workspace W1? [y/N] "},
        {{"invitations", "withdraw", "W1", "ben"}, "Withdraw the invitation of ben to workspace W1? [y/N] "},
    };
    return all;
}

class TerminalTest : public SessionHostTest {
protected:
    TerminalTest() { environment["TERM"] = "xterm"; }
};

TEST_F(TerminalTest, DeletingIsAskedFor)
{
    for (const auto& [words, question] : deletions()) {
        const Ended ended = onTerminal(words, environment, "n\n");
        EXPECT_EQ(ended.status, 2);
        EXPECT_THAT(ended.out, AllOf(HasSubstr(question), EndsWith(": nothing was done\r\n")));
    }
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(TerminalTest, OnlyYesIsYes)
{
    for (const char* const no : {"\n", "nyes\n", "yy\n", "\x04"}) {
        EXPECT_EQ(onTerminal({"spaces", "delete", "W1"}, environment, no).status, 2);
    }
    EXPECT_THAT(bodies(), IsEmpty());
    for (const char* const yes : {"y\n", "Y\n", "yes\n"}) {
        succeed();
        EXPECT_EQ(onTerminal({"spaces", "delete", "W1"}, environment, yes).status, 0);
    }
    EXPECT_EQ(bodies().size(), 3U);
}

TEST_F(TerminalTest, YesOnTheCommandLineAsksNothing)
{
    for (const auto& [words, question] : deletions()) {
        Words agreed = words;
        agreed.emplace_back("--yes");
        succeed();
        const Ended ended = onTerminal(agreed, environment);
        EXPECT_EQ(ended.status, 0);
        EXPECT_EQ(ended.out, "");
    }
    EXPECT_EQ(bodies().size(), deletions().size());
}

TEST_F(TerminalTest, OtherCommandsAskNothing)
{
    succeed();
    EXPECT_EQ(onTerminal({"favourites", "remove", "W1", "--list", "L"}, environment).out, "");
    EXPECT_EQ(bodies().size(), 1U);
}

TEST_F(TerminalTest, TableFitsTheTerminal)
{
    const Words words{"notify", "W1", "--columns", "workspaceID,count"};
    succeed();
    EXPECT_THAT(onTerminal(words, environment, "", 16).out, HasSubstr("workspace…  cou…"));
    succeed();
    EXPECT_THAT(onTerminal(words, environment, "", 18).out, HasSubstr("workspaceID  count"));
    environment["COLUMNS"] = "14";
    succeed();
    EXPECT_THAT(onTerminal(words, environment, "", 80).out, HasSubstr("workspa…  cou…"));
}

TEST_F(TerminalTest, HeaderIsBoldUnlessTheUserWantsNone)
{
    const auto shown = [&](const Words& options) {
        Words words{"notify"};
        words.insert(words.end(), options.begin(), options.end());
        succeed();
        return onTerminal(words, environment).out;
    };
    const auto isBold = HasSubstr("\x1b[1mworkspaceID  count\x1b[0m\r\n");
    EXPECT_THAT(shown({}), isBold);
    EXPECT_THAT(shown({"--color", "never"}), Not(HasSubstr("\x1b")));
    EXPECT_THAT(shown({"--format", "json"}), Not(HasSubstr("\x1b")));
    environment["NO_COLOR"] = "1";
    EXPECT_THAT(shown({}), Not(HasSubstr("\x1b")));
    EXPECT_THAT(shown({"--color", "always"}), isBold);
    environment["NO_COLOR"] = "";
    EXPECT_THAT(shown({}), isBold);
    environment["TERM"] = "dumb";
    EXPECT_THAT(shown({}), Not(HasSubstr("\x1b")));
}

TEST_F(TerminalTest, HelpFitsTheTerminal)
{
    EXPECT_THAT(onTerminal({"icon", "--help", "--color", "never"}, environment, "", 44).out,
                HasSubstr("  set  Send a picture, and print the address\r\n       that it is kept under\r\n"));
}

}  // namespace
