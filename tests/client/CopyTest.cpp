// Copies of a client, and their deaths in every order.
#include <algorithm>
#include <array>
#include <memory>

#include "tests/client/ClientFixture.h"

namespace {

using CopyTest = ClientFixture;
using namespace std::chrono_literals;

std::string credOf(const std::string& body)
{
    const auto from = body.find("&cred=") + 6;
    return body.substr(from, body.find('&', from) - from);
}

}  // namespace

TEST_F(CopyTest, CarriesEverythingTheClientHolds)
{
    const auto identify = [&](CWapiClient& of, const std::string& name) {
        reply(resultReply("SUCCESS", "<return><user><userID>user " + name +
                                         "</userID><namespaces><namespace><namespaceID>space " + name +
                                         "</namespaceID></namespace></namespaces></user></return>"));
        CUserConfigInfo info;
        ASSERT_EQ(of.getUserConfigureInfo({}, info), 1);
    };
    CWapiClient assigned(server.url("/other"));
    identify(assigned, "other");
    identify(client, "é");
    shortenInterval(client, 5000ms);
    client.setRootCred("cred é"_w);
    reply(
        "<kznapi><response><result>FAILURE</result><reason>why</reason><exceptionID>id</exceptionID></response></"
        "kznapi>");
    ASSERT_EQ(client.callWapi({}, "cmd=x"_w), 0);

    assigned = client;
    CWapiClient copied(client);
    for (CWapiClient* copy : {&copied, &assigned}) {
        EXPECT_EQ(copy->getOpURL(), client.getOpURL());
        EXPECT_EQ(copy->getNullSessionURL(), client.getNullSessionURL());
        EXPECT_EQ(copy->getUploadURL(), client.getUploadURL());
        EXPECT_EQ(copy->getDmsURL(), client.getDmsURL());
        EXPECT_EQ(narrow(copy->getRootCred()), "cred é");
        EXPECT_EQ(narrow(copy->getUserID()), "user é");
        EXPECT_EQ(narrow(copy->getNamespaceID()), "space é");
        EXPECT_EQ(copy->getRefreshInterval(), 5000U);
        EXPECT_EQ(copy->getNetworkError(), 0);
        EXPECT_EQ(narrow(copy->GetLstMsg().reason), "why");
        EXPECT_EQ(narrow(copy->GetLstMsg().exceptionID), "id");
        EXPECT_EQ(copy->GetLstMsg().response, client.GetLstMsg().response);
    }
}

TEST_F(CopyTest, CarriesTheNetworkError)
{
    CWapiClient stranded("http://127.0.0.1:"_w + wide(std::to_string(kzn::test::CaptureServer::closedPort())));
    ASSERT_EQ(stranded.callWapi({}, {}), 0);
    const CWapiClient copy(stranded);
    EXPECT_EQ(copy.getNetworkError(), 1);
}

TEST_F(CopyTest, HoldsItsTextsForItself)
{
    client.setRootCred("one"_w);
    CWapiClient copy(client);
    copy.setRootCred("two"_w);
    otherwise(resultReply("FAILURE"));
    copy.callWapi({}, {});
    EXPECT_EQ(client.getRootCred(), "one"_w);
    EXPECT_EQ(client.GetLstMsg().response, CStringT());
    EXPECT_EQ(narrow(copy.GetLstMsg().response), resultReply("FAILURE"));
}

TEST_F(CopyTest, SurvivesAssignmentToItself)
{
    client.setRootCred("one"_w);
    CWapiClient& same = client;
    client = same;
    EXPECT_EQ(client.getRootCred(), "one"_w);

    shortenInterval(client, 50ms);
    CStringT cred;
    client.cloneSession({}, {}, cred);
    EXPECT_TRUE(nextTickComes());
}

TEST_F(CopyTest, DiesInEveryOrderWithoutHarm)
{
    std::array<std::size_t, 3> order = {0, 1, 2};
    do {
        std::array<std::unique_ptr<CWapiClient>, 3> clients;
        clients[0] = std::make_unique<CWapiClient>(server.url(kOperationPath));
        clients[1] = std::make_unique<CWapiClient>(*clients[0]);
        clients[2] = std::make_unique<CWapiClient>(CStringT{});
        *clients[2] = *clients[1];
        shortenInterval(*clients[0], 30ms);
        CStringT cred;
        clients[0]->cloneSession({}, {}, cred);
        for (const std::size_t next : order) {
            EXPECT_TRUE(nextTickComes());
            clients.at(next).reset();
        }
        EXPECT_TRUE(staysQuiet(100ms));
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(CopyTest, GetsTheTicksWhenTheOlderOneIsGone)
{
    auto original = std::make_unique<CWapiClient>(server.url(kOperationPath));
    original->setRootCred("original"_w);
    shortenInterval(*original, 50ms);
    auto copy = std::make_unique<CWapiClient>(*original);
    copy->setRootCred("copy"_w);

    CStringT cred;
    copy->cloneSession({}, {}, cred);  // arms the window that both share
    ASSERT_TRUE(nextTickComes());
    EXPECT_EQ(credOf(lastBody()), "original");
    original.reset();
    ASSERT_TRUE(nextTickComes());
    EXPECT_EQ(credOf(lastBody()), "copy");
    copy.reset();
    EXPECT_TRUE(staysQuiet());
}

TEST_F(CopyTest, LeavesTheTicksWithTheOriginalWhenItDiesFirst)
{
    shortenInterval(client, 50ms);
    client.setRootCred("original"_w);
    CStringT cred;
    client.cloneSession({}, {}, cred);
    {
        CWapiClient copy(client);
        copy.setRootCred("copy"_w);
    }
    ASSERT_TRUE(nextTickComes());
    EXPECT_EQ(credOf(lastBody()), "original");
}

TEST_F(CopyTest, LetsGoOfItsOwnTimerWhenItIsAssigned)
{
    CWapiClient assigned(server.url(kOperationPath));
    shortenInterval(assigned, 50ms);
    CStringT cred;
    assigned.cloneSession({}, {}, cred);
    ASSERT_TRUE(nextTickComes());

    assigned = client;
    EXPECT_TRUE(staysQuiet());
}
