// The program as its user meets it.
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/log/LogText.h"
#include "tests/log/ProgramFixture.h"

namespace {

using namespace logtest;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

constexpr std::string_view kLogin = "cmd=login&username=ann&password=S3CRET&isp=i&autocommit=true";
constexpr std::string_view kLogout = "cmd=logout&cred=S3CRED";

std::string session()
{
    return call(kLogin,
                "<kznapi><response><result>SUCCESS</result></response><securityContext><cred>S3CRED</cred>"
                "</securityContext></kznapi>") +
           call("cmd=delete&cred=S3CRED&type=tab&id=t1", failure("no such tab", "tab.unknown")) + call(kLogout, "");
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

TEST_F(LogProgramTest, CallIsALine)
{
    write("log.txt", session());
    const Ended ended = run({path("log.txt")});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "");
    const auto lines = linesOf(ended.out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[0], MatchesRegex("    1  2026-01-31 23:59:58  login  +SUCCESS +60 out +116 in"));
    EXPECT_THAT(lines[1], MatchesRegex(".*deleteTab +FAILURE +37 out .* in  no such tab +.tab.unknown."));
    EXPECT_THAT(lines[2], MatchesRegex(".*logout +no reply .* 0 in"));
    EXPECT_THAT(ended.out, Not(HasSubstr("pid")));
}

TEST_F(LogProgramTest, ProcessIsNamedOnceThereAreSeveral)
{
    write("log.txt", call(kLogout, kSuccess, "1") + call(kLogout, kSuccess, "2") + call(kLogout, kSuccess, "1"));
    const auto lines = linesOf(run({path("log.txt")}).out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[0], Not(HasSubstr("pid")));
    EXPECT_THAT(lines[1], HasSubstr("  pid 2  "));
    EXPECT_THAT(lines[2], HasSubstr("  pid 1  "));
}

TEST_F(LogProgramTest, LinesOfAPipeAreNeverCut)
{
    const std::string reason(500, 'r');
    write("log.txt", call(kLogout, failure(reason, "e")));
    EXPECT_THAT(run({path("log.txt")}).out, HasSubstr(reason));
}

TEST_F(LogProgramTest, CallsAreChosen)
{
    write("log.txt", session());
    const std::string log = path("log.txt");
    const auto count = [&](std::vector<std::string> words) {
        words.push_back(log);
        return linesOf(run(words).out).size();
    };
    EXPECT_EQ(count({"--failed"}), 2U);
    EXPECT_EQ(count({"--operation", "LOG"}), 2U);
    EXPECT_EQ(count({"--operation", "log?n"}), 1U);
    EXPECT_EQ(count({"--operation", "log*", "--failed"}), 1U);
    EXPECT_EQ(count({"--since", "2026-01-31"}), 3U);
    EXPECT_EQ(count({"--until", "2026-01-31"}), 3U);
    EXPECT_EQ(count({"--since", "2026-01-31 23:59:59"}), 0U);
    EXPECT_EQ(count({"--until", "2026-01-30"}), 0U);
    EXPECT_EQ(count({"--since", "2026-0"}), 3U);
    EXPECT_EQ(count({"--since", "2025-12-31 23:59:60"}), 3U);
}

TEST_F(LogProgramTest, DetailsOfOneAndOfAll)
{
    write("log.txt", session());
    const Ended one = run({"--call", "2", path("log.txt")});
    EXPECT_EQ(one.status, 0);
    EXPECT_THAT(one.out, StartsWith("    2  "));
    EXPECT_THAT(one.out, HasSubstr("        id = t1\n"));
    EXPECT_THAT(one.out, HasSubstr("\n            <reason>no such tab</reason>\n"));
    EXPECT_THAT(one.out, Not(HasSubstr("login")));

    const Ended all = run({"-x", path("log.txt")});
    EXPECT_THAT(all.out, HasSubstr("        password = ***\n"));
    EXPECT_THAT(all.out, HasSubstr("<cred>***</cred>"));
    EXPECT_THAT(all.out, Not(HasSubstr("S3CRE")));
    const Ended open = run({"-x", "--show-secrets", path("log.txt")});
    EXPECT_THAT(open.out, HasSubstr("        password = S3CRET\n"));
    EXPECT_THAT(open.out, HasSubstr("<cred>S3CRED</cred>"));
}

TEST_F(LogProgramTest, JsonIsAnObjectALine)
{
    write("log.txt", session());
    const Ended ended = run({"--json", path("log.txt")});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, Not(HasSubstr("S3CRE")));
    const auto lines = linesOf(ended.out);
    ASSERT_EQ(lines.size(), 3U);
    std::vector<std::string> results;
    for (const std::string& line : lines) results.push_back(nlohmann::json::parse(line)["result"]);
    EXPECT_THAT(results, testing::ElementsAre("SUCCESS", "FAILURE", "no reply"));
}

