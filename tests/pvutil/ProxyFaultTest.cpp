// What becomes of a request where the system has a proxy set: in a process of its own each, with the proxy in its
// environment. Real Windows keeps the setting elsewhere and takes none from there.
#include <gmock/gmock.h>

#include "pvutil/HttpFailure.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestSystem.h"
#include "tests/support/Wine.h"

namespace kzn::test {
namespace {

using pvutil::HttpFault;

constexpr int kReply = 100;
constexpr const char* kHttp = "http://elsewhere.invalid/page";
constexpr const char* kHttps = "https://elsewhere.invalid/";

class ProxyFault : public testing::Test {
protected:
    ProxyFault() { useProxy(proxy.address()); }
    ~ProxyFault() override { useProxy(""); }

    static void useProxy(const std::string& address)
    {
        setVariable("http_proxy", address);
        setVariable("https_proxy", address);
    }

    static int outcomeOf(const std::string& address) { return ChildProcess(PROXIED_CALL, {address}).wait(); }

    static void expectFault(HttpFault fault, const std::string& address)
    {
        EXPECT_EQ(outcomeOf(address), static_cast<int>(fault));
    }

    CaptureServer proxy;
};

TEST_F(ProxyFault, NotThere)
{
    useProxy("http://127.0.0.1:" + std::to_string(CaptureServer::closedPort()));
    expectFault(HttpFault::proxy, kHttp);
    expectFault(HttpFault::proxy, kHttps);
}

TEST_F(ProxyFault, NobodyKnowsIt)
{
    useProxy("http://no-such-proxy.invalid:3128");
    expectFault(HttpFault::proxy, kHttp);
    expectFault(HttpFault::proxy, kHttps);
}

TEST_F(ProxyFault, ClosesInsteadOfATunnel)
{
    proxy.otherwise(Script().close());
    expectFault(HttpFault::proxy, kHttps);
    ASSERT_EQ(proxy.requests().size(), 1U);
    EXPECT_EQ(proxy.requests().front().method, "CONNECT");
    EXPECT_EQ(proxy.requests().front().target, "elsewhere.invalid:443");
}

TEST_F(ProxyFault, ResetsInsteadOfATunnel)
{
    proxy.otherwise(Script().reset());
    expectFault(HttpFault::proxy, kHttps);
}

// Wine begins with TLS whatever the proxy answered.
HttpFault refusedTunnel()
{
    return runsUnderWine() ? HttpFault::tlsFailed : HttpFault::proxy;
}

TEST_F(ProxyFault, RefusesATunnel)
{
    proxy.otherwise(403, "text/plain", "no tunnel");
    expectFault(refusedTunnel(), kHttps);
}

TEST_F(ProxyFault, RefusesATunnelAndCloses)
{
    proxy.otherwise(Script().send(replyText(502, "text/plain", "no tunnel")).close());
    expectFault(refusedTunnel(), kHttps);
}

TEST_F(ProxyFault, WantsASignIn)
{
    proxy.otherwise(407, "text/plain", "who are you", {{"Proxy-Authenticate", "Basic realm=\"a\""}});
    expectFault(refusedTunnel(), kHttps);
}

// Whoever answers behind the tunnel is the server.
TEST_F(ProxyFault, TunnelToOneThatSpeaksNoTls)
{
    proxy.otherwise(Script().send("HTTP/1.1 200 Connection established\r\n\r\nno handshake, no handshake").close());
    expectFault(HttpFault::tlsFailed, kHttps);
}

TEST_F(ProxyFault, IsAskedForTheWholeAddress)
{
    proxy.reply(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(outcomeOf(kHttp), kReply);
    ASSERT_EQ(proxy.requests().size(), 1U);
    EXPECT_THAT(proxy.requests().front().target, testing::AnyOf(kHttp, "http://elsewhere.invalid:80/page"));
}

TEST_F(ProxyFault, IsAskedForTheAddressAsItStands)
{
    proxy.reply(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(outcomeOf("http://elsewhere.invalid/a/../b/./c?d=/../e"), kReply);
    ASSERT_EQ(proxy.requests().size(), 1U);
    EXPECT_THAT(proxy.requests().front().target, testing::EndsWith("/a/../b/./c?d=/../e"));
}

// What a proxy hands on is the server's.
TEST_F(ProxyFault, ClosesInsteadOfAReply)
{
    proxy.otherwise(Script().close());
    expectFault(HttpFault::closed, kHttp);
}

}  // namespace
}  // namespace kzn::test
