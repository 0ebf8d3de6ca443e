// The caller's own header lines, and what cannot be smuggled in with them or with an address.
#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

class HttpHeaders : public HttpFixture {
protected:
    HttpHeaders() { server.otherwise(200, "text/xml", "<kznapi/>"); }
};

TEST_F(HttpHeaders, CallersLinesAreSent)
{
    EXPECT_EQ(postWithHeaders("X-One: 1\r\nX-Two:two words \nx-three:  3\r\n\r\n"), 200);
    EXPECT_EQ(last().header("X-One"), "1");
    EXPECT_EQ(last().header("X-Two"), "two words");
    EXPECT_EQ(last().header("X-Three"), "3");
    EXPECT_EQ(last().header("Content-Type"), "application/x-www-form-urlencoded");
}

TEST_F(HttpHeaders, CallersLinesStandInTheirPlace)
{
    EXPECT_EQ(postWithHeaders("content-type: text/xml\r\nUser-Agent: host/2\r\nAccept: text/xml\r\nCookie: a=b"), 200);
    EXPECT_EQ(last().header("Content-Type"), "text/xml");
    EXPECT_EQ(last().header("User-Agent"), "host/2");
    EXPECT_EQ(last().header("Accept"), "text/xml");
    EXPECT_EQ(last().header("Cookie"), "a=b");
    for (const auto& [name, value] : last().headers) EXPECT_NE(value, "pvWapi/1.0");
}

// Three of them, which may be those that the library gives a form, or nearly.
TEST_F(HttpHeaders, CallersLinesAreSentWhateverTheyAreLike)
{
    const std::string form = "application/x-www-form-urlencoded";
    for (const std::string accept : {"*/*", "text/xml"})
        for (const std::string agent : {"pvWapi/1.0", "host/2"})
            for (const std::string& type : {form, std::string("text/plain"), form + "; charset=utf-8"}) {
                EXPECT_EQ(
                    postWithHeaders("Accept: " + accept + "\r\nUser-Agent: " + agent + "\r\nContent-Type: " + type),
                    200);
                EXPECT_EQ(last().header("Accept"), accept);
                EXPECT_EQ(last().header("User-Agent"), agent);
                EXPECT_EQ(last().header("Content-Type"), type);
            }
}

// A request without a body has no type but the one that the caller states.
TEST_F(HttpHeaders, LinesOfAFormAreSentWithoutAForm)
{
    const CStringT lines = "Accept: */*\r\nUser-Agent: host/2\r\nContent-Type: application/x-www-form-urlencoded"_w;
    EXPECT_EQ(client.Request(server.url("/"), HTTP_METHOD::GET, ""_w, lines, HttpOption::kCallerHeaders), 200);
    EXPECT_EQ(last().method, "GET");
    EXPECT_EQ(last().header("User-Agent"), "host/2");
    EXPECT_EQ(last().header("Content-Type"), "application/x-www-form-urlencoded");
}

TEST_F(HttpHeaders, CallersLinesNeedTheirOption)
{
    EXPECT_EQ(client.Request(server.url("/"), HTTP_METHOD::POST, "a=b"_w, "X-One: 1"_w, HttpOption::kForm), 200);
    EXPECT_FALSE(last().has("X-One"));
}

TEST_F(HttpHeaders, LineWithoutAValueIsSent)
{
    EXPECT_EQ(postWithHeaders("X-Empty:\r\nX-After: 1"), 200);
    EXPECT_TRUE(last().has("X-Empty"));
    EXPECT_EQ(last().header("X-Empty"), "");
    EXPECT_EQ(last().header("X-After"), "1");
}

TEST_F(HttpHeaders, LinesThatAreNoneAreLeftOut)
{
    EXPECT_EQ(postWithHeaders("no colon\r\n: no name\r\nX Y: blank in name\r\n folded: 1\r\nX-Bell: a\ab\r\nX-Good: 1"),
              200);
    EXPECT_EQ(last().header("X-Good"), "1");
    for (const auto* name : {"no colon", "", "X Y", "folded", "X-Bell", "Y"}) EXPECT_FALSE(last().has(name)) << name;
}

TEST_F(HttpHeaders, LoneReturnEndsNoLine)
{
    EXPECT_EQ(postWithHeaders("X-A: 1\rX-Evil: 2\r\nX-B: 3"), 200);
    EXPECT_FALSE(last().has("X-Evil"));
    EXPECT_FALSE(last().has("X-A"));
    EXPECT_EQ(last().header("X-B"), "3");
}

TEST_F(HttpHeaders, ZeroEndsNoLine)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(postWithHeaders("X-A: 1\0\r\nX-B: 3"sv), 200);
    EXPECT_FALSE(last().has("X-A"));
    EXPECT_EQ(last().header("X-B"), "3");
}

// With these a caller could make the server see another end of the request than the one that was sent.
TEST_F(HttpHeaders, FramingIsNotTheCallers)
{
    EXPECT_EQ(postWithHeaders(
                  "Content-Length: 1\r\nTransfer-Encoding: chunked\r\nconnection: X-Kept\r\nExpect: 100-continue\r\n"
                  "Host: elsewhere\r\nTE: trailers\r\nUpgrade: websocket\r\nKEEP-ALIVE: timeout=9\r\n"
                  "Proxy-Connection: close\r\nTrailer: X-Kept\r\nX-Kept: 1"),
              200);
    EXPECT_EQ(last().body, "a=b");
    EXPECT_EQ(last().header("Content-Length"), "3");
    EXPECT_EQ(last().header("Host"), "127.0.0.1:" + std::to_string(server.port()));
    EXPECT_EQ(last().header("X-Kept"), "1");
    EXPECT_EQ(last().header("Connection").find("X-Kept"), std::string::npos);
    for (const auto* name :
         {"Transfer-Encoding", "Expect", "TE", "Upgrade", "Keep-Alive", "Proxy-Connection", "Trailer"})
        EXPECT_FALSE(last().has(name)) << name;
}

TEST_F(HttpHeaders, AddressCannotEndItsLine)
{
    EXPECT_EQ(getPath("/a b\r\nX-Evil: 1\r\n\r\nGET /second"), 200);
    EXPECT_EQ(last().target, "/a%20b%0D%0AX-Evil:%201%0D%0A%0D%0AGET%20/second");
    EXPECT_FALSE(last().has("X-Evil"));
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(HttpHeaders, AddressGoesOutAsItStandsButForWhatCannot)
{
    EXPECT_EQ(get(server.url() + "/gr\xC3\xBCn/\xF0\x9F\x98\x80\t?q=%41&x={<\"'>}|\\^`~../a/../b#part"_w), 200);
    EXPECT_EQ(last().target, "/gr%C3%BCn/%F0%9F%98%80%09?q=%41&x={<\"'>}|\\^`~../a/../b");
    EXPECT_EQ(getPath("/a/../b/./c"), 200);
    EXPECT_EQ(last().target, "/a/../b/./c");
    EXPECT_EQ(getPath("?q"), 200);
    EXPECT_EQ(last().target, "/?q");
    EXPECT_EQ(getPath(""), 200);
    EXPECT_EQ(last().target, "/");
}

}  // namespace
}  // namespace kzn::test
