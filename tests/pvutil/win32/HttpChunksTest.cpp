// Chunks that end too early: some versions of the system's HTTP take the end of the connection for that of the reply.
#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

using pvutil::HttpFault;

class HttpChunks : public HttpFixture {
protected:
    void expectCutOff(const Script& script)
    {
        SCOPED_TRACE(script.steps().back().bytes);
        server.otherwise(script);
        EXPECT_EQ(post("a=b"), -1);
        EXPECT_EQ(client.Failure().fault, HttpFault::cutOff) << textOf(client.Failure());
        expectNoReply();
        EXPECT_EQ(getPath("/"), -1);
        expectNoReply();
    }

    const std::string head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
};

TEST_F(HttpChunks, CutOff)
{
    for (const std::string_view cut : {"", "9", "9\r\n", "9\r\n<kzn", "9\r\n<kznapi/>", "9\r\n<kznapi/>\r\n"}) {
        expectCutOff(Script().send(head + std::string(cut)).close());
        expectCutOff(Script().send(head).pause(30ms).send(std::string(cut)).close());
    }
    expectCutOff(Script().send(head + "9\r\n<kzn").pause(30ms).send("api/>\r\n").pause(30ms).close());
}

TEST_F(HttpChunks, WholeBeforeTheConnectionEnds)
{
    server.otherwise(Script().send(head + "9\r\n<kznapi/>\r\n0\r\n\r\n").close());
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "<kznapi/>");
    server.otherwise(Script().send(head).pause(30ms).send("9\r\n<kznapi/>\r\n").pause(30ms).send("0\r\n\r\n").close());
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "<kznapi/>");
    server.otherwise(Script().send(head + "0\r\n\r\n").pause(30ms).close());
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "");
}

}  // namespace
}  // namespace kzn::test
