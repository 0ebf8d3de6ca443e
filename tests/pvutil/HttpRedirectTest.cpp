// A get goes on where a redirect points to; a post never does.
#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

class HttpRedirect : public HttpFixture {
protected:
    void redirect(int status, std::string_view location)
    {
        server.reply(status, "text/plain", "moved", {{"Location", std::string(location)}});
    }

    // The target of the request that a get of `path` goes on to.
    std::string followed(std::string_view path, std::string_view location)
    {
        redirect(302, location);
        server.reply(200, "", "there");
        EXPECT_EQ(getPath(path), 200) << location;
        EXPECT_EQ(text(), "there") << location;
        return last().target;
    }

    void expectNotFollowed(std::string_view location)
    {
        const std::size_t before = server.requests().size();
        redirect(302, location);
        EXPECT_EQ(getPath("/"), 302) << location;
        EXPECT_EQ(text(), "moved") << location;
        EXPECT_EQ(server.requests().size(), before + 1) << location;
    }
};

TEST_F(HttpRedirect, GetFollows)
{
    for (const int status : {301, 302, 303, 307, 308}) {
        redirect(status, server.address("/there?x=1"));
        server.reply(200, "", "there");
        EXPECT_EQ(getPath("/here"), 200);
        EXPECT_EQ(text(), "there");
        EXPECT_EQ(last().method, "GET");
        EXPECT_EQ(last().target, "/there?x=1");
    }
}

TEST_F(HttpRedirect, PostDoesNot)
{
    for (const int status : {301, 302, 303, 307, 308}) {
        redirect(status, "/there");
        EXPECT_EQ(post("a=b"), status);
        EXPECT_EQ(text(), "moved");
    }
    EXPECT_EQ(server.requests().size(), 5U);
}

TEST_F(HttpRedirect, OtherStatusesDoNot)
{
    for (const int status : {200, 201, 300, 304, 305, 306, 404}) {
        server.script(Script().send("HTTP/1.1 " + std::to_string(status) +
                                    " X\r\nLocation: /there\r\nContent-Length: 0\r\n\r\n"));
        EXPECT_EQ(getPath("/"), status);
    }
    EXPECT_EQ(server.requests().size(), 7U);
}

TEST_F(HttpRedirect, WithoutALocationIsTheReply)
{
    server.reply(302, "text/plain", "where?");
    EXPECT_EQ(getPath("/"), 302);
    EXPECT_EQ(text(), "where?");
}

TEST_F(HttpRedirect, LocationIsReadAgainstTheAddress)
{
    EXPECT_EQ(followed("/a/b?q", "c"), "/a/c");
    EXPECT_EQ(followed("/a/b?q", "c?x"), "/a/c?x");
    EXPECT_EQ(followed("/a/b?q", "?x"), "/a/b?x");
    EXPECT_EQ(followed("/a/b?q", "/c"), "/c");
    EXPECT_EQ(followed("/a/b/c", "../d"), "/a/d");
    EXPECT_EQ(followed("/a/b/c", "../../../d"), "/d");
    EXPECT_EQ(followed("/a/b/c", "./d/./e/"), "/a/b/d/e/");
    EXPECT_EQ(followed("/a/b/c", ".."), "/a/");
    EXPECT_EQ(followed("/a/b/c", "."), "/a/b/");
    EXPECT_EQ(followed("/a/b", "#part"), "/a/b");
    EXPECT_EQ(followed("/a/b", "/c#part"), "/c");
    EXPECT_EQ(followed("/a?x=/y/z", "c"), "/c");
    EXPECT_EQ(followed("/a", "//127.0.0.1:" + std::to_string(server.port()) + "/d"), "/d");
    EXPECT_EQ(followed("/a", "/with blank"), "/with%20blank");
    EXPECT_EQ(followed("/a", "/c?next=../d"), "/c?next=../d");
}

TEST_F(HttpRedirect, GoesToNoOtherScheme)
{
    expectNotFollowed("ftp://127.0.0.1/");
    expectNotFollowed("file:///etc/passwd");
    expectNotFollowed("javascript:alert(1)");
    expectNotFollowed("http://");
    expectNotFollowed("http://user@127.0.0.1/");
}

TEST_F(HttpRedirect, FiveAreFollowedAndTheSixthIsTheReply)
{
    server.otherwise(302, "text/plain", "round and round", {{"Location", "/again"}});
    EXPECT_EQ(getPath("/first"), 302);
    EXPECT_EQ(text(), "round and round");
    EXPECT_EQ(server.requests().size(), 6U);
}

TEST_F(HttpRedirect, NoneIsFollowedWhereTheLimitSaysSo)
{
    HttpLimits limits;
    limits.redirects = 0;
    CZelHttpClient::SetLimits(limits);
    redirect(302, "/there");
    EXPECT_EQ(getPath("/"), 302);
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(HttpRedirect, BrokenReplyBehindItIsNoConnection)
{
    redirect(302, "/there");
    server.script(Script().send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n<kzn").close());
    EXPECT_EQ(getPath("/"), -1);
    expectNoReply();
    redirect(302, "http://127.0.0.1:" + std::to_string(CaptureServer::closedPort()) + "/");
    EXPECT_EQ(getPath("/"), -1);
    expectNoReply();
}

TEST_F(HttpRedirect, CredentialsStayWithTheServerTheyAreMeantFor)
{
    CaptureServer other;
    other.reply(200, "", "other");
    redirect(302, "/same");
    redirect(302, other.address("/other"));
    EXPECT_EQ(get(server.url("/"), "Authorization: Bearer x\r\nCookie: a=b\r\nX-Other: 1"), 200);
    EXPECT_EQ(text(), "other");
    EXPECT_EQ(last().header("Authorization"), "Bearer x");
    EXPECT_EQ(last().header("Cookie"), "a=b");
    const auto there = other.requests().back();
    EXPECT_FALSE(there.has("Authorization"));
    EXPECT_FALSE(there.has("Cookie"));
    EXPECT_EQ(there.header("X-Other"), "1");
}

// Neither those of the lines nor those of the address; not on the way back either.
TEST_F(HttpRedirect, CredentialsThatWereLeftBehindDoNotReturn)
{
    CaptureServer other;
    other.reply(302, "", "", {{"Location", server.address("/back")}});
    redirect(302, other.address("/other"));
    server.reply(200, "", "back");
    EXPECT_EQ(get(server.url("/?cred=secret"), "Authorization: Bearer x\r\nProxy-Authorization: Basic y\r\nX-Other: 1"),
              200);
    EXPECT_EQ(text(), "back");
    for (const CapturedRequest& request : {other.requests().back(), last()}) {
        EXPECT_EQ(request.target.find("secret"), std::string::npos);
        EXPECT_FALSE(request.has("Authorization"));
        EXPECT_FALSE(request.has("Proxy-Authorization"));
        EXPECT_FALSE(request.has("Referer"));
        EXPECT_EQ(request.header("X-Other"), "1");
    }
}

TEST_F(HttpRedirect, DownloadReportsTheFileOnly)
{
    std::size_t most = 0;
    client.OnProgress([&](std::size_t done, std::size_t) {
        most = std::max(most, done);
        return true;
    });
    server.reply(302, "text/plain", std::string(100, 'm'), {{"Location", "/file"}});
    server.reply(200, "image/png", "png");
    EXPECT_EQ(client.Request(server.url("/"), HTTP_METHOD::GET, CStringT(), {}, HttpOption::kDownload), 200);
    EXPECT_EQ(client.GetResponse(), "png");
    EXPECT_EQ(most, 3U);
}

}  // namespace
}  // namespace kzn::test
