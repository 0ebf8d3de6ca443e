// What the program shows of its exchanges, and what it never shows.
#include <nlohmann/json.hpp>
#include <regex>

#include "tests/host/HostFixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kEdit =
    "cmd=set&cred=C1&type=workspace&id=W1&xml=%3Cworkspace%3E%3Cext%3E%3CKZN%3E%3Cdescription%3E%3C%2Fdescription%3E"
    "%3C%2FKZN%3E%3C%2Fext%3E%3CworkspaceName%3EN%3C%2FworkspaceName%3E%3C%2Fworkspace%3E";

TEST_F(SessionHostTest, OneLineTellsOfEachExchange)
{
    succeed();
    const Ended ended = pvwapi({"-v", "spaces", "edit", "W1", "--name", "N"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, "");
    const std::regex line(
        R"(pvwapi: \d\d:\d\d:\d\d\.\d{3}Z set workspace: (\d+) bytes out, (\d+) in, HTTP 200, SUCCESS, \d+ ms\n)");
    std::smatch found;
    ASSERT_TRUE(std::regex_match(ended.err, found, line)) << ended.err;
    EXPECT_EQ(found.str(1), std::to_string(bodies().back().size()));
    EXPECT_EQ(found.str(2),
              std::to_string(std::string("<kznapi><response><result>SUCCESS</result></response></kznapi>").size()));
}

TEST_F(HostTest, SignInAndSignOutAreExchangesToo)
{
    signInAs("C1");
    refuse("Not now", "Busy");
    succeed();
    const Ended ended = pvwapi({"session", "-v"});
    EXPECT_EQ(ended.status, 1);
    const std::regex lines(
        "pvwapi: [^ ]+ login: .* HTTP 200, SUCCESS, .*\n"
        "pvwapi: [^ ]+ get sessionInfo: .* HTTP 200, FAILURE, .*\n"
        "pvwapi: [^ ]+ logout: .* HTTP 200, SUCCESS, .*\n"
        "pvwapi: session: Not now \\(Busy\\)\n");
    EXPECT_TRUE(std::regex_match(ended.err, lines)) << ended.err;
}

TEST_F(SessionHostTest, ExchangeWithoutAReplyIsTold)
{
    server.script(kzn::test::Script().close());
    EXPECT_THAT(pvwapi({"session", "-v"}).err, HasSubstr(" bytes out, 0 in, no reply, "));
}

TEST_F(SessionHostTest, RequestAndReplyAreShownIndented)
{
    server.reply(200, "text/xml", "<kznapi>\n<response><result>SUCCESS</result></response><a b=\"1>2\"/>\n</kznapi>");
    const Ended ended = pvwapi({"spaces", "edit", "W1", "--name", "R&D", "-vv"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.err, StartsWith("> POST " + environment["PVWAPI_BASE_URL"] + "\n> Accept: */*\n"));
    EXPECT_THAT(ended.err, HasSubstr("> cmd = set\n> cred = ***\n> type = workspace\n> id = W1\n> xml =\n"
                                     "> <workspace>\n>   <ext>\n>     <KZN>\n>       <description></description>\n"
                                     ">     </KZN>\n>   </ext>\n>   <workspaceName>R&amp;D</workspaceName>\n"
                                     "> </workspace>\n"));
    EXPECT_THAT(ended.err, HasSubstr("< HTTP 200\n< <kznapi>\n<   <response>\n<     <result>SUCCESS</result>\n"
                                     "<   </response>\n<   <a b=\"1>2\"/>\n< </kznapi>\n"));
}

TEST_F(HostTest, SecretsAreMaskedWhereverTheyStand)
{
    environment["PVWAPI_PASSWORD"] = "geheim&12345";
    signInAs("sitzung/0815");
    succeed(
        "<return><user><ext><KZN><rdqAV><Password>avword</Password><QueltAVToken>avtok</QueltAVToken></rdqAV></KZN>"
        "</ext></user><ns:cred a='1'>other1</ns:cred><x url='http://h/?cred=other2&amp;a=1' token=\"other3\"/>"
        "<y>geheim&amp;12345 {\"cred\": \"other4\"} http://u:other5@h/</y></return>");
    succeed();
    const Ended ended = pvwapi({"user", "show", "-vv"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    for (const char* const secret : {"geheim", "sitzung", "0815", "avword", "avtok", "other"}) {
        EXPECT_THAT(ended.err, Not(HasSubstr(secret)));
    }
    EXPECT_THAT(ended.err, AllOf(HasSubstr("> username = anna\n> password = ***\n"), HasSubstr("<cred>***</cred>"),
                                 HasSubstr("<Password>***</Password>"), HasSubstr("?cred=***&amp;a=1")));
}

TEST_F(SessionHostTest, ElementOfASecretIsMaskedUpToItsOwnEnd)
{
    const std::vector<std::string> elements{
        "<myPassword><![CDATA[</myPassword>SECRET]]></myPassword>",
        "<cred><cred>in</cred>SECRET</cred>",
        "<cred><cred/><cred a='/>'>in</cred>SECRET</cred>",
        "<cred><!-- </cred> -->SECRET</cred>",
        "<cred><?x </cred>?>SECRET</cred>",
        "<cred a=\"/>\">SECRET</cred>",
        "<cred token=\"SECRET\">a</cred>",
        "<cred token='SECRET'/>",
        "<cred token='SECRET",
        "<cred a=\"SECRET",
        "<cred><![CDATA[</cred>SECRET",
        R"({"token":"a\"SECRET"})",
    };
    for (const std::string& element : elements) {
        server.reply(200, "text/xml", "<a><b>open</b>" + element);
        const Ended ended = pvwapi({"session", "-vv"});
        EXPECT_THAT(ended.err, AllOf(HasSubstr("open"), HasSubstr("***"), Not(HasSubstr("SECRET")))) << element;
    }
    server.reply(200, "text/xml", "<a><cred><cred/>x<cred>y</cred></cred><b>behind</b></a>");
    EXPECT_THAT(pvwapi({"session", "-vv"}).err, HasSubstr("<cred>***</cred>\n<   <b>behind</b>"));
}

TEST_F(SessionHostTest, ResultOfAnExchangeIsMasked)
{
    environment["PVWAPI_CRED"] = "geheim-0815-geheim-0815";
    server.reply(200, "text/xml", "<kznapi><result>geheim-0815-geheim-0815</result></kznapi>");
    const std::string err = pvwapi({"session", "-v"}).err;
    EXPECT_THAT(err, AllOf(HasSubstr("HTTP 200, ***, "), Not(HasSubstr("geheim"))));
    server.reply(200, "text/xml", "<kznapi><result>a token=xyz</result></kznapi>");
    EXPECT_THAT(pvwapi({"session", "-v"}).err, HasSubstr("HTTP 200, a token=***, "));
}

TEST_F(HostTest, SecretsAreShownToWhoeverAsksForThem)
{
    signInAs("C1");
    const Ended ended = pvwapi({"login", "-vv", "--show-secrets"});
    EXPECT_THAT(ended.err, AllOf(HasSubstr("> password = p&w\n"), HasSubstr("<cred>C1</cred>"), Not(HasSubstr("***"))));
}

TEST_F(SessionHostTest, HeadersAndAddressesOfCallersAreMaskedToo)
{
    server.reply(200, "text/plain", "plain");
    const Ended ended = pvwapi({"proxy", "a=1&token=t1", "--method", "get", "--header", "Authorization: Basic YTpi",
                                "--header", "X-Cred: zzz", "-vv"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, AllOf(HasSubstr("op.do?a=1&token=***&cred=***\n"), HasSubstr("> Authorization: ***\n"),
                                 HasSubstr("> X-Cred: ***\n"), Not(HasSubstr("YTpi"))));
}

TEST_F(SessionHostTest, HostileRepliesDoNotDriveTheTerminal)
{
    const std::vector<std::string> replies{
        "",
        "<a><b></a>\x1b[2J",
        "<a>\x1b]0;x\x07\xC2\x9B\xE2\x80\xAE</a>",
        "<a b='",
        "<![CDATA[",
        "<!--",
        "</a>",
        "<cred>C99",
        "<cred",
        "\xff\xfe<a>",
        std::string(50'000, '<'),
        std::string("\0\0", 2),
    };
    for (const std::string& reply : replies) {
        server.reply(200, "text/xml", reply);
        const Ended ended = pvwapi({"session", "-vv"});
        EXPECT_EQ(ended.status, 1) << reply;
        EXPECT_EQ(std::ranges::count_if(ended.err, [](char c) { return c >= 0 && c < ' ' && c != '\n'; }), 0);
        EXPECT_THAT(ended.err,
                    AllOf(Not(HasSubstr("\xC2\x9B")), Not(HasSubstr("\xE2\x80\xAE")), Not(HasSubstr("C99"))));
    }
}

TEST_F(SessionHostTest, TagsThatBeginWithinOneAnotherAreMasked)
{
    std::string tags;
    for (int times = 0; times < 50'000; ++times) tags += "<cred a='SECRET' ";
    for (const char* const end : {">x", "/>", ""}) {
        server.reply(200, "text/xml", tags + end);
        const Ended ended = pvwapi({"session", "-vv"});
        EXPECT_EQ(ended.status, 1);
        EXPECT_THAT(ended.err, Not(HasSubstr("SECRET")));
    }
}

TEST_F(SessionHostTest, DeepRepliesAreShownAsWell)
{
    std::string deep;
    for (int level = 0; level < 1000; ++level) deep += "<a>";
    for (int level = 0; level < 1000; ++level) deep += "</a>";
    server.reply(200, "text/xml", deep);
    EXPECT_THAT(pvwapi({"session", "-vv"}).err, HasSubstr("<   <a>\n<     <a>\n"));
}

TEST_F(HostTest, DryRunNeedsNoCredentialsAndSendsNothing)
{
    environment.erase("PVWAPI_USER");
    environment.erase("PVWAPI_PASSWORD");
    const Ended ended = pvwapi({"spaces", "edit", "W1", "--name", "N", "--dry-run"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    std::string body = kEdit;
    body.replace(body.find("C1"), 2, "CRED");
    EXPECT_EQ(ended.out, "POST " + environment["PVWAPI_BASE_URL"] +
                             "\nAccept: */*\nUser-Agent: pvWapi/1.0\n"
                             "Content-Type: application/x-www-form-urlencoded\n\n" +
                             body + "\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(pvwapi({"login", "--dry-run"}).status, 0);
    EXPECT_EQ(pvwapi({"logout", "--dry-run"}).status, 0);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(SessionHostTest, DryRunIsTheRequestThatWouldBeSent)
{
    const std::vector<Words> commands{{"spaces", "edit", "W1", "--name", "N"},
                                      {"spaces", "create", "R&D <x>", "--description", "é"},
                                      {"notify", "W1"},
                                      {"event", "send", "W1", "end-voice"}};
    for (Words words : commands) {
        succeed();
        pvwapi(words);
        words.insert(words.end(), {"--dry-run", "--show-secrets", "--format", "json"});
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        const json request = json::parse(ended.out, nullptr, false).at("request");
        EXPECT_EQ(request.at("method"), "POST");
        EXPECT_EQ(request.at("url"), environment["PVWAPI_BASE_URL"]);
        EXPECT_EQ(request.at("body"), bodies().back());
        for (const std::string line : request.at("headers")) {
            EXPECT_EQ(server.requests().back().header(line.substr(0, line.find(':'))), line.substr(line.find(':') + 2));
        }
    }
    EXPECT_EQ(bodies().size(), commands.size());
}

TEST_F(SessionHostTest, DryRunMasksAndShowsTheFirstOfSeveralRequests)
{
    EXPECT_THAT(pvwapi({"av", "create", "--dry-run"}).out, HasSubstr("\n\ncmd=get&cred=***&type=user&"));
    EXPECT_THAT(pvwapi({"proxy", "x=%3Ccred%3Eabc%3C%2Fcred%3E", "--no-cred", "--dry-run"}).out,
                HasSubstr("\n\nx=%3Ccred%3E***%3C%2Fcred%3E\n"));
    EXPECT_THAT(pvwapi({"icon", "get", server.address("/i.png"), "--dry-run"}).out,
                StartsWith("GET " + server.address("/i.png?cred=***") + "\n"));
    EXPECT_EQ(pvwapi({"spaces", "test", "--dry-run"}).out, "");
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(SessionHostTest, DryRunLeavesWhatIsNotMaskedAsItGoesOut)
{
    for (const Words& words : {Words{"spaces", "create", "X & <cred>q0q</cred> é"}, Words{"proxy", "x=<a%3e%41</a>"}}) {
        Words dry = words;
        dry.insert(dry.end(), {"--dry-run", "--show-secrets", "--format", "json"});
        std::string body = json::parse(pvwapi(dry).out, nullptr, false).at("request").at("body");
        dry.erase(dry.end() - 3);
        for (const std::string secret : {"C1", "q0q"}) {
            const std::size_t at = body.find(secret);
            if (at != std::string::npos) body.replace(at, secret.size(), "***");
        }
        EXPECT_EQ(json::parse(pvwapi(dry).out, nullptr, false).at("request").at("body"), body);
    }
    EXPECT_THAT(pvwapi({"proxy", "x=<cred>a&b</cred>&y=1", "--dry-run"}).out,
                HasSubstr("\n\nx=<cred>***</cred>&y=1&cred=***\n"));
    EXPECT_THAT(pvwapi({"proxy", "x=<cred>%41b</cred>%3cc>%zz{\"token\":\"q\"}", "--dry-run"}).out,
                HasSubstr("\n\nx=<cred>***</cred>%3cc>%zz{\"token\":\"***\"}&cred=***\n"));
}

TEST_F(SessionHostTest, DryRunMeasuresThePicture)
{
    writeFile(path("a.png"), std::string("\x89PNG\0\x1b[2J", 9), true);
    const Ended ended = pvwapi({"icon", "set", "W1", path("a.png"), "--dry-run"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, AllOf(HasSubstr("name=\"cred\"\n\n***\n"), HasSubstr("name=\"task\"\n\nManageSpaceIcon\n"),
                                 HasSubstr("\n(9 bytes)\n"), Not(HasSubstr("PNG"))));
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(HostTest, DryRunStillTakesNoCommandThatIsNone)
{
    const Ended ended = pvwapi({"members", "remove", "W1", "a'b", "--dry-run"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
}

}  // namespace
