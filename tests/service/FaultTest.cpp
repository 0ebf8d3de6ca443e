// What a client meets on the wire where a fault strikes, byte by byte.
#include <algorithm>

#include "tests/service/FaultedService.h"
#include "tests/support/Wine.h"

namespace service::test {

namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Faults = FaultedService;

std::string bodyOf(const std::string& reply)
{
    const std::size_t at = reply.find("\r\n\r\n");
    return at == std::string::npos ? std::string() : reply.substr(at + 4);
}

TEST_F(Faults, RefuseClosesWithoutCarryingOut)
{
    const std::string body = makeSpaceBody("Not made");
    set(R"({"fault": "refuse", "operation": "AddTabs"})");
    const Heard heard = called(body);
    EXPECT_EQ(heard.bytes, "");
    EXPECT_EQ(heard.ended, Ended::closed);
    EXPECT_EQ(User(port_, "anna").spaceNamed("Not made"), "");
}

TEST_F(Faults, CloseTakesTheReplyAwayAndNotTheWork)
{
    const std::string body = makeSpaceBody("Made");
    set(R"({"fault": "close", "operation": "AddTabs"})");
    const Heard heard = called(body);
    EXPECT_EQ(heard.bytes, "");
    EXPECT_EQ(heard.ended, Ended::closed);
    EXPECT_NE(User(port_, "anna").spaceNamed("Made"), "");
}

TEST_F(Faults, ResetStrikesAtTheByte)
{
    for (const std::size_t byte : {0UL, 1UL, 17UL, 150UL}) {
        done("DELETE", "faults");
        set(R"({"fault": "reset", "byte": )" + std::to_string(byte) + "}");
        Wire wire(port_);
        wire.send("cmd=fly");
        const Heard heard = wire.hear();
        // What a reset overtakes may be lost, but nothing comes behind the byte.
        EXPECT_LE(heard.bytes.size(), byte);
        // Wine now and then takes a reset for the end.
        const bool isTaken = kzn::test::runsUnderWine() && heard.ended == Ended::closed;
        EXPECT_TRUE(isTaken || heard.ended == Ended::reset) << byte;
    }
}

TEST_F(Faults, StallStopsAtTheByteAndStaysOpen)
{
    set(R"({"fault": "stall", "byte": 20})");
    Wire wire(port_);
    wire.send("cmd=fly");
    EXPECT_EQ(wire.hear({}, 20).bytes, "HTTP/1.1 200 OK\r\nSer");
    EXPECT_TRUE(wire.isQuiet(milliseconds(500)));
    done("DELETE", "faults");
    expectWell();
}

TEST_F(Faults, RateSendsSoManyBytesASecond)
{
    set(R"({"fault": "rate"})");
    Wire wire(port_);
    wire.send("cmd=fly");
    const Heard three = wire.hear({}, 3);
    EXPECT_EQ(three.bytes, "HTT");
    EXPECT_GE(three.time, milliseconds(1900));
    done("DELETE", "faults");
    set(R"({"fault": "rate", "bytesPerSecond": 500})");
    const Heard whole = replied();
    EXPECT_THAT(whole.bytes, EndsWith("</kznapi>"));
    EXPECT_GE(whole.time, milliseconds(500));
    EXPECT_EQ(whole.ended, Ended::open);
}

TEST_F(Faults, EndlessNeverStops)
{
    set(R"({"fault": "endless", "times": 1})");
    Wire wire(port_);
    wire.send("cmd=fly");
    const Heard heard = wire.hear({}, 8UL * 1024 * 1024);
    EXPECT_GE(heard.bytes.size(), 8UL * 1024 * 1024);
    EXPECT_EQ(heard.ended, Ended::open);
    EXPECT_THAT(heard.bytes.substr(0, 500), Not(HasSubstr("Content-Length")));
    EXPECT_THAT(heard.bytes.substr(0, 1000), HasSubstr("</kznapi>"));
    expectWell();  // while the other still goes on
}

TEST_F(Faults, LengthsLie)
{
    const std::string good = bodyOf(replied().bytes);
    for (const int by : {7, -7, -100'000}) {
        done("DELETE", "faults");
        set(R"({"fault": "length", "by": )" + std::to_string(by) + "}");
        const Heard heard = called();
        const long long told = std::max<long long>(0, static_cast<long long>(good.size()) + by);
        EXPECT_THAT(heard.bytes, HasSubstr("\r\nContent-Length: " + std::to_string(told) + "\r\n"));
        EXPECT_EQ(bodyOf(heard.bytes), good);
        EXPECT_EQ(heard.ended, Ended::closed);
    }
}

TEST_F(Faults, ChunksBreak)
{
    set(R"({"fault": "chunks"})");
    const Heard heard = called();
    EXPECT_THAT(heard.bytes, HasSubstr("\r\nTransfer-Encoding: chunked\r\n"));
    EXPECT_THAT(bodyOf(heard.bytes), IsLike("10\r\n.{16}\r\nno size\r\n.*"));
    EXPECT_EQ(heard.ended, Ended::closed);
}

std::size_t occurrences(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST_F(Faults, HeadersAndInterimsFlood)
{
    set(R"({"fault": "headers", "count": 5000})");
    const Heard headers = replied();
    EXPECT_EQ(occurrences(headers.bytes, "\r\nX-More-"), 5000U);
    EXPECT_THAT(headers.bytes, EndsWith("</kznapi>"));
    done("DELETE", "faults");
    set(R"({"fault": "interim", "count": 5000})");
    const Heard interims = replied();
    EXPECT_EQ(occurrences(interims.bytes, "HTTP/1.1 102 Processing\r\n\r\n"), 5000U);
    EXPECT_THAT(interims.bytes, HasSubstr("\r\n\r\nHTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(interims.bytes, EndsWith("</kznapi>"));
}

TEST_F(Faults, RedirectsLeadElsewhereWithoutCarryingOut)
{
    const std::string body = makeSpaceBody("Elsewhere");
    set(R"({"fault": "redirect", "url": "http://127.0.0.1:1/there", "status": 307, "operation": "AddTabs"})");
    Wire wire(port_);
    wire.send(body);
    const Heard heard = wire.hear("\r\n\r\n");
    EXPECT_THAT(heard.bytes, StartsWith("HTTP/1.1 307 Temporary Redirect\r\n"));
    EXPECT_THAT(heard.bytes, HasSubstr("\r\nLocation: http://127.0.0.1:1/there\r\n"));
    EXPECT_EQ(User(port_, "anna").spaceNamed("Elsewhere"), "");
}

TEST_F(Faults, CharsetsAreOthers)
{
    User anna(port_, "anna");
    const std::string spaceID = anna.makeSpace("Äther ☃ 😀");
    const std::string body = "cmd=get&type=workspace&select=*&cred=" + anna.cred() + "&id=" + spaceID;
    set(R"({"fault": "charset", "charset": "ISO-8859-1"})");
    const HttpReply latin = Talk(port_).post("/kznconnect/op.do", body);
    EXPECT_EQ(latin.contentType, "text/xml; charset=ISO-8859-1");
    EXPECT_THAT(latin.body, HasSubstr("encoding=\"ISO-8859-1\""));
    EXPECT_THAT(latin.body, HasSubstr("\xC4ther &#9731; &#128512;"));
    done("DELETE", "faults");
    set(R"({"fault": "charset", "charset": "utf-16"})");
    const std::string wide = form(port_, body);
    EXPECT_THAT(wide, StartsWith(std::string("\xFF\xFE<\0?\0", 6)));
    EXPECT_THAT(wide, HasSubstr(std::string("\xC4\0t\0h\0e\0r\0 \0\x03\x26 \0\x3D\xD8\x00\xDE", 20)));
    done("DELETE", "faults");
    set(R"({"fault": "charset", "charset": "koi8-r"})");
    EXPECT_THAT(form(port_, body), HasSubstr("Äther ☃"));
}

TEST_F(Faults, FailuresHaveTheirReason)
{
    const std::string body = makeSpaceBody("Failed");
    set(R"({"fault": "failure", "operation": "AddTabs", "reason": "<out> of & paper", "exceptionID": "KZN:Paper"})");
    const std::string reply = form(port_, body);
    EXPECT_EQ(textAt(reply, kReason), "<out> of & paper");
    EXPECT_FAILURE(reply, "KZN:Paper");
    EXPECT_EQ(User(port_, "anna").spaceNamed("Failed"), "");
}

TEST_F(Faults, DelaysHoldNobodyElseUp)
{
    set(R"({"fault": "delay", "ms": 2000, "operation": "fly"})");
    Wire slow(port_);
    slow.send("cmd=fly");
    expectWell("cmd=walk");
    EXPECT_TRUE(slow.isQuiet(milliseconds(0)));
    const Heard heard = slow.hear("</kznapi>");
    EXPECT_THAT(heard.bytes, StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_GE(heard.time, milliseconds(500));
}

TEST_F(Faults, AConnectionGoesOnBehindAFaultThatLeavesItWhole)
{
    set(R"([{"fault": "delay", "ms": 10}, {"fault": "refuse", "operation": "never"}])");
    Talk talk(port_);
    for (int i = 0; i < 3; ++i) {
        const HttpReply reply = talk.post("/kznconnect/op.do", "cmd=fly");
        EXPECT_EQ(reply.status, 200U);
        EXPECT_TRUE(reply.keepAlive);
    }
    EXPECT_EQ(counts(0).at("struck"), 3);
    EXPECT_EQ(counts(1).at("struck"), 0);
    talk.sendRaw("POST /kznconnect/op.do HTTP/1.1\r\nConnection: close\r\nHost: " + talk.host() +
                 "\r\nContent-Length: 7\r\n\r\ncmd=fly");
    EXPECT_THAT(talk.readToEnd(), HasSubstr("\r\nConnection: close\r\n"));
}

}  // namespace

}  // namespace service::test
