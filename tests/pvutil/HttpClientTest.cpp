// What goes out with a request and comes back with a reply, and how connections are kept.
#include <array>
#include <atomic>
#include <thread>
#include <vector>

#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

using HttpClient = HttpFixture;

TEST_F(HttpClient, PostsTheFormAsItStands)
{
    server.reply(200, "text/xml; charset=utf-8", "<kznapi/>");
    EXPECT_EQ(post("cmd=get&type=a%26b"), 200);

    EXPECT_EQ(last().method, "POST");
    EXPECT_EQ(last().target, "/op.do");
    EXPECT_EQ(last().body, "cmd=get&type=a%26b");
    EXPECT_EQ(last().header("Content-Length"), "18");
    EXPECT_EQ(last().header("Content-Type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(last().header("User-Agent"), "pvWapi/1.0");
    EXPECT_EQ(last().header("Accept"), "*/*");
    EXPECT_EQ(last().header("Host"), "127.0.0.1:" + std::to_string(server.port()));
    for (const auto* name : {"Expect", "Accept-Encoding", "Cookie", "Authorization", "Transfer-Encoding", "Referer"})
        EXPECT_FALSE(last().has(name)) << name;
    EXPECT_EQ(text(), "<kznapi/>");
    EXPECT_EQ(client.GetResponse(), "<kznapi/>");
}

TEST_F(HttpClient, SendsTextAsUtf8)
{
    server.reply(200, "", "ok");
    CStringT body = "grün \xF0\x9F\x98\x80 "_w;
    body += CStringT::value_type{0xD83D};  // the first half of a pair
    EXPECT_EQ(client.Request(server.url("/op.do"), HTTP_METHOD::POST, body, {}, HttpOption::kForm), 200);
    EXPECT_EQ(last().body, "grün \xF0\x9F\x98\x80 \xEF\xBF\xBD");
}

TEST_F(HttpClient, PostsAnEmptyBodyWithItsLength)
{
    server.reply(200, "", "ok");
    EXPECT_EQ(post(""), 200);
    EXPECT_EQ(last().header("Content-Length"), "0");
    EXPECT_EQ(last().body, "");
}

TEST_F(HttpClient, GetsWithoutABody)
{
    server.reply(200, "", "ok");
    const int status =
        client.Request(server.url("/icon?cred=a/b==&x"), HTTP_METHOD::GET, "never sent"_w, {}, HttpOption::kProxy);
    EXPECT_EQ(status, 200);
    EXPECT_EQ(last().method, "GET");
    EXPECT_EQ(last().target, "/icon?cred=a/b==&x");
    EXPECT_EQ(last().body, "");
    EXPECT_FALSE(last().has("Content-Type"));
    EXPECT_FALSE(last().has("Content-Length"));
}

TEST_F(HttpClient, TakesAnyStatusForAReply)
{
    for (const int status : {201, 400, 401, 403, 404, 407, 500, 503}) {
        server.reply(status, "text/plain", "body of " + std::to_string(status),
                     {{"WWW-Authenticate", "Basic realm=\"x\""}, {"Proxy-Authenticate", "Basic realm=\"x\""}});
        EXPECT_EQ(post("a=b"), status);
        EXPECT_EQ(text(), "body of " + std::to_string(status));
    }
    EXPECT_EQ(server.requests().size(), 8U);
}

TEST_F(HttpClient, TakesAReplyWithoutABody)
{
    server.script(Script().send("HTTP/1.1 204 No Content\r\n\r\n"));
    server.reply(200, "text/xml", "");
    EXPECT_EQ(post("a=b"), 204);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "");
}

TEST_F(HttpClient, ReadsAReplyThatOnlyTheCloseEnds)
{
    server.script(
        Script().send("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n\r\n<a>").pause(20ms).send("</a>").close());
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "<a></a>");
}