TEST_F(LogProgramTest, LogWithoutCallsIsSaid)
{
    for (const char* const text : {"", "no log\n", "<a/>\r\n<b/>"}) {
        write("log.txt", text);
        const Ended ended = run({path("log.txt")});
        EXPECT_EQ(ended.status, 0);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "pvwapi-log: " + path("log.txt") + ": the log holds no calls\n");
    }
    write("log.txt", session());
    EXPECT_EQ(run({"--operation", "x", path("log.txt")}).err,
              "pvwapi-log: " + path("log.txt") + ": none of 3 calls is one of those\n");
}

TEST_F(LogProgramTest, ProblemIsOneLineAndStatus2)
{
    write("log.txt", session());
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{path("missing.txt")}, "missing.txt: "},
        {{path("")}, "this is a folder"},
        {{"--frobnicate"}, "The following argument was not expected: --frobnicate; see pvwapi-log --help"},
        {{"a", "b"}, "The following argument was not expected: b; see pvwapi-log --help"},
        {{"--call", "0", "x"}, "'0' is no number of a call"},
        {{"--call", "-1", "x"}, "--call"},
        {{"--call", "4", path("log.txt")}, "there is no call 4: the log has 3"},
        {{"--since", "yesterday"}, "'yesterday' is no time"},
        {{"--since", "2026-13"}, "'2026-13' is no time"},
        {{"--since", "2026-2"}, "'2026-2' is no time"},
        {{"--until", "2026-01-00"}, "'2026-01-00' is no time"},
        {{"--until", "2026-01-31 24"}, "'2026-01-31 24' is no time"},
        {{"--\x1b[2J"}, "\\u001b[2J"},
    };
    for (const auto& [words, message] : cases) {
        const Ended ended = run(words);
        EXPECT_EQ(ended.status, 2) << message;
        EXPECT_EQ(ended.out, "");
        EXPECT_THAT(ended.err, StartsWith("pvwapi-log: "));
        EXPECT_THAT(ended.err, HasSubstr(message));
        EXPECT_EQ(linesOf(ended.err).size(), 1U);
    }
}

TEST_F(LogProgramTest, HelpAndVersionGoToStandardOutput)
{
    EXPECT_THAT(run({"--help"}).out, HasSubstr("Usage: pvwapi-log"));
    EXPECT_THAT(run({"--version"}).out, MatchesRegex("pvwapi-log .+\n"));
    EXPECT_EQ(run({"--version"}).status, 0);
}

TEST_F(LogProgramTest, NameOfTheFileMayBeAnyText)
{
    write("log.txt", session());
    const auto name = std::filesystem::path(path("log.txt")).parent_path() / u8"Łog é.txt";
    std::filesystem::rename(path("log.txt"), name);
    const auto utf8 = name.u8string();
    EXPECT_EQ(linesOf(run({std::string(utf8.begin(), utf8.end())}).out).size(), 3U);
}

// More text than is ever held at once.
TEST_F(LogProgramTest, LargeRepliesAreReadToTheEnd)
{
    const std::string large = "<kznapi><response><result>SUCCESS</result></response><return>" +
                              std::string(std::size_t{64} << 20, 'x') + "</return></kznapi>";
    write("log.txt", call(kLogin, large) + call(kLogout, kSuccess));
    const Ended ended = run({path("log.txt")});
    EXPECT_EQ(ended.err, "");
    ASSERT_EQ(linesOf(ended.out).size(), 2U);
    EXPECT_THAT(linesOf(ended.out)[0], MatchesRegex(".* SUCCESS .* 67108943 in"));
    EXPECT_THAT(linesOf(ended.out)[1], HasSubstr("logout"));
    EXPECT_EQ(run({"--json", "--call", "1", path("log.txt")}).status, 0);
    EXPECT_EQ(run({"--call", "1", path("log.txt")}).status, 0);
}

}  // namespace
