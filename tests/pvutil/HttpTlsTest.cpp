// Against real TLS servers, each with another certificate; withTlsServer.sh brings them up and says their ports.
#include <cstdlib>
#include <iostream>

#include "tests/pvutil/HttpFixture.h"
#include "tests/support/TestAuthority.h"
#include "tests/support/Wine.h"

namespace kzn::test {
namespace {

using pvutil::HttpFault;

std::string setting(const std::string& name)
{
    const char* const value = std::getenv(("PVWAPI_TLS_" + name).c_str());
    EXPECT_NE(value, nullptr) << "run by withTlsServer.sh";
    return value != nullptr ? value : "";
}

CStringT page(const std::string& server, const std::string& host = "127.0.0.1")
{
    return wide("https://" + host + ":" + setting(server) + "/page");
}

class HttpTls : public HttpFixture {
protected:
    HttpTls()
    {
        HttpLimits limits;
        limits.silence = 2s;
        CZelHttpClient::SetLimits(limits);
    }

    // Wine finds out what is wrong with a certificate, refuses it, and tells that TLS has failed.
    static HttpFault told(HttpFault fault) { return runsUnderWine() ? HttpFault::tlsFailed : fault; }

    // Twice, for a connection that was refused must not be kept; and by the other method too.
    void expectRefused(std::string_view row, HttpFault fault, const CStringT& url)
    {
        SCOPED_TRACE(row);
        for (int times = 0; times < 2; ++times) {
            EXPECT_EQ(client.Request(url, HTTP_METHOD::POST, "a=b"_w, {}, HttpOption::kForm), -1);
            expectNoReply();
            EXPECT_EQ(get(url), -1);
            expectNoReply();
        }
        const std::string text = textOf(client.Failure());
        std::cout << "fault | " << row << " | " << static_cast<int>(client.Failure().fault) << " | " << text << "\n";
        EXPECT_EQ(client.Failure().fault, told(fault));
        EXPECT_NE(text.find("127.0.0.1:"), std::string::npos) << text;
    }
};

TEST_F(HttpTls, AuthorityThatIsKnownIsBelieved)
{
    const TestAuthority authority(setting("AUTHORITY"));
    ASSERT_TRUE(authority.isTrusted());
    EXPECT_EQ(get(page("GOOD", "localhost")), 200) << textOf(client.Failure());
    EXPECT_EQ(text(), "<kznapi/>");
    EXPECT_EQ(client.Failure().fault, HttpFault::none);
    // Wine does not look for addresses in a certificate.
    EXPECT_EQ(get(page("NUMBER")), runsUnderWine() ? -1 : 200) << textOf(client.Failure());
}

TEST_F(HttpTls, CertificateThatIsNotGoodIsRefusedForItsReason)
{
    const TestAuthority authority(setting("AUTHORITY"));
    ASSERT_TRUE(authority.isTrusted());
    expectRefused("certificate of another host", HttpFault::tlsWrongName, page("NAME"));
    expectRefused("expired certificate", HttpFault::tlsExpired, page("EXPIRED"));
    expectRefused("certificate not valid yet", HttpFault::tlsExpired, page("FUTURE"));
    expectRefused("unknown authority", HttpFault::tlsUntrusted, page("UNKNOWN"));
    expectRefused("self-signed certificate", HttpFault::tlsUntrusted, page("SELF"));
    expectRefused("no common version of TLS", HttpFault::tlsFailed, page("OLD"));
}

TEST_F(HttpTls, AuthorityThatIsNotKnownIsRefused)
{
    expectRefused("authority that is not known here", HttpFault::tlsUntrusted, page("APART"));
}

TEST_F(HttpTls, RedirectToItIsNoConnection)
{
    server.reply(302, "text/plain", "moved", {{"Location", narrow(page("SELF"))}});
    EXPECT_EQ(getPath("/"), -1);
    EXPECT_EQ(client.Failure().fault, told(HttpFault::tlsUntrusted));
    expectNoReply();
}

TEST_F(HttpTls, ServerWithoutTlsIsNoConnection)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    expectRefused("server without TLS", HttpFault::tlsFailed,
                  wide("https://127.0.0.1:" + std::to_string(server.port()) + "/"));
    EXPECT_EQ(getPath("/"), 200);
}

}  // namespace
}  // namespace kzn::test
