// What a client makes of addresses that are none and of replies that nobody should send: one clear failure; the next
// call goes well.
#include <array>

#include "pvutil/Limits.h"
#include "tests/client/ClientFixture.h"

namespace {

namespace limits = kzn::pvutil::limits;
using kzn::test::replyText;
using kzn::test::Script;

class BadInputTest : public ClientFixture {
protected:
    int call(CWapiClient& of) { return of.callWapi("c"_w, "cmd=x"_w); }

    void expectUnreachable(CWapiClient& of, const std::string& what)
    {
        EXPECT_EQ(call(of), 0) << what;
        EXPECT_EQ(of.getNetworkError(), 1) << what;
        const WAPIMESSAGE last = of.GetLstMsg();
        EXPECT_EQ(narrow(last.reason), "Network error. Unable to connect to" + narrow(of.getOpURL())) << what;
        EXPECT_EQ(last.code, 0) << what;
        EXPECT_EQ(last.exceptionID, CStringT()) << what;
        EXPECT_EQ(last.response, CStringT()) << what;
    }

    void expectUnreadable(const std::string& response, const std::string& what)
    {
        EXPECT_EQ(call(client), 0) << what;
        EXPECT_EQ(client.getNetworkError(), 0) << what;
        const WAPIMESSAGE last = client.GetLstMsg();
        EXPECT_EQ(last.reason, CStringT()) << what;
        EXPECT_EQ(last.exceptionID, CStringT()) << what;
        EXPECT_TRUE(narrow(last.response) == response) << what << ": " << last.response.size() << " units";
    }

    void expectUsable()
    {
        reply(credReply("fine"));
        CStringT cred;
        EXPECT_EQ(client.getCredForExpired(cred, {}, {}, {}, {}, 0), 1);
        EXPECT_EQ(narrow(cred), "fine");
        EXPECT_EQ(client.getNetworkError(), 0);
        EXPECT_EQ(client.GetLstMsg().reason, CStringT());
        EXPECT_EQ(client.GetLstMsg().response, CStringT());
    }

    void expectBroken(Script script, const std::string& what)
    {
        server.closeConnections();  // on a used connection a request may be tried once more
        server.script(std::move(script));
        expectUnreachable(client, what);
        expectUsable();
    }

    void expectFailure(Script script, const std::string& what)
    {
        server.closeConnections();
        server.script(std::move(script));
        EXPECT_EQ(call(client), 0) << what;
        const WAPIMESSAGE last = client.GetLstMsg();
        EXPECT_EQ(last.reason.empty(), client.getNetworkError() == 0) << what;
        EXPECT_EQ(last.exceptionID, CStringT()) << what;
        expectUsable();
    }
};

constexpr std::array kBadAddresses = {
    "nosuch",
    "/kznconnect/op.do",
    "://127.0.0.1/",
    "http:",
    "http://",
    "http:///kznconnect/op.do",
    "http://nosuch.invalid/kznconnect/op.do",
    "http://nosuch.invalid:99999/kznconnect/op.do",
    "http://127.0.0.1:port/kznconnect/op.do",
    "http://[::1/kznconnect/op.do",
    "ftp://127.0.0.1/kznconnect/op.do",
    "file:///etc/passwd",
    "gopher://127.0.0.1/",
    "http://nosuch.invalid\r\nX-Injected: 1/",
    "😀",
    " ",
};

std::string repeated(const std::string& piece, std::size_t times)
{
    std::string all;
    all.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i) all += piece;
    return all;
}

}  // namespace

TEST_F(BadInputTest, AddressesThatAreNone)
{
    for (const char* address : kBadAddresses) {
        CWapiClient lost(wide(address));
        expectUnreachable(lost, address);
        expectUnreachable(lost, address);
    }
    expectUsable();
}

