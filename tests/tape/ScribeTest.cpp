// What reaches the tape of an exchange, and what does not.
#include "service/tape/Origin.h"
#include "service/tape/Scribe.h"
#include "tests/service/Work.h"

namespace service::tape {

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kForm = "application/x-www-form-urlencoded";
constexpr const char* kXml = "text/xml; charset=utf-8";
const Origin kServer = originOf("http://kzn.example:8420");

http::Request post(std::string body, std::string type = kForm)
{
    return {"POST", "/kznconnect/op.do", std::move(type), std::move(body)};
}

http::Response xml(std::string inside)
{
    return {200, kXml, "<kznapi>" + std::move(inside) + "</kznapi>"};
}

class ScribeTest : public testing::Test {
protected:
    // Every tape can be read.
    ~ScribeTest() override { EXPECT_EQ(readTape(scribe.text()).size(), scribe.size()); }

    void take(const http::Request& request, const http::Response& response)
    {
        EXPECT_TRUE(scribe.take(request, response));
    }

    Scribe scribe{kServer.spellings()};
};

TEST_F(ScribeTest, CredentialsAndPasswordsAreNumbered)
{
    take(post("cmd=login&username=anna&password=p%3Dw%20%C3%A9&isp="),
         xml("<securityContext><cred>c &amp; 1</cred></securityContext>"));
    take(post("cmd=cloneSession&cred=c%20%26%201"), xml("<securityContext><cred>c2c2c2</cred></securityContext>"));
    take(post("cmd=get&cred=c2c2c2&again=p=w"), xml("<a>c &amp; 1</a><b>p=w é</b>"));
    take(post("cmd=login&username=ben&token=other+one"), xml(""));
    EXPECT_THAT(scribe.text(), HasSubstr("&password={secret}\n"));
    EXPECT_THAT(scribe.text(), HasSubstr("<cred>{cred 1}</cred>"));
    EXPECT_THAT(scribe.text(), HasSubstr("&cred={cred 1}\n"));
    EXPECT_THAT(scribe.text(), HasSubstr("<cred>{cred 2}</cred>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<a>{cred 1}</a>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<b>{secret}</b>"));
    EXPECT_THAT(scribe.text(), HasSubstr("&token={secret 2}\n"));
}

// Wherever a secret turns up, and however it is spelled there, before and after it is known to be one.
TEST_F(ScribeTest, NoSecretReachesTheTape)
{
    const std::vector<std::string> secrets{"s3cret one",  "s3cret-two", "s3cret/three", "s3cretfour",
                                           "s3cret&five", "s3cret6",    "s3cret%7",     "s3cret8"};
    take(post("x=1"), xml("<early>s3cretfour</early><made>s3cret8</made>"));
    take(post("cmd=login?x&password=s3cret%20one&Token=s3cret-two"), xml(""));
    take(post("cmd=execute&xml=%3Cuser%3E%3Cpassword%3Es3cret%2Fthree%3C%2Fpassword%3E%3C%2Fuser%3E"), xml(""));
    take(post("cmd=execute&xml=<user><newPassword>s3cretfour</newPassword></user>"), xml(""));
    take(post("--B\r\nContent-Disposition: form-data; name=\"cred\"\r\n\r\ns3cret&five\r\n--B--",
              "multipart/form-data; boundary=B"),
         xml(""));
    take({"GET", "/picture?cred=s3cret6", "", ""}, {200, "image/png", "\x89PNG s3cret6"});
    take(post("a=b"), xml("<ns:token kind=\"x\"><![CDATA[s3cret%7]]></ns:token><t>s3cret%257</t>"));
    take(post("cred=s3cret8"), {302, "text/plain", "", {{"Location", "http://kzn.example:8420/?cred=s3cret8"}}});
    take(post("x=s3cret+one&y=s3cret%2fthree&z=s3cret%26amp%3Bfive"), xml("<a>s3cret&amp;five</a>"));
    EXPECT_THAT(scribe.text(), Not(HasSubstr("s3cret")));
    EXPECT_THAT(scribe.text(), HasSubstr("Location: {server}/?cred={secret"));
}

// A short one is hidden where it stands alone, and leaves the words alone that happen to hold it.
TEST_F(ScribeTest, ShortSecretsDoNotSpoilWords)
{
    take(post("cmd=login&username=anna&password=an"), xml("<a>an</a><b>anna and an ant</b>"));
    EXPECT_THAT(scribe.text(), HasSubstr("&password={secret}\n"));
    EXPECT_THAT(scribe.text(), HasSubstr("<b>anna and {secret} ant</b>"));
}

TEST_F(ScribeTest, IdentifiersAreNamedWhereTheyFirstStand)
{
    take(post("cmd=list"), xml("<id>user-anna</id><name>Autumn catalogue</name><made>wksp-0123456789abcdef</made>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<id>user-anna</id>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<made>{id 1 = wksp-0123456789abcdef}</made>"));
    take(post("cmd=get&id=user-anna&xml=%3Ca%3Ewksp-0123456789abcdef%3C%2Fa%3E"), xml("<id>user-anna</id>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<id>{id 2 = user-anna}</id>"));
    EXPECT_THAT(scribe.text(), HasSubstr("&id={id 2}\n"));
    EXPECT_THAT(scribe.text(), HasSubstr("%3Ca%3E{id 1}%3C%2Fa%3E"));
    EXPECT_THAT(scribe.text(), HasSubstr("<id>{id 2}</id>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<name>Autumn catalogue</name>"));
}

TEST_F(ScribeTest, WhatTheHostChoseIsNoIdentifier)
{
    take(post("id=host-0123456789abcdef&at=2026-02-01T09:30:00Z"),
         xml("<id>host-0123456789abcdef</id><at>2026-02-01T09:30:00Z</at>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<id>host-0123456789abcdef</id>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<at>2026-02-01T09:30:00Z</at>"));
}

TEST_F(ScribeTest, MomentsAreMarked)
{
    take(post("a=b"), xml("<at>2026-02-01T09:30:00Z</at><ms>1767225600000</ms><n>12345</n>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<at>{time = 2026-02-01T09:30:00Z}</at>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<ms>{time = 1767225600000}</ms>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<n>12345</n>"));
    take(post("since=2026-02-01T09%3A30%3A00Z&ms=1767225600000"), xml(""));
    EXPECT_THAT(scribe.text(), HasSubstr("&ms={id 1}"));
    EXPECT_THAT(scribe.text(), HasSubstr("<ms>{id 1 = 1767225600000}</ms>"));
}

TEST_F(ScribeTest, AnIdentifierThatTurnsOutToBeASecretGoes)
{
    take(post("a=b"), xml("<session>0123456789abcdef0123</session>"));
    EXPECT_THAT(scribe.text(), HasSubstr("{id 1 = 0123456789abcdef0123}"));
    take(post("cred=0123456789abcdef0123"), xml("<s>0123456789abcdef0123</s>"));
    EXPECT_THAT(scribe.text(), Not(HasSubstr("0123456789abcdef0123")));
    EXPECT_THAT(scribe.text(), HasSubstr("<session>{secret}</session>"));
}

TEST_F(ScribeTest, TheServersAddressIsNobodys)
{
    take(post("url=http%3A%2F%2Fkzn.example%3A8420%2Fa"),
         xml("<u>http://kzn.example:8420/a</u><u>http://kzn.example:84201/</u><u>http://kzn.example:8420.b</u>"));
    EXPECT_THAT(scribe.text(), HasSubstr("url={server}%2Fa"));
    EXPECT_THAT(scribe.text(), HasSubstr("<u>{server}/a</u>"));
    EXPECT_THAT(scribe.text(), HasSubstr("http://kzn.example:84201/"));
    EXPECT_THAT(scribe.text(), HasSubstr("http://kzn.example:8420.b"));
}

TEST_F(ScribeTest, BoundariesAreNeutral)
{
    take(post("--x7d1\r\nContent-Disposition: form-data; name=\"f\"; filename=\"a.png\"\r\n\r\n\xFF\r\n--x7d1--",
              "multipart/form-data; boundary=\"x7d1\""),
         xml(""));
    EXPECT_THAT(scribe.text(), HasSubstr("Content-Type: multipart/form-data; boundary=\"{boundary}\""));
    EXPECT_THAT(scribe.text(), HasSubstr("\\r\\n--{boundary}--"));
    EXPECT_THAT(scribe.text(), Not(HasSubstr("x7d1")));
}

// What is found out later is looked for in what is written, but that is not written anew for it: a picture among the
// exchanges would make a host wait at each of the later ones.
TEST_F(ScribeTest, ALargeExchangeIsWrittenOnce)
{
    std::string picture;
    for (std::size_t i = 0; i < 500'000; ++i) picture += static_cast<char>((i * i + i / 7) % 251);
    const double once = test::workOf([&] { take(post(picture, "image/png"), xml("")); });
    int things = 0;
    const double later = test::workOf([&] {
        for (const int end = things + 20; things < end; ++things) {
            const std::string name = "thing-" + std::to_string(things);
            take(post("cmd=list"), xml("<id>" + name + "</id>"));
            take(post("cmd=get&id=" + name), xml(""));
        }
    });
    EXPECT_LT(later, once);
    EXPECT_THAT(scribe.text(), HasSubstr("&id={id " + std::to_string(things) + "}\n"));
}

TEST_F(ScribeTest, WhatNobodyCanReadIsLeftOut)
{
    EXPECT_FALSE(scribe.take(post("a=b"), {200, kXml, "\x1F\x8B", {{"Content-Encoding", "gzip"}}}));
    EXPECT_FALSE(scribe.take(post("a=b"), {200, kXml, std::string("<\0a\0", 4)}));
    take(post("a=b"), {200, kXml, "<a/>", {{"Content-Encoding", "identity"}}});
    EXPECT_EQ(scribe.size(), 1U);
}

TEST(TapeOrigin, ReadsUrls)
{
    EXPECT_EQ(originOf("http://127.0.0.1:8420/kznconnect/op.do?a").text(), "http://127.0.0.1:8420");
    EXPECT_EQ(originOf("https://kzn.example").port, "443");
    EXPECT_EQ(originOf("https://kzn.example:443/").text(), "https://kzn.example");
    EXPECT_EQ(originOf("http://[::1]:80#x").authority(), "[::1]");
    EXPECT_EQ(originOf("http://[::1]:81").host, "::1");
    for (const char* const url : {"", "kzn.example", "ftp://a", "http://", "http://:80", "http://a:0", "http://a:x",
                                  "http://a:65536", "http://[::1", "http://a b", "http://u@a", "http://[::1]x"}) {
        EXPECT_THROW(originOf(url), std::invalid_argument) << url;
    }
}

TEST(TapeOrigin, PutsOneAddressInThePlaceOfAnother)
{
    const Origin from = originOf("https://kzn.example");
    const Origin to = originOf("http://127.0.0.1:8420");
    EXPECT_EQ(withOrigin("a https://kzn.example/x b", from, to), "a http://127.0.0.1:8420/x b");
    EXPECT_EQ(withOrigin("https://kzn.example:443/x", from, to), "http://127.0.0.1:8420/x");
    EXPECT_EQ(withOrigin("u=https%3A%2F%2Fkzn.example%2Fx", from, to), "u=http%3A%2F%2F127.0.0.1%3A8420%2Fx");
    for (const char* const other : {"https://kzn.example.org/", "https://kzn.example:8443/", "http://kzn.example/",
                                    "https://kzn.examples", "https%3A%2F%2Fkzn.example%3A8443"}) {
        EXPECT_EQ(withOrigin(other, from, to), other);
    }
    EXPECT_EQ(withOrigin("See https://kzn.example.", from, to), "See http://127.0.0.1:8420.");
}

}  // namespace

}  // namespace service::tape
