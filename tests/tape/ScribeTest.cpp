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
        EXPECT_EQ(scribe.take(request, response), "");
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

// Whatever a service calls its reply, and however its texts name a secret.
TEST_F(ScribeTest, NoSecretOfAReplyReachesTheTape)
{
    const std::vector<std::pair<std::string, std::string>> replies{
        {"text/plain", "<kznapi><cred>s3cret-1a</cred></kznapi>"},
        {"text/html; charset=utf-8", "<p>A<br><cred>s3cret-1b</cred>"},
        {"", "<cred>s3cret-1c</cred>"},
        {"image/png", "<cred>s3cret-1d</cred>"},
        {kXml, "<token>\n  <![CDATA[s3cret-2a]]>\n</token>"},
        {kXml, "<a><password><value>s3cret-3a</value><b/>s3cret-3b</password></a>"},
        {kXml, "<token>s3cret-4<!-- x -->a5b6s3cret-4b</token>"},
        {kXml, "<token a=\">\">s3cret-5a</token><token>s3cret-5b"},
        {kXml, "<a token=\"s3cret-6a\" x:pwd = 's3cret-6b'/><token value=\"s3cret-6c\"/>"},
        {kXml, "<u>http://h/x?cred=s3cret-7a&amp;a=1</u><u>ftp://me:s3cret-7b@h/</u><!-- token=s3cret-7c -->"},
        {kXml, "<u next=\"/x?u=%2Fy%3Ftoken%3Ds3cret-8a%26b\"/><x>%3Ctoken%3Es3cret-8b%3C/token%3E</x>"},
        {kXml, "<x>&lt;token&gt;s3cret-9a&lt;/token&gt; &#x22;pwd&quot;: &quot;s3cret-9b&quot;</x>"},
        {kXml, "<x><![CDATA[<token>s3cret-9c</token>]]></x><f name=\"token\" type=\"x\">s3cret-9d</f>"},
        {"text/html", "<input type=\"hidden\" name=\"csrf_token\" value=\"s3cret-9e\">"},
        {"application/json",
         R"({"a<b":1,"token" : "s3cret<10a","Credential":{"id":"s3cret-10b","of":["s3cret-10c"]}})"},
        {"application/json",
         R"([{"x":"{\"token\":\"s3cret-11a\"}","y":"\u003ctoken\u003es3cret-11b\u003c/token\u003e"}])"},
        {"text/plain", "clientSecret: \"s3cret-12a\", session[token]=s3cret-12b"},
    };
    for (const auto& [type, body] : replies) {
        take(post("x=1"), {200, type, body});
        EXPECT_THAT(scribe.text(), Not(HasSubstr("s3cret"))) << type << ' ' << body;
    }
    EXPECT_THAT(scribe.text(), HasSubstr("<cred>{cred 1}</cred>"));
    EXPECT_THAT(scribe.text(), HasSubstr("<value>{secret "));
    EXPECT_THAT(scribe.text(), HasSubstr("<b/>{secret "));
    EXPECT_THAT(scribe.text(), HasSubstr("\"of\":[\"{secret "));
}

TEST_F(ScribeTest, NoSecretOfAnAddressReachesTheTape)
{
    const std::string address =
        "/x;token=s3cret-1?cred=s3cret-2&token=s3cret'3&next=%2Fa%3Fpwd%3Ds3cret-4#access_token=s3cret-5";
    take({"GET", "/y;token=s3cret-6?a=100%&b=%3Ctoken%3Es3cret-7", "", ""},
         {302, "text/xml", "", {{"Location", address}}});
    take(post(R"({"token":"s3cret-8"})", "application/json"), xml(""));
    take(post("a=100%&xml=%3Ca%20token%3D%22s3cret-9%22%2F%3E"), xml(""));
    EXPECT_THAT(scribe.text(), Not(HasSubstr("s3cret")));
    EXPECT_THAT(scribe.text(), HasSubstr("?cred={cred 1}&token={secret "));
}

