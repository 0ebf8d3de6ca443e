// The private requests of a client: the object request and the two shapes of doRequest.
#include "client/CommonResponse.h"
#include "client/FormBody.h"
#include "tests/client/ClientFixture.h"

struct CWapiClientTestPeer {
    static CStringT buildObjectRequest(CWapiClient& client, const CStringT& cred, int type, const CStringT& id)
    {
        return client.buildObjectRequest(cred, static_cast<CWapiClient::OBJ_TYPE>(type), id);
    }

    static int doRequest(CWapiClient& client, const CStringT& body, CStringT& reply, CXMLWapiCommonResponse& parser,
                         CWapiClient::METHOD_TYPE method = CWapiClient::METHOD_POST)
    {
        return client.doRequest(client.getOpURL(), body, reply, parser, method, "ignored"_w);
    }

    static int doRequest(CWapiClient& client, const CStringT& body, CXMLWapiCommonResponse& parser)
    {
        return doRequestTo(client, client.getOpURL(), body, parser);
    }

    static int doRequestTo(CWapiClient& client, const CStringT& url, const CStringT& body,
                           CXMLWapiCommonResponse& parser)
    {
        return client.doRequest(url, body, parser, CWapiClient::METHOD_POST);
    }

    static int doRequestTo(CWapiClient& client, const CStringT& url, const CStringT& body, CStringT& reply,
                           CXMLWapiCommonResponse& parser)
    {
        return client.doRequest(url, body, reply, parser, CWapiClient::METHOD_POST, {});
    }
};

namespace {

using RequestTest = ClientFixture;
using Peer = CWapiClientTestPeer;

std::string objectRequest(int type)
{
    CWapiClient client("http://host/kznconnect/op.do"_w);
    return narrow(Peer::buildObjectRequest(client, "c&1 é"_w, type, "i ]]>😀"_w));
}

const std::string kHead = "cmd=get&cred=c%261%20%C3%A9&type=";
const std::string kID = "&id=i%20%5D%5D%3E%F0%9F%98%80&select=";

}  // namespace

TEST(ObjectRequest, NamesTheTypeAndWhatIsSelected)
{
    EXPECT_EQ(objectRequest(0), kHead + "user" + kID + "user");
    EXPECT_EQ(objectRequest(1),
              kHead + "workspace" + kID +
                  "workspaceID%3AworkspaceName%3AuserID%3AuserName%3Atype%3AisTemplate%3AnamespaceID%3AnamespaceName"
                  "%3AcreateTime%3AlastModifiedTime%3AgroupName%3AgroupID%3Aext%2FKZN%2Fdescription"
                  "%3Amembers%2Fmember%3Atabs%2Ftab");
    EXPECT_EQ(objectRequest(2), kHead + "group" + kID + "group");
    EXPECT_EQ(objectRequest(3), kHead + "thing" + kID + "thing");
    EXPECT_EQ(objectRequest(4), kHead + "org" + kID + "org");
    EXPECT_EQ(objectRequest(16), kHead + "sessionInfo" + kID + "sessionInfo");
}

TEST(ObjectRequest, IsEmptyForAnUnknownType)
{
    for (const int type : {5, 6, 10, 15, 17, -1, 0x7fffffff}) EXPECT_EQ(objectRequest(type), "") << type;
}

TEST_F(RequestTest, GivesTheReplyOfASuccess)
{
    reply(resultReply("Success", "<x>é</x>"));
    CStringT text = "before"_w;
    CXMLWapiCommonResponse parser;
    EXPECT_EQ(Peer::doRequest(client, "a=b"_w, text, parser), 1);
    EXPECT_EQ(narrow(text), resultReply("Success", "<x>é</x>"));
    EXPECT_EQ(narrow(parser.result), "Success");
    EXPECT_EQ(lastBody(), "a=b");
    EXPECT_EQ(server.requests().back().method, "POST");
    EXPECT_EQ(client.GetLstMsg().response, CStringT());
}

TEST_F(RequestTest, GivesTheReplyOfAFailureToo)
{
    reply(resultReply("FAILURE"));
    CStringT text = "before"_w;
    CXMLWapiCommonResponse parser;
    EXPECT_EQ(Peer::doRequest(client, "a=b"_w, text, parser), 0);
    EXPECT_EQ(narrow(text), resultReply("FAILURE"));
}

