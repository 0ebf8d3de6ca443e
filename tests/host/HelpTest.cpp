// Help, and the pages that are made from the same table.
#include <sstream>

#include "tests/host/HostFixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::size_t widestLine(const std::string& text)
{
    std::istringstream lines(text);
    std::size_t widest = 0;
    for (std::string line; std::getline(lines, line);) widest = std::max(widest, line.size());
    return widest;
}

TEST_F(HostTest, HelpOfACommandHasItsArgumentsAndTheCommonOnes)
{
    const std::string text = pvwapi({"members", "role", "--help"}).out;
    EXPECT_THAT(text, StartsWith("Make a member an administrator, or one no longer.\n\n"
                                 "Usage: pvwapi members role [options] <workspace> <user> <role>\n\n"
                                 "Arguments:\n"
                                 "  <workspace>  The workspace's ID\n"
                                 "  <user>       The member's user ID\n"
                                 "  <role>       What the member becomes: member, admin\n\n"
                                 "Common options:\n"
                                 "  --format table|json        How results are shown: table, the default, or json\n"));
    EXPECT_THAT(text, AllOf(HasSubstr("\n  -h, --help "), Not(HasSubstr("Commands:"))));
}

TEST_F(HostTest, HelpOfATopicListsItsCommands)
{
    EXPECT_THAT(pvwapi({"icon", "--help"}).out,
                StartsWith("The picture of a workspace.\n\nUsage: pvwapi icon <command> [options]\n\nCommands:\n"
                           "  set  Send a picture, and print the address that it is kept under\n"
                           "  get  Fetch a picture into the temporary folder, and print the file's name\n"));
    EXPECT_THAT(pvwapi({"session", "-h"}).out,
                AllOf(HasSubstr("Usage: pvwapi session [options]\n       pvwapi session <command> [options]\n"),
                      HasSubstr("  renew  Sign in again")));
}

TEST_F(HostTest, HelpCommandSaysTheSame)
{
    EXPECT_EQ(pvwapi({"help"}).out, pvwapi({"--help"}).out);
    EXPECT_EQ(pvwapi({"help", "spaces"}).out, pvwapi({"spaces", "--help"}).out);
    EXPECT_EQ(pvwapi({"help", "spaces", "create"}).out, pvwapi({"spaces", "create", "--help"}).out);
    EXPECT_THAT(pvwapi({"help", "spaces", "list"}).out, HasSubstr("\nColumns:\n  workspaceID, workspaceName, status,"));
}

TEST_F(HostTest, TopicsThatAreNoCommandsHaveHelpToo)
{
    const std::string all = pvwapi({"help"}).out;
    for (const char* const topic : {"credentials", "output", "statuses", "environment", "profiles"}) {
        EXPECT_THAT(all, HasSubstr("\n  " + std::string(topic) + " "));
        const Ended ended = pvwapi({"help", topic});
        EXPECT_EQ(ended.status, 0) << ended.err;
        EXPECT_GT(ended.out.size(), 200U) << topic;
    }
    EXPECT_THAT(pvwapi({"help", "environment"}).out, HasSubstr("\n  PVWAPI_PROFILE   The profile;"));
}

TEST_F(HostTest, HelpFitsTheWidth)
{
    const std::vector<Words> asked{{"--help"}, {"help", "profiles"}, {"members", "invite", "--help"}};
    for (const Words& words : asked) {
        environment["COLUMNS"] = "";
        EXPECT_LE(widestLine(pvwapi(words).out), 80U);
        EXPECT_GT(widestLine(pvwapi(words).out), 70U);
        environment["COLUMNS"] = "40";
        const std::string narrow = pvwapi(words).out;
        EXPECT_LE(widestLine(narrow), 40U) << narrow;
        environment["COLUMNS"] = "10";
        EXPECT_EQ(pvwapi(words).out, narrow);
    }
}

TEST_F(HostTest, HeadingsAreBoldWhenAskedFor)
{
    EXPECT_THAT(pvwapi({"icon", "--help", "--color", "always"}).out, HasSubstr("\x1b[1mCommands:\x1b[0m\n"));
    EXPECT_THAT(pvwapi({"icon", "--help"}).out, Not(HasSubstr("\x1b")));
}

TEST_F(HostTest, EveryTopicHasAManPage)
{
    const std::string list = pvwapi({"man", "--list"}).out;
    EXPECT_THAT(list, StartsWith("login\nlogout\nsession\nspaces\n"));
    EXPECT_THAT(pvwapi({"man"}).out,
                AllOf(StartsWith(".TH \"PVWAPI\" 1 "), HasSubstr("\n.SH PROFILES\n"), HasSubstr("pvwapi\\-tabs")));
    const std::string page = pvwapi({"man", "spaces"}).out;
    EXPECT_THAT(page, AllOf(StartsWith(".TH \"PVWAPI\\-SPACES\" 1 "), HasSubstr("\n.SH NAME\npvwapi\\-spaces \\- Work"),
                            HasSubstr("\n.SS \"pvwapi spaces create [options] <name>\"\n.PP\nMake a workspace.\n"),
                            HasSubstr("\n\\fB\\-\\-description <text>\\fR\n")));
}

}  // namespace
