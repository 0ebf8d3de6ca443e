// Commands of the caller's own making.
#include "tests/host/HostFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProxyHostTest : public HostTest {
protected:
    ProxyHostTest() { environment["PVWAPI_CRED"] = "C 1"; }
};

TEST_F(ProxyHostTest, PostsTheCommandWithTheCredential)
{
    succeed("\n\t<x>ü\x7f</x>");
    const Ended ended = pvwapi({"proxy", "cmd=get&x=a b", "--header", "X-One: 1", "--header", "X-Two: [a,b]"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "<kznapi><response><result>SUCCESS</result></response>\n\t<x>ü\\u007f</x></kznapi>\n");
    EXPECT_THAT(bodies(), ElementsAre("cmd=get&x=a b&cred=C%201"));
    EXPECT_EQ(server.requests().back().method, "POST");
    EXPECT_EQ(server.requests().back().target, "/kznconnect/op.do");
    EXPECT_EQ(server.requests().back().header("X-One"), "1");
    EXPECT_EQ(server.requests().back().header("X-Two"), "[a,b]");
}

TEST_F(ProxyHostTest, GetJoinsTheCommandToTheUrl)
{
    server.reply(200, "text/plain", "plain text");
    const Ended ended = pvwapi(
        {"proxy", "a=1&b=2", "--method", "get", "--url", server.address("/other"), "--no-cred", "--format", "json"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "{\n  \"reply\": \"plain text\"\n}\n");
    EXPECT_EQ(server.requests().back().method, "GET");
    EXPECT_EQ(server.requests().back().target, "/other?a=1&b=2");
    EXPECT_EQ(server.requests().back().body, "");
}

TEST_F(ProxyHostTest, RefusalQuotesTheReply)
{
    server.reply(200, "text/xml", "<kznapi>\n" + std::string(400, 'x'));
    const Ended ended = pvwapi({"proxy", "cmd=x"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: proxy: the reply is not a success: <kznapi>\\u000a" + std::string(291, 'x') + "…\n");
}

TEST_F(ProxyHostTest, RefusalQuotesNoSecret)
{
    environment["PVWAPI_CRED"] = "geheim-0815";
    server.reply(200, "text/xml",
                 "<kznapi><cred>other1</cred><myPassword>other2</myPassword>{\"token\":\"other3\"}geheim-0815" +
                     std::string(192, 'x') + "geheim-0815</kznapi>");
    const Ended ended = pvwapi({"proxy", "cmd=x"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err,
              "pvwapi: proxy: the reply is not a success: <kznapi><cred>***</cred><myPassword>***</myPassword>"
              "{\"token\":\"***\"}***" +
                  std::string(192, 'x') + "***</kznapi>\n");
}

TEST_F(ProxyHostTest, SignInIsNotAllowedThisWay)
{
    for (const char* const word : {"--format=table", "--no-cred"}) {
        const Ended ended = pvwapi({"proxy", "x=1&cmd=login&username=a", word});
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "pvwapi: proxy: the client signs nobody in this way; use pvwapi login\n");
    }
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(ProxyHostTest, NoReplyIsAFailure)
{
    const std::string url = "http://127.0.0.1:" + std::to_string(kzn::test::CaptureServer::closedPort()) + "/";
    const Ended ended = pvwapi({"proxy", "cmd=x", "--no-cred", "--url", url});
    EXPECT_EQ(ended.status, 3);
    EXPECT_THAT(ended.err, testing::StartsWith("pvwapi: proxy: no connection: Connecting to 127.0.0.1:"));
}

TEST_F(ProxyHostTest, HeaderThatIsNoHeaderLineIsRefused)
{
    EXPECT_EQ(pvwapi({"proxy", "cmd=x", "--header", "novalue"}).err,
              "pvwapi: proxy: --header: not of the form Name: value\n");
    const Ended ended = pvwapi({"proxy", "cmd=x", "--header", "A: b\r\nC: d"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.err, "pvwapi: proxy: --header: a line cannot hold control characters\n");
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(ProxyHostTest, CallSaysOnlyWhetherItSucceeded)
{
    succeed("<x/>");
    const Ended good = pvwapi({"call", "cmd=a&b=c"});
    EXPECT_EQ(good.status, 0);
    EXPECT_EQ(good.out + good.err, "");
    refuse("No such command", "Unknown");
    const Ended bad = pvwapi({"call", "cmd=a"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err, "pvwapi: call: No such command (Unknown)\n");
    EXPECT_THAT(bodies(), ElementsAre("cmd=a&b=c&cred=C%201", "cmd=a&cred=C%201"));
}

}  // namespace
