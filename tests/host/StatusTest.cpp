// How commands end: the exit status, and the line or the object that says why.
#include <nlohmann/json.hpp>

#include "tests/host/HostFixture.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

std::string closedAddress()
{
    return "http://127.0.0.1:" + std::to_string(kzn::test::CaptureServer::closedPort()) + "/kznconnect/op.do";
}

json errorOf(const Ended& ended)
{
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err.find('\n'), ended.err.size() - 1) << ended.err;
    return json::parse(ended.err, nullptr, false).at("error");
}

TEST_F(SessionHostTest, RefusalIsAnObjectInJson)
{
    refuse("Not \"now\"&#10;é", "Busy");
    const Ended ended = pvwapi({"spaces", "list", "--format", "json"});
    EXPECT_EQ(ended.status, 1);
    const json expected{
        {"status", 1}, {"command", "spaces list"}, {"reason", "Not \"now\"\né"}, {"exceptionID", "Busy"}};
    EXPECT_EQ(errorOf(ended), expected);
}

TEST_F(SessionHostTest, ExceptionIdentifierIsMaskedToo)
{
    environment["PVWAPI_CRED"] = "geheim-0815";
    refuse("No", "X:geheim-0815 cred=abc");
    EXPECT_EQ(pvwapi({"spaces", "list"}).err, "pvwapi: spaces list: No (X:*** cred=***)\n");
    refuse("No", "X:geheim-0815 cred=abc");
    EXPECT_EQ(errorOf(pvwapi({"spaces", "list", "--format", "json"})).at("exceptionID"), "X:*** cred=***");
}

TEST_F(SessionHostTest, ReplyThatIsNoAnswerIsNamedWithItsStatus)
{
    for (const int status : {200, 302, 307, 404, 500}) {
        for (const char* const reply : {"", "<html>no</html>", "not XML"}) {
            server.reply(status, "text/html", reply);
            const Ended ended = pvwapi({"spaces", "list"});
            EXPECT_EQ(ended.status, 1);
            EXPECT_EQ(ended.err, "pvwapi: spaces list: the reply is no answer of the service (HTTP " +
                                     std::to_string(status) + ")\n");
        }
    }
    server.reply(200, "text/xml", "<kznapi><response><result>FAILURE</result></response></kznapi>");
    EXPECT_EQ(pvwapi({"spaces", "list"}).err, "pvwapi: spaces list: failed without a reason\n");
}

TEST_F(SessionHostTest, WordsThatMakeNoCommandAreAnObjectToo)
{
    for (const Words& words : {Words{"--format", "json", "frob"}, Words{"--format=json", "frob"}}) {
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 2);
        const json error = errorOf(ended);
        EXPECT_EQ(error.at("status"), 2);
        EXPECT_THAT(std::string(error.at("reason")), HasSubstr("frob"));
        EXPECT_FALSE(error.contains("command") || error.contains("network") || error.contains("exceptionID"));
    }
    EXPECT_THAT(pvwapi({"frob", "--format", "table"}).err, StartsWith("pvwapi: "));
    EXPECT_THAT(pvwapi({"frob", "--", "--format", "json"}).err, StartsWith("pvwapi: "));
}

TEST_F(SessionHostTest, AddressThatIsNoneNamesItself)
{
    const Ended ended = pvwapi({"spaces", "list", "--base-url", "ftp://h/", "--format", "json"});
    EXPECT_EQ(ended.status, 3);
    const json error = errorOf(ended);
    EXPECT_EQ(error.at("reason"), "no connection: Reading the address: neither an http nor an https address: ftp://h/");
    EXPECT_EQ(error.at("network").at("kind"), "bad-address");
    EXPECT_EQ(error.at("network").at("text"), "Reading the address: neither an http nor an https address");
}

