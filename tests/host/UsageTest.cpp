// What the program says to words that make no command, and to a machine that does not help.
#include <fstream>

#include "tests/host/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// One line, the status of a local problem, nothing shown and nothing sent.
void expectLocalProblem(const Ended& ended, std::string_view line)
{
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: " + std::string(line) + "\n");
}

TEST_F(HostTest, HelpAndVersionGoToStandardOutput)
{
    for (const Words& words :
         {Words{"--help"}, Words{"-h"}, Words{"spaces", "--help"}, Words{"spaces", "create", "-h"}}) {
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0);
        EXPECT_THAT(ended.out, HasSubstr("Usage: pvwapi"));
        EXPECT_EQ(ended.err, "");
    }
    EXPECT_THAT(pvwapi({"--version"}).out, testing::MatchesRegex("pvwapi .+\n"));
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(HostTest, WordsThatMakeNoCommandAreRefusedInOneLine)
{
    const std::vector<std::pair<Words, std::string>> cases{
        {{},
         "a command is missing, one of login, logout, session, spaces, tabs, icon, apps, access, members, invitations, "
         "roles, favourites, user, av, org, libraries, notify, activity, event, meeting, proxy, call, help, "
         "completion, "
         "man; see pvwapi --help"},
        {{"icon"}, "a command is missing, one of set, get; see pvwapi icon --help"},
        {{"frobnicate"}, "'frobnicate' is no command; see pvwapi --help"},
        {{"spaces", "list", "extra"}, "'extra' is one word too many; see pvwapi spaces list --help"},
        {{"spaces", "create"}, "name is required; see pvwapi spaces create --help"},
        {{"spaces", "create", "a", "--type", "2x"},
         "--type: '2x' is not a whole number; see pvwapi spaces create --help"},
        {{"spaces", "create", "a", "--type", "99999999999"},
         "--type: '99999999999' is not a whole number; see pvwapi spaces create --help"},
        {{"--format", "xml", "session"}, "--format: 'xml' is none of table, json; see pvwapi session --help"},
        {{"proxy", "cmd=x", "--method", "put"}, "--method: 'put' is none of get, post; see pvwapi proxy --help"},
        {{"members", "role", "w1", "u1", "boss"},
         "role: 'boss' is none of member, admin; see pvwapi members role --help"},
        {{"event", "send", "w1", "END_VOICE"},
         "event: 'END_VOICE' is none of start-meeting, start-voice, start-telephony, end-meeting, end-voice, "
         "end-telephony; see pvwapi event send --help"},
        {{"session", "--password", "secret"}, "'--password' is no option of 'session'; see pvwapi session --help"},
        {{"/session"}, "'/session' is no command; did you mean 'session'? See pvwapi --help"},
        {{"a\x1b[2J\nb"}, "'a\\u001b[2J\\u000ab' is no command; see pvwapi --help"},
    };
    for (const auto& [words, line] : cases) expectLocalProblem(pvwapi(words), line);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(HostTest, NearWordIsOffered)
{
    const std::vector<std::pair<Words, std::string>> cases{
        {{"--", "spaces", "list"},
         "'spaces' has to stand before '--', behind which there are values only; see pvwapi --help"},
        {{"spces", "list"}, "'spces' is no command; did you mean 'spaces'? See pvwapi --help"},
        {{"pacse"}, "'pacse' is no command; see pvwapi --help"},
        {{"--format", "xml", "spcaes"}, "'spcaes' is no command; did you mean 'spaces'? See pvwapi --help"},
        {{"spaces", "lst", "--help"}, "'lst' is no command of 'spaces'; did you mean 'list'? See pvwapi spaces --help"},
        {{"session", "clon"}, "'clon' is no command of 'session'; did you mean 'clone'? See pvwapi session --help"},
        {{"spaces", "create", "--nmae", "--typ=3", "more"},
         "'--nmae' is no option of 'spaces create'; see pvwapi spaces create --help"},
        {{"spaces", "create", "name", "--typ=3"},
         "'--typ=3' is no option of 'spaces create'; did you mean '--type'? See pvwapi spaces create --help"},
        {{"spaces", "create", "name", "--type"}, "--type: its value is missing; see pvwapi spaces create --help"},
        {{"spaces", "list", "--formt", "json"},
         "'--formt' is no option of 'spaces list'; did you mean '--format'? See pvwapi spaces list --help"},
        {{"members", "role", "w1", "u1", "amdin"},
         "role: 'amdin' is none of member, admin; did you mean 'admin'? See pvwapi members role --help"},
        {{"help", "spaces", "creat"},
         "'spaces creat' is no command or topic; did you mean 'spaces create'? See pvwapi --help"},
        {{"man", "spces"}, "'spces' is no topic; did you mean 'spaces'? See pvwapi --help"},
        {{std::string(5000, 's')}, "'" + std::string(5000, 's') + "' is no command; see pvwapi --help"},
    };
    for (const auto& [words, line] : cases) expectLocalProblem(pvwapi(words), line);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(HostTest, WithoutCredentialsNothingIsSent)
{
    const std::string line =
        "no credentials: set PVWAPI_CRED, or PVWAPI_USER and PVWAPI_PASSWORD or PVWAPI_TOKEN, or "
        "name a file with --credentials";
    environment.erase("PVWAPI_PASSWORD");
    expectLocalProblem(pvwapi({"spaces", "list"}), "spaces list: " + line);
    environment["PVWAPI_PASSWORD"] = "";
    expectLocalProblem(pvwapi({"login"}), "login: " + line);
    expectLocalProblem(pvwapi({"logout"}),
                       "logout: no session to end: set PVWAPI_CRED, or name its file with --credentials");
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(HostTest, FileThatOthersCanReadIsRefused)
{
    const std::string file = path("credentials");
    writeFile(file, "user=anna\npassword=secret\n", false);
    const Ended ended = pvwapi({"--credentials", file, "session"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("pvwapi: session: " + file + ": others have access to it"));
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(HostTest, FileThatCannotBeReadIsNamed)
{
    const std::string absent = path("absent");
    const Ended ended = pvwapi({"--credentials", absent, "session"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_THAT(ended.err, StartsWith("pvwapi: session: " + absent + ": "));
    EXPECT_EQ(ended.err.find('\n'), ended.err.size() - 1);

    std::filesystem::create_directory(path("folder"));
    EXPECT_EQ(pvwapi({"--credentials", path("folder"), "session"}).status, 2);
}

TEST_F(HostTest, FileThatIsNoListOfCredentialsIsRefusedWithoutQuotingIt)
{
    const std::string file = path("credentials");
    const std::string names = ": the name is none of user, password, token, isp and cred";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"user=anna\nsecret\n", ":2: not of the form name=value"},
        {"# comment\n\npasswort=secret\n", ":3" + names},
        {std::string("\0\x7f=secret", 9), ":1" + names},
        {"\xff=secret", ":1: not UTF-8"},
        {std::string(70'000, 'x'), ": too large for a file of credentials"},
    };
    for (const auto& [text, problem] : cases) {
        writeFile(file, text, true);
        std::string line = "session: ";
        line.append(file).append(problem);
        expectLocalProblem(pvwapi({"--credentials", file, "session"}), line);
    }
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(HostTest, ValuesThatAreNotTakenAreSaidInPlainWords)
{
    expectLocalProblem(pvwapi({"session", "--timeout", "5000000"}),
                       "--timeout: '5000000' is more than 4000000 seconds; see pvwapi session --help");
    expectLocalProblem(pvwapi({"spaces", "edit", "W", "--name", "a", "--name", "b"}),
                       "--name: may be given once only; see pvwapi spaces edit --help");
    expectLocalProblem(pvwapi({"session", "--base-url", "http://u:p@host/"}),
                       "a user in the service's address is not taken; see pvwapi help credentials");
    EXPECT_THAT(pvwapi({"members", "invite", "--help"}).out, HasSubstr(" <user>...\n"));
    EXPECT_THAT(bodies(), IsEmpty());
}

}  // namespace
