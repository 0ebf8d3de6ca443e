// Which exchange of a tape answers a request.
#include "service/tape/Player.h"

#include "tests/service/DemoService.h"

namespace service::tape {

namespace {

using testing::HasSubstr;

constexpr const char* kServer = "http://127.0.0.1:1";

class TapePlayer : public testing::Test {
protected:
    void load(const std::string& text) { player.emplace(readTape(text)); }

    std::string post(const std::string& body)
    {
        return player->play({"POST", "/kznconnect/op.do", "application/x-www-form-urlencoded", body}, kServer).body;
    }

    std::optional<Player> player;
};

TEST_F(TapePlayer, WhatWasNotPlayedComesFirstAndThenTheLastAgain)
{
    load("[body]\na\n[reply]\n1\n[body]\nb\n[reply]\nother\n[body]\na\n[reply]\n2\n");
    EXPECT_EQ(post("b"), "other");
    EXPECT_EQ(post("a"), "1");
    EXPECT_EQ(player->played(), 2U);
    EXPECT_EQ(post("a"), "2");
    EXPECT_EQ(post("a"), "2");
    EXPECT_EQ(post("b"), "other");
    EXPECT_EQ(post("a"), "2");
    EXPECT_EQ(player->played(), 3U);
    EXPECT_EQ(player->refused(), 0U);
}

TEST_F(TapePlayer, CredentialsAreMadeAnewAndKnownAgain)
{
    load(
        "[body]\nlogin={secret}\n[reply]\n<cred>{cred 1}</cred>\n"
        "[body]\nget&cred={cred 1}\n[reply]\n<a>{cred 1} {secret}</a>\n");
    const std::string refused = post("get&cred=anything");
    EXPECT_THAT(refused, HasSubstr("no reply has given its {cred 1} yet"));
    const std::string login = post("login=p%26w");
    ASSERT_THAT(login, service::test::IsLike("<cred>[0-9a-f]{40}</cred>"));
    const std::string cred = login.substr(6, 40);
    EXPECT_EQ(post("get&cred=" + cred), "<a>" + cred + " p&amp;w</a>");
    EXPECT_THAT(post("get&cred=" + cred + "0"), HasSubstr("KZN:NotOnTape"));
    EXPECT_EQ(player->refused(), 2U);
}

TEST_F(TapePlayer, ServesItsOwnAddressAndTheRecordedValues)
{
    load(
        "[body]\na\n[reply]\n<u>{server}/x</u><i>{id 1 = wksp-1}</i><t>{time = 2026-02-01T09:30:00Z}</t>\n"
        "[body]\nid={id 1}&u={server}%2Fx\n[reply]\nyes\n");
    EXPECT_EQ(post("a"), "<u>http://127.0.0.1:1/x</u><i>wksp-1</i><t>2026-02-01T09:30:00Z</t>");
    EXPECT_EQ(post("id=wksp-1&u=http%3A%2F%2F127.0.0.1%3A1%2Fx"), "yes");
    EXPECT_EQ(post("id=wksp-1&u=http%3a%2f%2f127.0.0.1%3a1%2Fx"), "yes");
    EXPECT_THAT(post("id=wksp-2&u="), HasSubstr("differs at byte 3: the tape has {id 1}, and not \"wksp-2"));
}

TEST_F(TapePlayer, AnyTakesWhateverStandsThere)
{
    load("[body]\na={any}&b=1&c={any}z\n[reply]\nyes\n");
    for (const char* const body : {"a=&b=1&c=z", "a=x&b=1&c=yz", "a=&b=2&b=1&c=&b=1&c=zz"})
        EXPECT_EQ(post(body), "yes") << body;
    for (const char* const body : {"a=&b=1&c=", "a=&b=1&c=zy", "a=b=1&c=z", ""}) {
        EXPECT_THAT(post(body), HasSubstr("KZN:NotOnTape")) << body;
    }
}

TEST_F(TapePlayer, NamesTheNearestExchangeAndTheFirstDifference)
{
    load("[body]\ncmd=login\n[reply]\n\n\n[body]\ncmd=list&type=workspace\n[reply]\n\n\n[request] GET\n/x\n[reply]\n");
    EXPECT_THAT(post("cmd=list&type=user"),
                HasSubstr("the nearest is exchange 2 (line 6): its body differs at byte 14: the tape has "
                          "\"workspace\", and not \"user\""));
    const http::Response get = player->play({"GET", "/y", "", ""}, kServer);
    EXPECT_EQ(get.status, 404U);
    EXPECT_THAT(get.body, HasSubstr("exchange 3 (line 11): its target differs at byte 1"));
    EXPECT_THAT(get.body, HasSubstr("<result>FAILURE</result>"));
}

// The reason goes to a log, and to whoever reads that.
TEST_F(TapePlayer, TellsNoSecretOfARequestThatFitsNothing)
{
    load(
        "[body]\ncmd=login&username=anna&password={secret}&isp=\n[reply]\nyes\n[body]\na={secret}&b=1\n[reply]\n\n"
        "[request] GET\n/x?a=1\n[reply]\n");
    EXPECT_THAT(post("cmd=login&username=bob&password=s3cret-hunter-of-a-length-that-is-cut&isp="),
                HasSubstr("differs at byte 19: the tape has \"anna&amp;password=\", and not "
                          "\"bob&amp;password=***&amp;isp=\""));
    EXPECT_THAT(post("cmd=login&username=anna&password=s3cret&other=s3cret%2D&pwd=an"),
                HasSubstr("the tape has \"isp=\", and not \"other=***%2D&amp;pwd=***\""));
    EXPECT_THAT(post("cmd=login&username=anna&passwordX=s3cret"), HasSubstr("and not \"X=s3cret\""));
    EXPECT_EQ(post("cmd=login&username=anna&password=s3cret%201&isp="), "yes");
    EXPECT_THAT(post("a=s3cret+1&b=s3cret%201"), HasSubstr("the tape has \"1\", and not \"***\""));
    const auto get = [&](const std::string& target) { return player->play({"GET", target, "", ""}, kServer).body; };
    EXPECT_THAT(get("/x?a=2&token=s3cret"), HasSubstr("and not \"2&amp;token=***\""));
    load("[headers]\nAuthorization: Basic x\n[body]\nh\n[reply]\n");
    EXPECT_THAT(player->play({"POST", "/kznconnect/op.do", "", "h", {{"Authorization", "Basic s3cret"}}}, kServer).body,
                HasSubstr("and not \"***\""));
}

TEST_F(TapePlayer, AReplyThatCannotBePlayedIsAFailure)
{
    std::string addresses;
    for (int i = 0; i < 5'000; ++i) addresses += "{server}";
    load("[body]\na\n[reply]\n1\n[reply headers]\nX: " + addresses + "\n[body]\nb\n[reply]\n2\n");
    EXPECT_THAT(post("a"), HasSubstr("exchange 1 of the tape (line 1) cannot be played: its header X is too long"));
    EXPECT_EQ(post("b"), "2");
    EXPECT_EQ(player->refused(), 1U);
}

TEST_F(TapePlayer, ComparesTheHeadersThatTheTapeNames)
{
    load(
        "[headers]\nContent-Type: multipart/form-data; boundary={boundary}\nX-Kind: a\n"
        "[body]\n--{boundary}--\n[reply]\nyes\n");
    const auto upload = [&](const std::string& boundary, const std::string& body, const std::string& kind) {
        return player
            ->play({"POST", "/kznconnect/op.do", "multipart/form-data; boundary=" + boundary, body, {{"x-kind", kind}}},
                   kServer)
            .body;
    };
    EXPECT_EQ(upload("one", "--one--", "a"), "yes");
    EXPECT_EQ(upload("two", "--two--", "a"), "yes");
    EXPECT_THAT(upload("two", "--one--", "a"), HasSubstr("its body differs"));
    EXPECT_THAT(upload("two", "--two--", "b"), HasSubstr("its header X-Kind differs"));
}

}  // namespace

}  // namespace service::tape
