// Against a real TLS server with a certificate that nobody has signed; withTlsServer.sh brings it up and says its port.
#include <cstdlib>

#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

class HttpTls : public HttpFixture {
protected:
    HttpTls()
    {
        if (const char* const named = std::getenv("PVWAPI_TLS_PORT")) port = named;
        EXPECT_NE(port, "") << "run by withTlsServer.sh";
        HttpLimits limits;
        limits.silence = 2s;
        CZelHttpClient::SetLimits(limits);
    }

    std::string port;
};

TEST_F(HttpTls, CertificateThatNobodySignedIsRefused)
{
    for (const std::string host : {"127.0.0.1", "localhost"}) {
        const CStringT url = wide("https://" + host + ":" + port + "/page");
        for (int times = 0; times < 2; ++times) {
            EXPECT_EQ(client.Request(url, HTTP_METHOD::POST, "a=b"_w, {}, HttpOption::kForm), -1) << host;
            expectNoReply();
            EXPECT_EQ(get(url), -1) << host;
            expectNoReply();
        }
    }
}

TEST_F(HttpTls, RedirectToItIsNoConnection)
{
    server.reply(302, "text/plain", "moved", {{"Location", "https://127.0.0.1:" + port + "/page"}});
    EXPECT_EQ(getPath("/"), -1);
    expectNoReply();
}

TEST_F(HttpTls, ServerWithoutTlsIsNoConnection)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(get(wide("https://127.0.0.1:" + std::to_string(server.port()) + "/")), -1);
    expectNoReply();
    EXPECT_EQ(getPath("/"), 200);
}

}  // namespace
}  // namespace kzn::test
