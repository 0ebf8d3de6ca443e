// The hosts in plain C, each with the server that it needs.
#include <gtest/gtest.h>

extern "C" {
#include "tests/capi/InC.h"
}
#include "tests/support/CaptureServer.h"
#include "tests/support/Text.h"

namespace {

using kzn::test::CaptureServer;

class InCTest : public testing::Test {
protected:
    void reply(const std::string& result, const std::string& rest)
    {
        server.reply(200, "text/xml; charset=utf-8",
                     "<kznapi><response><result>" + result + "</result>" +
                         (result == "FAILURE" ? rest + "</response>" : "</response>" + rest) + "</kznapi>");
    }

    const pvw_char* url()
    {
        address = server.url("/kznconnect/op.do");
        return reinterpret_cast<const pvw_char*>(address.c_str());
    }

    CaptureServer server;
    CStringT address;
};

TEST_F(InCTest, SignsIn)
{
    reply("SUCCESS",
          "<securityContext><cred>cr\xC3\xA9"
          "d</cred></securityContext>");
    reply("SUCCESS", "");
    EXPECT_EQ(signInInC(url()), 0) << "line of InC.c";
    ASSERT_EQ(server.requests().size(), 2U);
    EXPECT_NE(server.requests()[0].body.find("p%C3%A4ss%20%26%20word"), std::string::npos);
    EXPECT_NE(server.requests()[1].body.find("cr%C3%A9d"), std::string::npos);
}

TEST_F(InCTest, ListsTabs)
{
    reply("SUCCESS",
          "<return><workspace><tabs><tab><tabID>T1</tabID><tabName>Ideen \xF0\x9F\x98\x80</tabName><tabType>1</tabType>"
          "<tabOrder>4</tabOrder></tab><tab><tabID>T2</tabID></tab></tabs></workspace></return>");
    EXPECT_EQ(listTabsInC(url()), 0) << "line of InC.c";
}

TEST_F(InCTest, HandsOverRecordsThatHaveGrown)
{
    reply("SUCCESS", "");
    EXPECT_EQ(orderTabsInC(url()), 0) << "line of InC.c";
    ASSERT_EQ(server.requests().size(), 1U);
    const std::string body = server.requests()[0].body;
    const auto second = body.find("T2%3C");
    EXPECT_NE(second, std::string::npos) << body;
    EXPECT_NE(body.find("T1%3C", second), std::string::npos) << body;
}

TEST_F(InCTest, LearnsWhyACallFailed)
{
    reply("FAILURE", "<reason>not allowed</reason><exceptionID>E7</exceptionID>");
    EXPECT_EQ(failInC(url()), 0) << "line of InC.c";
}

TEST(InCAloneTest, LearnsThatNobodyIsThere)
{
    CStringT address;
    {
        const CaptureServer gone;
        address = gone.url("/kznconnect/op.do");
    }
    EXPECT_EQ(meetNobodyInC(reinterpret_cast<const pvw_char*>(address.c_str())), 0) << "line of InC.c";
}

TEST(InCAloneTest, MakesTextSafeForXml)
{
    EXPECT_EQ(escapeInC(), 0) << "line of InC.c";
}

}  // namespace