TEST_F(HttpClient, ReadsChunks)
{
    const std::string head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    const std::string end = "0\r\n\r\n";
    server.script(Script().send(head + "3\r\n<a>\r\nA;x=y\r\n0123456789\r\n4\r\n</a>\r\n" + end));
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "<a>0123456789</a>");
    server.script(Script().send(head + "3\r\n<a>\r\n").pause(20ms).send("4\r\n<").pause(20ms).send("/a>\r\n" + end));
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "<a></a>");
    server.script(Script().send(head + end));
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "");
}

TEST_F(HttpClient, ConnectsAnewWhereTheServerHasClosed)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    const std::string large(300'000, 'x');
    for (int round = 1; round <= 5; ++round) {
        EXPECT_EQ(post("a=b"), 200);
        server.closeConnections();
        EXPECT_EQ(post(large), 200) << round;
        server.closeConnections();
    }
    EXPECT_EQ(server.requests().size(), 10U);
    EXPECT_EQ(server.connections(), 10U);
}

TEST_F(HttpClient, ForgetsTheReplyBefore)
{
    server.reply(200, "text/xml; charset=iso-8859-1", "\xE4");
    server.reply(200, "", "\xC3\xA4");
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "ä");
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "ä");
}

TEST_F(HttpClient, SendsThePiecesOfABinaryBodyOneAfterTheOther)
{
    std::string picture(700'001, '\0');
    for (std::size_t at = 0; at < picture.size(); ++at) picture[at] = static_cast<char>(at * 7 % 256);
    const std::array<std::string_view, 4> pieces = {"--b\r\n", "", picture, "\r\n--b--"};
    server.reply(200, "text/xml", "<kznapi/>");
    const int status = client.Request(server.url("/upload.do?"), HTTP_METHOD::POST, pieces,
                                      "Content-Type: multipart/form-data; boundary=b"_w, HttpOption::kUpload);
    EXPECT_EQ(status, 200);
    EXPECT_EQ(last().target, "/upload.do?");
    EXPECT_EQ(last().header("Content-Type"), "multipart/form-data; boundary=b");
    EXPECT_EQ(last().header("Content-Length"), "700013");
    EXPECT_TRUE(last().body == "--b\r\n" + picture + "\r\n--b--");
}

TEST_F(HttpClient, SendsThePiecesAgainWhereTheServerHasClosed)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    const std::string large(200'000, 'y');
    const std::array<std::string_view, 3> pieces = {"first", large, "last"};
    for (int round = 1; round <= 5; ++round) {
        EXPECT_EQ(post("a=b"), 200);
        server.closeConnections();
        EXPECT_EQ(client.Request(server.url("/"), HTTP_METHOD::POST, pieces, {}, HttpOption::kUpload), 200) << round;
        EXPECT_TRUE(last().body == "first" + large + "last");
        EXPECT_FALSE(last().has("Content-Type"));
    }
}

TEST_F(HttpClient, HandsOutTheBytesOfAFile)
{
    std::string bytes(100'000, '\0');
    for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = static_cast<char>(at % 251);
    server.reply(200, "image/png", bytes);
    EXPECT_EQ(client.Request(server.url("/icon"), HTTP_METHOD::GET, CStringT(), {}, HttpOption::kDownload), 200);
    EXPECT_TRUE(client.GetResponse() == bytes);
}

TEST_F(HttpClient, ServesSeveralThreadsAtOnce)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    std::atomic<int> good = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 6; ++thread)
        threads.emplace_back([&] {
            for (int request = 0; request < 20; ++request) {
                CZelHttpClient each;
                const int status = each.Request(server.url("/"), HTTP_METHOD::POST, "a=b"_w, {}, HttpOption::kForm);
                if (status == 200 && each.GetResponse() == "<kznapi/>") ++good;
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(good, 120);
    EXPECT_EQ(server.requests().size(), 120U);
}

}  // namespace
}  // namespace kzn::test