TEST_F(BadInputTest, AddressWithoutItsScheme)
{
    CWapiClient lost(wide("127.0.0.1:" + std::to_string(server.port()) + kOperationPath));
    expectUnreachable(lost, "no scheme");
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(BadInputTest, AddressOfOneHundredThousandUnits)
{
    CWapiClient lost(wide("http://" + std::string(100'000, 'a') + "/op.do"));
    expectUnreachable(lost, "long host");
}

TEST_F(BadInputTest, AddressThatIsHalfASurrogate)
{
    CStringT address = "http://nosuch.invalid/"_w;
    address += CStringT::value_type{0xD83D};
    CWapiClient lost(address);
    EXPECT_EQ(call(lost), 0);
    EXPECT_EQ(lost.getNetworkError(), 1);
    EXPECT_TRUE(lost.GetLstMsg().reason == "Network error. Unable to connect to"_w + address);
}

TEST_F(BadInputTest, ClosedPort)
{
    CWapiClient lost(
        wide("http://127.0.0.1:" + std::to_string(kzn::test::CaptureServer::closedPort()) + kOperationPath));
    expectUnreachable(lost, "closed port");
}

TEST_F(BadInputTest, ConnectionsThatBreakOff)
{
    const std::string whole = replyText(200, "text/xml", resultReply("SUCCESS"));
    const auto body = whole.find("\r\n\r\n") + 4;
    expectBroken(Script().send(whole.substr(0, 5)).close(), "cut off in the status line");
    expectBroken(Script().send(whole.substr(0, body - 2)).close(), "cut off in the headers");
    expectBroken(Script().send(whole.substr(0, body)).close(), "cut off before the body");
    expectBroken(Script().send(whole.substr(0, whole.size() - 1)).close(), "cut off before the last byte");
}

TEST_F(BadInputTest, ConnectionsThatEndBeforeTheFirstByte)
{
    expectBroken(Script().close(), "nothing at all");
}

// The system's own HTTP decides whether these are broken connections or replies without sense.
TEST_F(BadInputTest, RepliesThatAreHardlyHttp)
{
    expectFailure(Script().send("\x16\x03\x01 not http at all\r\n\r\n").close(), "another protocol");
    expectFailure(Script().send("HTTP/1.1 200 OK\r\nContent-Length: many\r\n\r\nabc").close(),
                  "a length that is no number");
    expectFailure(Script().send("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n" + resultReply("SUCCESS")).close(),
                  "longer than its length");
}

TEST_F(BadInputTest, ReplyShorterThanItsLength)
{
    expectBroken(Script().send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + resultReply("SUCCESS")).close(),
                 "too short");
}

TEST_F(BadInputTest, EmptyReply)
{
    reply("");
    expectUnreadable("", "empty");
    expectUsable();
}

TEST_F(BadInputTest, ReplyWithoutContent)
{
    server.script(Script().send("HTTP/1.1 204 No Content\r\n\r\n"));
    expectUnreadable("", "204");
    expectUsable();
}

TEST_F(BadInputTest, RepliesThatAreNotXml)
{
    for (const char* text : {"It works!", "{\"result\": \"SUCCESS\"}", "SUCCESS", "<", "<>", "&", "<kznapi", "<a></b>",
                             "<kznapi><response><result>SUCCESS</response></kznapi>", "<?xml version='9'?><kznapi/>"}) {
        reply(text);
        expectUnreadable(text, text);
    }
    expectUsable();
}

TEST_F(BadInputTest, RepliesThatAreNotUtf8)
{
    const std::string mark = "\xEF\xBF\xBD";  // U+FFFD
    reply("\xff\xfe\xfd");
    EXPECT_EQ(call(client), 0);
    reply("<kznapi><response><result>FAILURE</result><reason>a\xC0\x80z\xED\xA0\x80</reason></response></kznapi>");
    EXPECT_EQ(call(client), 0);
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "a" + mark + mark + "z" + mark + mark + mark);
    reply(resultReply("FAILURE") + std::string(3, '\0') + resultReply("SUCCESS"));
    EXPECT_EQ(call(client), 0);
    expectUsable();
}

TEST_F(BadInputTest, ReplyOfOneHundredMegabytes)
{
    reply(resultReply("SUCCESS", repeated("<x>0123456789</x>", 100'000'000 / 17)));
    expectUnreachable(client, "100 MB");
    expectUsable();
}

TEST_F(BadInputTest, ReplyOfTenMegabytesIsRead)
{
    const std::string large = resultReply("SUCCESS", repeated("<x>0123456789</x>", 10'000'000 / 17));
    reply(large);
    EXPECT_EQ(call(client), 1);
    expectUsable();
}

// A reply beyond a limit is no success, however much of it was read.
TEST_F(BadInputTest, RepliesBeyondTheLimitsOfTheirXml)
{
    const auto expectBeyond = [&](const std::string& text, const char* reason) {
        reply(text);
        CStringT cred = "before"_w;
        EXPECT_EQ(client.cloneSession({}, {}, cred), 0);
        EXPECT_EQ(cred, "before"_w);
        EXPECT_EQ(client.getNetworkError(), 0);
        EXPECT_EQ(client.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
        EXPECT_EQ(narrow(client.GetLstMsg().reason), reason);
        EXPECT_EQ(narrow(client.GetLstMsg().response), text);
        expectUsable();
    };
    constexpr const char* kTooDeep = "The reply is nested too deeply.";
    expectBeyond(resultReply("SUCCESS", repeated("<a>", limits::kXmlDepth) + repeated("</a>", limits::kXmlDepth)),
                 kTooDeep);
    expectBeyond(repeated("<kznapi><response><result>", 100'000), kTooDeep);
    expectBeyond(credReply(std::string(limits::kXmlTextUnits + 1, 'c')), "A text of the reply is too long.");
    const std::string messages = repeated("<message/>", limits::kXmlItems + 1);
    expectBeyond(resultReply("SUCCESS", "<messageStrings>" + messages + "</messageStrings>"),
                 "A list of the reply is too long.");

    reply(resultReply("SUCCESS", repeated("<a>", limits::kXmlDepth - 1) + repeated("</a>", limits::kXmlDepth - 1)));
    EXPECT_EQ(call(client), 1);
    // What just breaks off is read as far as it goes.
    reply(resultReply("SUCCESS").substr(0, resultReply("SUCCESS").size() - 3));
    EXPECT_EQ(call(client), 1);
}

TEST_F(BadInputTest, ReplyBeyondALimitIsHandedThroughByTheProxyCall)
{
    std::string deep = resultReply("SUCCESS");
    for (int level = 0; level < 2'000; ++level) deep.insert(0, "<a>").append("</a>");
    reply(deep);
    CStringT received = "before"_w;
    EXPECT_EQ(client.WapiProxyCall({}, "cmd=get"_w, CWapiClient::METHOD_POST, client.getOpURL(), {}, 1, received), 0);
    EXPECT_EQ(narrow(received), deep);
}

TEST_F(BadInputTest, ArgumentsThatAreHalvesOfSurrogates)
{
    reply(resultReply("SUCCESS"));
    const CStringT half(1, CStringT::value_type{0xDC00});
    EXPECT_EQ(client.callWapi(half, "cmd="_w + half), 1);
    EXPECT_EQ(lastBody(), "cmd=\xEF\xBF\xBD&cred=%EF%BF%BD");
}

TEST_F(BadInputTest, ArgumentsWithZeroUnits)
{
    reply(resultReply("SUCCESS"));
    const CStringT zero(1, CStringT::value_type{0});
    EXPECT_EQ(client.callWapi(zero, "cmd="_w + zero + "x"_w), 1);
    EXPECT_EQ(lastBody(), "cmd=" + std::string(1, '\0') + "x&cred=%00");
}
