// Who may ask: the token below /control/, and no page of another site anywhere.
#include "service/control/Guard.h"

#include "tests/service/ControlledService.h"

namespace service::test {

namespace {

using control::bearsToken;
using control::isOwnHost;
using control::isOwnOrigin;
using nlohmann::json;
using testing::HasSubstr;

TEST(Guard, KnowsTheNamesOfThisMachineWithThePort)
{
    for (const char* const host :
         {"127.0.0.1:8420", "localhost:8420", "LOCALHOST:8420", "[::1]:8420", "127.9.9.9:8420"}) {
        EXPECT_TRUE(isOwnHost(host, 8420)) << host;
    }
    for (const char* const host :
         {"", "127.0.0.1", "127.0.0.1:8421", "localhost", "localhost:84200", "service.example:8420", ":8420",
          "10.0.0.1:8420", "localhost.service.example:8420", "127.0.0.1:8420@service.example", "[::1]", "0.0.0.0:8420",
          "127.0.0.1.service.example:8420", "localhost:8420:8420"}) {
        EXPECT_FALSE(isOwnHost(host, 8420)) << host;
    }
    EXPECT_TRUE(isOwnHost("127.0.0.1", 80));
}

TEST(Guard, KnowsItsOwnOrigin)
{
    for (const char* const origin : {"", "http://127.0.0.1:8420", "http://localhost:8420"}) {
        EXPECT_TRUE(isOwnOrigin(origin, 8420)) << origin;
    }
    for (const char* const origin : {"null", "http://service.example", "http://127.0.0.1:8421", "http://127.0.0.1",
                                     "https://127.0.0.1:8420", "http://service.example:8420"}) {
        EXPECT_FALSE(isOwnOrigin(origin, 8420)) << origin;
    }
}

TEST(Guard, KnowsTheWholeTokenOnly)
{
    EXPECT_TRUE(bearsToken("Bearer secret-1", "secret-1"));
    EXPECT_TRUE(bearsToken("bearer secret-1", "secret-1"));
    for (const char* const header : {"", "Bearer", "Bearer ", "Bearer secret", "Bearer secret-12", "Basic secret-1",
                                     "secret-1", "Bearer SECRET-1", "Bearersecret-1"}) {
        EXPECT_FALSE(bearsToken(header, "secret-1")) << header;
    }
}

class GuardedService : public ControlledService {
protected:
    HttpReply sent(const std::string& target, const std::string& headers) const
    {
        return Talk(port_).send("GET", target, {}, headers);
    }
};

constexpr const char* kTargets[] = {"/ready", "/kznconnect/op.do?cmd=login&username=anna&password=anna-demo-1",
                                    "/kzndms/icon/x", "/kznconnect/nullsession.do", "/nothing"};

TEST_F(GuardedService, AnswersNoPathUnderAnotherName)
{
    for (const std::string target : kTargets) {
        for (const std::string& host : {std::string("service.example"), "service.example:" + std::to_string(port_),
                                        std::string("127.0.0.1"), std::string("localhost:1")}) {
            SCOPED_TRACE(target + " at " + host);
            const HttpReply reply = sent(target, "Host: " + host + "\r\n");
            EXPECT_EQ(reply.status, 403U);
            EXPECT_FAILURE(reply.body, "KZN:AccessDenied");
            EXPECT_FALSE(reply.keepAlive);
        }
    }
    EXPECT_EQ(sent("/ready", "Host: localhost:" + std::to_string(port_) + "\r\n").status, 200U);
    Talk nameless(port_);
    nameless.sendRaw("GET /ready HTTP/1.1\r\n\r\n");
    EXPECT_THAT(nameless.readToEnd(), HasSubstr("HTTP/1.1 403"));
}

TEST_F(GuardedService, AnswersNoPageOfAnotherSite)
{
    for (const std::string target : kTargets) {
        for (const char* const header : {"Origin: http://service.example\r\n", "Origin: null\r\n",
                                         "Sec-Fetch-Site: cross-site\r\n", "Sec-Fetch-Site: same-site\r\n"}) {
            SCOPED_TRACE(target + " with " + header);
            EXPECT_EQ(sent(target, header).status, 403U);
        }
    }
    EXPECT_EQ(sent("/ready", "Origin: http://127.0.0.1:" + std::to_string(port_) + "\r\n").status, 200U);
    EXPECT_EQ(sent("/ready", "Sec-Fetch-Site: none\r\n").status, 200U);
    // With the token it is no better.
    const HttpReply reply =
        sent("/control/clock", std::string("Origin: null\r\nAuthorization: Bearer ") + kToken + "\r\n");
    EXPECT_EQ(reply.status, 403U);
    EXPECT_TRUE(json::parse(reply.body).contains("error"));
}

TEST_F(GuardedService, NeedsTheTokenBelowControl)
{
    for (const std::string resource : {"", "clock", "state", "nothing"}) {
        for (const std::string headers : {"", "Authorization: Bearer wrong\r\n", "Authorization: Basic eDp5\r\n"}) {
            SCOPED_TRACE(resource + " with " + headers);
            const HttpReply reply = sent("/control/" + resource, headers);
            EXPECT_EQ(reply.status, 401U);
            EXPECT_EQ(reply.contentType, "application/json");
            EXPECT_THAT(json::parse(reply.body).value("error", ""), HasSubstr("Bearer"));
        }
    }
    // Nobody without the token makes the service read a body.
    Talk large(port_);
    large.sendRaw("PUT /control/state HTTP/1.1\r\nHost: " + large.host() + "\r\nContent-Length: 100000000\r\n\r\n");
    EXPECT_THAT(large.readToEnd(), HasSubstr("HTTP/1.1 401"));
    EXPECT_EQ(service::test::control(port_, "POST", "reset", "", "wrong-token").status, 401U);
}

TEST(Token, IsMadeAnewAndSaidAtTheStart)
{
    const TemporaryFolder folder;
    ServiceProcess first(ServiceProcess::on(":memory:"));
    ServiceProcess second(ServiceProcess::on(":memory:", {"--ready-json"}));
    const std::string line = first.errorLine();
    ASSERT_THAT(line, IsLike("control token [0-9a-f]{40}\n"));
    const std::string token = line.substr(14, 40);
    const json ready = json::parse(second.firstLine());
    EXPECT_THAT(ready.at("token").get<std::string>(), IsLike("[0-9a-f]{40}"));
    EXPECT_EQ(ready.at("control"), "http://127.0.0.1:" + std::to_string(second.port()) + "/control/");
    EXPECT_EQ(control(first.port(), "GET", "clock", "", token).status, 200U);
    EXPECT_EQ(control(second.port(), "GET", "clock", "", token).status, 401U);
    EXPECT_EQ(control(second.port(), "GET", "clock", "", ready.at("token")).status, 200U);
}

TEST(Token, ThatCouldNotBeSentIsRefused)
{
    for (const std::string token : {"", "short", "with blanks in it", "with\nlines-in-it"}) {
        ServiceProcess process(ServiceProcess::on(":memory:", {"--control-token", token}));
        EXPECT_THAT(process.errors(), HasSubstr("--control-token")) << token;
        EXPECT_EQ(process.wait(), 2) << token;
    }
}

}  // namespace

}  // namespace service::test