TEST_F(SessionHostTest, ServerThatIsNotThereNamesTheCause)
{
    const std::string url = closedAddress();
    const Ended ended = pvwapi({"spaces", "list", "--base-url", url});
    EXPECT_EQ(ended.status, 3);
    const std::string peer = url.substr(7, url.find('/', 7) - 7);
    EXPECT_THAT(ended.err, StartsWith("pvwapi: spaces list: no connection: Connecting to " + peer + ": "));
    EXPECT_THAT(ended.err, Not(HasSubstr("pvwapi-service")));
    const json network = errorOf(pvwapi({"spaces", "list", "--base-url", url, "--format", "json"})).at("network");
    EXPECT_EQ(network.at("kind"), "refused");
    EXPECT_THAT(std::string(network.at("text")), StartsWith("Connecting to " + peer));
}

TEST_F(SessionHostTest, SignOutThatReachesNobodySaysSo)
{
    const Ended ended = pvwapi({"logout", "--base-url", closedAddress()});
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.err, "pvwapi: logout: the service did not answer; the session may still be open\n");
}

TEST_F(HostTest, CallThatTakesTooLongIsStoppedAndTheSessionEnded)
{
    signInAs("C1");
    server.script(kzn::test::Script().pause(std::chrono::seconds(5)).send(kzn::test::replyText(200, "text/xml", "")));
    const Ended ended = pvwapi({"session", "--timeout", "0.5"});
    EXPECT_EQ(ended.status, 4);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, MatchesRegex("pvwapi: session: stopped by --timeout: .+\n"));
    EXPECT_EQ(bodies().back(), "cmd=logout&cred=C1");
}

TEST_F(SessionHostTest, TimeoutIsANumberOfSeconds)
{
    for (const char* const time : {"0", "0.0001", "-1", "1s", "nan", "inf", "1e3", "99999999", ""}) {
        const Ended ended = pvwapi({"session", std::string("--timeout=") + time});
        EXPECT_EQ(ended.status, 2) << time;
        EXPECT_THAT(ended.err, HasSubstr("--timeout")) << time;
    }
    EXPECT_THAT(bodies(), IsEmpty());
    succeed();
    EXPECT_EQ(pvwapi({"spaces", "delete", "W1", "--timeout", "2.5"}).status, 0);
}

TEST_F(SessionHostTest, NoCredentialStandsInAnAddressThatIsShown)
{
    environment["PVWAPI_CRED"] = "C&1";
    server.reply(404, "text/plain", "no");
    const Ended ended = pvwapi({"icon", "get", server.address("/icons/none.png")});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(server.requests().back().target, "/icons/none.png?cred=C%261");
    EXPECT_THAT(ended.err, testing::EndsWith("/icons/none.png?cred=***\n"));
}

TEST_F(SessionHostTest, CredentialGoesToNoOtherHost)
{
    kzn::test::CaptureServer other;
    const std::string line =
        "pvwapi: icon get: the credential would go to another host than the service's; --any-host sends it there\n";
    const std::string own = server.address("/i.png");
    const std::vector<std::string> addresses{
        other.address("/i.png"),
        "https" + own.substr(4),
        "http://" + own.substr(7, own.find('/', 7) - 7) + "@127.0.0.1:" + std::to_string(other.port()) + "/",
        "http://127.0.0.1/i.png",
        "//127.0.0.1/i.png",
        "/i.png",
        "",
    };
    for (const std::string& address : addresses) {
        const Ended ended = pvwapi({"icon", "get", address});
        EXPECT_EQ(ended.status, 2) << address;
        EXPECT_EQ(ended.err, line) << address;
    }
    EXPECT_TRUE(other.requests().empty());
    EXPECT_THAT(bodies(), IsEmpty());

    other.reply(404, "text/plain", "no");
    EXPECT_EQ(pvwapi({"icon", "get", other.address("/i.png"), "--any-host"}).status, 1);
    EXPECT_EQ(other.requests().size(), 1U);
    server.reply(404, "text/plain", "no");
    EXPECT_EQ(pvwapi({"icon", "get", "HTTP" + own.substr(4)}).status, 1);
    EXPECT_EQ(bodies().size(), 1U);
}

}  // namespace
