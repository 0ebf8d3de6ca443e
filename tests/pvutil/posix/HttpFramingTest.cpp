// How a reply is framed on the wire is read by libcurl here, by the system itself on Windows: these cases are about
// what is made of libcurl's findings.
#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

class HttpFraming : public HttpFixture {
protected:
    // A reply that is never whole, however often it is asked for.
    void expectBroken(const Script& script)
    {
        SCOPED_TRACE(script.steps().back().bytes);
        server.otherwise(script);
        EXPECT_EQ(post("a=b"), -1);
        expectNoReply();
        EXPECT_EQ(getPath("/"), -1);
        expectNoReply();
    }

    const std::string head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
};

TEST_F(HttpFraming, PassesOverInterimReplies)
{
    server.script(Script().send("HTTP/1.1 100 Continue\r\n\r\n").pause(20ms).send(replyText(200, "", "the reply")));
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "the reply");
    server.script(Script().send("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Le").close());
    EXPECT_EQ(post("a=b"), -1);
}

// It has asked for no other protocol, and would wait for a reply behind it.
TEST_F(HttpFraming, SwitchedProtocolIsNoReply)
{
    server.otherwise(Script().send("HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n").stall());
    EXPECT_EQ(post("a=b"), -1);
    EXPECT_EQ(client.Failure().fault, pvutil::HttpFault::notHttp);
}

TEST_F(HttpFraming, ReadsChunksCutAnywhere)
{
    const std::string whole = head + "3\r\n<a>\r\nA;x=y\r\n0123456789\r\n4\r\n</a>\r\n0\r\n\r\n";
    for (std::size_t cut = head.size(); cut < whole.size(); ++cut) {
        server.script(Script().send(whole.substr(0, cut)).pause(1ms).send(whole.substr(cut)));
        EXPECT_EQ(post("a=b"), 200) << cut;
        EXPECT_EQ(text(), "<a>0123456789</a>") << cut;
    }
    EXPECT_EQ(server.connections(), 1U);
}

TEST_F(HttpFraming, ReadsChunksWithATrailer)
{
    server.script(Script().send(head + "4\r\n<a/>\r\n0\r\nX-After: 1\r\n\r\n"));
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "<a/>");
    server.script(Script().send(head + "0\r\nX-After: 1\r\n\r\n"));
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "");
}

TEST_F(HttpFraming, ChunksCutOff)
{
    expectBroken(Script().send(head).close());
    expectBroken(Script().send(head + "9").close());
    expectBroken(Script().send(head + "9\r\n").close());
    expectBroken(Script().send(head + "9\r\n<kzn").close());
    expectBroken(Script().send(head + "9\r\n<kznapi/>").close());
    expectBroken(Script().send(head + "9\r\n<kznapi/>\r\n").close());
    expectBroken(Script().pause(10ms).send(head + "9\r\n<kznapi/>\r\n0\r\n").close());
}

TEST_F(HttpFraming, ChunkSizeIsNoNumber)
{
    expectBroken(Script().send(head + "zz\r\n<kznapi/>\r\n0\r\n\r\n").close());
    expectBroken(Script().send(head + "9\r\n<kznapi/>\r\nxyz\r\n\r\n").close());
}

}  // namespace
}  // namespace kzn::test
