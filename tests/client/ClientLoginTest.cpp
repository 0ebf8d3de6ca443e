// The handler of a sign-in that completes by itself.
#include "client/ClientLogin.h"

#include "pvutil/HttpClient.h"
#include "tests/client/ClientFixture.h"
#include "tests/support/TraceLines.h"

namespace {

using namespace kzn::pvutil;

const std::string kEnter = "9 Debug: ---->>>> Enter CWapiClientLogin::OnHttpCompleted";
const std::string kLeave = "9 Debug: <<<<---- Leave CWapiClientLogin::OnHttpCompleted";

class ClientLoginTest : public ClientFixture {
protected:
    /// An exchange that ended with `body`.
    void exchange(CZelHttpClient& http, const std::string& body)
    {
        reply(body);
        ASSERT_EQ(http.Request(client.getOpURL(), HTTP_METHOD::POST, "a=b"_w, {}, HttpOption::kForm), 200);
    }

    CWapiClientLogin handler;
};

}  // namespace

TEST_F(ClientLoginTest, TakesASuccess)
{
    CZelHttpClient http;
    exchange(http, credReply("c"));
    const WAPIMESSAGE message = handler.messageOf(0, &http);
    EXPECT_EQ(message.code, 1);
    EXPECT_EQ(message.reason, CStringT());
    EXPECT_EQ(message.exceptionID, CStringT());
}

TEST_F(ClientLoginTest, TakesASuccessInAnyCase)
{
    CZelHttpClient http;
    exchange(http, resultReply("sUccess"));
    EXPECT_EQ(handler.messageOf(0, &http).code, 1);
}

TEST_F(ClientLoginTest, TakesTheReasonOfAFailure)
{
    CZelHttpClient http;
    exchange(http,
             "<kznapi><response><result>FAILURE</result><reason>é𝄞</reason><exceptionID>id</exceptionID></response></"
             "kznapi>");
    const WAPIMESSAGE message = handler.messageOf(0, &http);
    EXPECT_EQ(message.code, 0);
    EXPECT_EQ(narrow(message.reason), "é𝄞");
    EXPECT_EQ(narrow(message.exceptionID), "id");
}

TEST_F(ClientLoginTest, HasAReasonOfItsOwnForAnError)
{
    CZelHttpClient http;
    exchange(http, credReply("c"));
    const CZelHttpClient* const noResponse = nullptr;
    for (const WAPIMESSAGE& message :
         {handler.messageOf(12029, &http), handler.messageOf(0, noResponse), handler.messageOf(1, noResponse)}) {
        EXPECT_EQ(message.code, 0);
        EXPECT_EQ(narrow(message.reason), "dwError!=0 || pResponse==NULL");
        EXPECT_EQ(narrow(message.exceptionID), "CWapiClientLogin::OnHttpCompleted");
    }
}

TEST_F(ClientLoginTest, WritesTheReplyBetweenEnterAndLeave)
{
    CZelHttpClient http;
    exchange(http, credReply("c"));
    const TraceLines trace;
    CHttpCompletionListener& listener = handler;
    listener.OnHttpCompleted(0, &http);
    EXPECT_EQ(TraceLines::all(), (std::vector<std::string>{kEnter, "9 Debug: " + credReply("c"), kLeave}));
}

TEST_F(ClientLoginTest, WritesNothingMoreForAnError)
{
    const TraceLines trace;
    handler.OnHttpCompleted(1, nullptr);
    EXPECT_EQ(TraceLines::all(), (std::vector<std::string>{kEnter, kLeave}));
}
