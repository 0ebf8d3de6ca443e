// Who the client speaks for: what the user's configuration told last.
#include "tests/client/ClientFixture.h"

namespace {

class IdentityTest : public ClientFixture {
protected:
    int read(const std::string& answer)
    {
        reply(answer);
        return client.getUserConfigureInfo("c"_w, info);
    }

    void expectIdentity(const std::string& user, const std::string& nameSpace)
    {
        EXPECT_EQ(narrow(client.getUserID()), user);
        EXPECT_EQ(narrow(client.getNamespaceID()), nameSpace);
    }

    CUserConfigInfo info;
};

std::string configuration(const std::string& user, const std::string& nameSpace, const std::string& result = "SUCCESS")
{
    return resultReply(result, "<return><user><userID>" + user + "</userID><namespaces><namespace><namespaceID>" +
                                   nameSpace + "</namespaceID></namespace></namespaces></user></return>");
}

}  // namespace

TEST_F(IdentityTest, IsWhatTheLastConfigurationSaid)
{
    expectIdentity("", "");
    ASSERT_EQ(read(configuration("user-1", "ns-1")), 1);
    expectIdentity("user-1", "ns-1");
    ASSERT_EQ(read(configuration("user-2", "")), 1);
    expectIdentity("user-2", "");
    ASSERT_EQ(read(resultReply("SUCCESS")), 1);
    expectIdentity("", "");
}

TEST_F(IdentityTest, StaysWhenAConfigurationFails)
{
    ASSERT_EQ(read(configuration("user-1", "ns-1")), 1);
    EXPECT_EQ(read(configuration("user-2", "ns-2", "FAILURE")), 0);
    EXPECT_EQ(read("no reply at all"), 0);
    EXPECT_EQ(client.login("anna"_w, {}, {}, "wrong"_w, 0, 1), 0);
    expectIdentity("user-1", "ns-1");
}

TEST_F(IdentityTest, IsNotTouchedByASignIn)
{
    ASSERT_EQ(read(configuration("user-1", "ns-1")), 1);
    reply(resultReply("SUCCESS",
                      "<securityContext><cred>c2</cred></securityContext><return><user><userID>user-2"
                      "</userID></user></return>"));
    ASSERT_EQ(client.login("ben"_w, {}, {}, "secret"_w, 0, 1), 1);
    expectIdentity("user-1", "ns-1");
}