TEST_F(RequestTest, LeavesTheReplyAloneWithoutAConnection)
{
    CWapiClient stranded(wide("http://127.0.0.1:" + std::to_string(kzn::test::CaptureServer::closedPort())));
    CStringT text = "before"_w;
    CXMLWapiCommonResponse parser;
    parser.result = "before"_w;
    EXPECT_EQ(Peer::doRequest(stranded, "a=b"_w, text, parser), 0);
    EXPECT_EQ(text, "before"_w);
    EXPECT_EQ(parser.result, "before"_w) << "the parser is not called";
    EXPECT_EQ(stranded.getNetworkError(), 1);
}

TEST_F(RequestTest, GoesToTheAddressItIsGivenAndNamesIt)
{
    CStringT text;
    CXMLWapiCommonResponse parser;
    otherwise(resultReply("SUCCESS"));
    EXPECT_EQ(Peer::doRequestTo(client, server.url("/first"), "a=b"_w, parser), 1);
    EXPECT_EQ(server.requests().back().target, "/first");
    EXPECT_EQ(Peer::doRequestTo(client, server.url("/second"), "a=b"_w, text, parser), 1);
    EXPECT_EQ(server.requests().back().target, "/second");

    const std::string nobody = "http://127.0.0.1:" + std::to_string(kzn::test::CaptureServer::closedPort()) + "/third";
    EXPECT_EQ(Peer::doRequestTo(client, wide(nobody), "a=b"_w, parser), 0);
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "Network error. Unable to connect to" + nobody);
    EXPECT_EQ(Peer::doRequestTo(client, wide(nobody), "a=b"_w, text, parser), 0);
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "Network error. Unable to connect to" + nobody);
}

TEST_F(RequestTest, IsTheSameInItsShortShape)
{
    for (const char* result : {"SUCCESS", "FAILURE"}) {
        const std::string text = resultReply(result, "<reason>outside</reason>");
        reply(text);
        reply(text);
        CStringT scratch;
        CXMLWapiCommonResponse full;
        CXMLWapiCommonResponse brief;
        const int fullResult = Peer::doRequest(client, "a=b"_w, scratch, full);
        const WAPIMESSAGE fullMessage = client.GetLstMsg();
        EXPECT_EQ(Peer::doRequest(client, "a=b"_w, brief), fullResult);
        EXPECT_EQ(brief.result, full.result);
        EXPECT_EQ(client.GetLstMsg().reason, fullMessage.reason);
        EXPECT_EQ(client.GetLstMsg().exceptionID, fullMessage.exceptionID);
        EXPECT_EQ(client.GetLstMsg().response, fullMessage.response);
        EXPECT_EQ(client.getNetworkError(), 0);
        const auto requests = server.requests();
        EXPECT_EQ(requests.at(requests.size() - 1).body, requests.at(requests.size() - 2).body);
    }
}

TEST_F(RequestTest, PostsOnlyByTheMethodForIt)
{
    reply(resultReply("SUCCESS"));
    CStringT text;
    CXMLWapiCommonResponse parser;
    EXPECT_EQ(Peer::doRequest(client, {}, text, parser, CWapiClient::METHOD_GET), 1);
    EXPECT_EQ(server.requests().back().method, "GET");
}

TEST_F(RequestTest, ClearsTheMessageBeforeItFillsIt)
{
    reply(
        "<kznapi><response><result>FAILURE</result><reason>one</reason><exceptionID>e</exceptionID></response></"
        "kznapi>");
    reply(resultReply("FAILURE"));
    CXMLWapiCommonResponse first;
    CXMLWapiCommonResponse second;
    Peer::doRequest(client, {}, first);
    Peer::doRequest(client, {}, second);
    EXPECT_EQ(client.GetLstMsg().reason, CStringT());
    EXPECT_EQ(client.GetLstMsg().exceptionID, CStringT());
    EXPECT_EQ(narrow(client.GetLstMsg().response), resultReply("FAILURE"));
}