// What only looks as if it were one stays.
TEST_F(ScribeTest, WhatIsNoSecretStays)
{
    const std::string said = R"({"token":null,"password":true,"a":"changePassword"})";
    take(post("a=b"), {200, "application/json", said});
    take(post("a=b"), xml("<m>Wrong password: try again</m><tokens>3</tokens><token/><token></token><a>x &lt; y</a>"));
    take(post("a=b"), {200, "image/png", "\x89PNG token=visible"});
    EXPECT_THAT(scribe.text(), Not(HasSubstr("{secret")));
}

// A short one is hidden where it stands alone, and leaves the words alone that happen to hold it.
TEST_F(ScribeTest, ShortSecretsDoNotSpoilWords)
{
    take(post("cmd=login&username=anna&password=an"), xml("<a>an</a><b>anna and an ant</b>"));
    EXPECT_THAT(scribe.text(), HasSubstr("&password={secret}\n"));
    EXPECT_THAT(scribe.text(), HasSubstr("<b>anna and {secret} ant</b>"));
    take(post("a=b"), {200, "application/json", R"(["\u003ctoken\u003exyz\u003c/token\u003e","\nxyz"])"});
    EXPECT_THAT(scribe.text(), Not(HasSubstr("xyz")));
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

// A player, and another service, can only give a moment back where all of it is one.
TEST_F(ScribeTest, AWordThatBeginsLikeAMomentIsNone)
{
    const std::vector<std::string> words{"2026-02-01T09:30:00Zx",  "2026-02-01T09:30:00_1",     "2026-02-01T09:30:00.Z",
                                         "2026-02-01T09:30:00-1x", "2026-02-01T09:30:00Z:part", "2026-02-01T09:30:0"};
    for (const std::string& word : words) take(post("a=b"), xml("<a>" + word + "</a>"));
    EXPECT_THAT(scribe.text(), Not(HasSubstr("{time")));
    for (const char* const end : {"", "Z", ".5", ".123456Z", "-05:00", ".1-0500", "-05", "+02:00"}) {
        take(post("a=b"), xml(std::string("<a>2026-02-01T09:30:00") + end + "</a>"));
        EXPECT_THAT(scribe.text(),
                    HasSubstr(std::string("<a>{time = 2026-02-01T09:30:00") + (*end == '+' ? "" : end) + "}"));
    }
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
    EXPECT_NE(scribe.take(post("a=b"), {200, kXml, "\x1F\x8B", {{"Content-Encoding", "gzip"}}}), "");
    EXPECT_NE(scribe.take(post("a=b"), {200, kXml, std::string("<\0a\0", 4)}), "");
    take(post("a=b"), {200, kXml, "<a/>", {{"Content-Encoding", "identity"}}});
    EXPECT_EQ(scribe.size(), 1U);
}

// A tape with it could not be read again, with all that stands on it.
TEST_F(ScribeTest, StatusesThatNoTapeHoldsAreLeftOut)
{
    for (const unsigned status : {0U, 101U, 199U, 600U, 999U}) {
        EXPECT_THAT(scribe.take(post("a=b"), {status, kXml, "<a/>"}), HasSubstr(std::to_string(status)));
    }
    for (const unsigned status : {200U, 599U}) take(post("a=b"), {status, kXml, "<a/>"});
    EXPECT_EQ(scribe.size(), 2U);
}

// Whatever somebody sends, the time that it takes goes with its length.
TEST(TapeSecrets, AreLookedForInProportionToTheText)
{
    for (const std::string piece : {"<token>", "<a \"<b '", "token=", "&lt;token&gt;", "%3Ctoken%3E", "\"pwd\":[",
                                    "<!--", "<![CDATA[", "://a:", "</token>", "\\\"", "&", "<f name=\"token\">"}) {
        const auto many = [&piece](std::size_t count) {
            std::string text = "<";
            while (count-- > 0) text += piece;
            return text;
        };
        const auto work = [&](std::size_t count) { return test::workOf([text = many(count)] { secretsIn(text); }); };
        EXPECT_LT(work(50'000), test::kTenfold * work(5'000)) << piece;
    }
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
