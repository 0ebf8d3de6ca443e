#include <array>
#include <random>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Hostile : public DemoService {
protected:
    ~Hostile() override
    {
        // Whatever was sent, the service serves the next caller.
        EXPECT_NE(signIn(port_, "anna"), "");
    }

    std::string head(const std::string& more) const
    {
        return "POST /kznconnect/op.do HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port_) + "\r\n" + more + "\r\n";
    }
};

TEST_F(Hostile, FormsAreRefusedWithAReason)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "KZN:BadRequest"},
        {"&&&&", "KZN:BadRequest"},
        {"cmd", "KZN:BadRequest"},
        {"cmd=", "KZN:BadRequest"},
        {"username=anna", "KZN:BadRequest"},
        {"cmd=%", "KZN:BadRequest"},
        {"cmd=%4", "KZN:BadRequest"},
        {"cmd=%zz", "KZN:BadRequest"},
        {"%zz=a", "KZN:BadRequest"},
        {"cmd=%FF", "KZN:BadRequest"},
        {"cmd=%C0%80", "KZN:BadRequest"},
        {"cmd=%ED%A0%80", "KZN:BadRequest"},
        {"cmd=%00", "KZN:BadRequest"},
        {"cmd=get%07", "KZN:BadRequest"},
        {"cmd=%EF%BF%BE", "KZN:BadRequest"},
        {"cmd=get&cmd=login", "KZN:BadRequest"},
        {"cmd=fly", "KZN:UnknownCommand"},
        {"cmd=LOGIN", "KZN:UnknownCommand"},
        {std::string("cmd=\0", 5), "KZN:BadRequest"},
        {"\xFF\xFE\x00", "KZN:BadRequest"},
    };
    for (const auto& [body, exception] : cases) {
        SCOPED_TRACE(body);
        EXPECT_FAILURE(form(port_, body), exception);
    }
}

TEST_F(Hostile, ReasonsSayWhatIsWrongWithAText)
{
    const auto reasonOf = [&](const std::string& body) { return textAt(form(port_, body), kReason); };
    EXPECT_EQ(reasonOf("cmd=get%1B"), "the form field \"cmd\" holds the character U+001B, which XML cannot carry");
    EXPECT_EQ(reasonOf("cmd=get\x01%1B"), "the form field \"cmd\" holds the character U+0001, which XML cannot carry");
    EXPECT_EQ(reasonOf("cmd=%EF%BF%BE"), "the form field \"cmd\" holds the character U+FFFE, which XML cannot carry");
    EXPECT_EQ(reasonOf("cmd=get%FF%1B"), "the form field \"cmd\" holds bytes that are not UTF-8");
    EXPECT_EQ(reasonOf("cmd=%ED%A0%80"), "the form field \"cmd\" holds bytes that are not UTF-8");
    const HttpReply upload = Talk(port_).post(
        "/kznconnect/upload.do", "--b\r\nContent-Disposition: form-data; name=\"cmd\"\r\n\r\n\x1B\r\n--b--",
        "multipart/form-data; boundary=b");
    EXPECT_EQ(textAt(upload.body, kReason),
              "the upload cannot be read: the field \"cmd\" holds the character U+001B, which XML cannot carry");
}

TEST_F(Hostile, FormsWithTooManyFieldsAreRefused)
{
    std::string many = "cmd=login";
    for (int i = 0; i < 1000; ++i) many += "&f" + std::to_string(i) + "=";
    EXPECT_FAILURE(form(port_, many), "KZN:BadRequest");
}

TEST_F(Hostile, ReasonsNameWhatWasUnknown)
{
    EXPECT_THAT(textAt(form(port_, "cmd=fly%3Ca%3E%26"), kReason), HasSubstr("\"fly<a>&\""));
    EXPECT_THAT(textAt(User(port_, "anna").execute("Dance", "<a/>"), kReason), HasSubstr("\"Dance\""));
    EXPECT_FAILURE(User(port_, "anna").execute("Dance", "<a/>"), "KZN:UnknownTask");
}

constexpr const char* kNoXml[] = {
    "x",
    "<",
    "<a",
    "<a>",
    "</a>",
    "<a></b>",
    "<a/><b/>",
    "text<a/>",
    "<a/>text",
    "<a>&</a>",
    "<a>&unknown;</a>",
    "<a>&#1;</a>",
    "<a>&#xFFFE;</a>",
    "<a>&#99999999999;</a>",
    "<a>]]></a>",
    "<a b=\"1\" b=\"2\"/>",
    "<a b=1/>",
    "<a b=\"<\"/>",
    "<a b=\"&\"/>",
    "<1/>",
    "<a><![CDATA[</a>",
    "<a><!--</a>",
    "<!DOCTYPE a><a/>",
    "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
    "<?xml version=\"1.0\"?>",
    "<a b=\"c/>",
};

TEST_F(Hostile, XmlThatIsNoXmlIsRefused)
{
    User anna(port_, "anna");
    for (const char* const xml : kNoXml) {
        SCOPED_TRACE(xml);
        EXPECT_FAILURE(anna.execute("RunScript", xml), "KZN:BadXml");
    }
    EXPECT_FAILURE(anna.call("cmd=execute&task=RunScript"), "KZN:BadRequest");
    EXPECT_FAILURE(anna.call("cmd=execute&task=RunScript&xml="), "KZN:BadRequest");
    EXPECT_FAILURE(anna.call("cmd=execute&task=RunScript&xml=<script><a"), "KZN:BadXml");
    std::string deep;
    for (int i = 0; i < 100'000; ++i) deep += "<a>";
    EXPECT_FAILURE(anna.execute("RunScript", deep), "KZN:LimitExceeded");
}

// A name that XML does not have would make everything that shows it unreadable, for good where it is kept.
TEST_F(Hostile, NamesThatXmlDoesNotHaveNeitherStayNorComeBack)
{
    User anna(port_, "anna");
    const std::string autumn = anna.spaceNamed("Autumn catalogue");
    const std::string thing = "<thing><thingName>n</thingName><ext><KZN><meetingRecording><workspaceID>" + autumn +
                              "</workspaceID><x\xC3\x97/></meetingRecording></KZN></ext></thing>";
    EXPECT_FAILURE(anna.call("cmd=create&type=thng&xml=" + encoded(thing)), "KZN:BadXml");
    EXPECT_FAILURE(anna.call("cmd=create&type=thng&xml=" + thing), "KZN:BadXml");
    EXPECT_FAILURE(anna.execute("ProbeAccess", "<tests><x\xC3\x97/></tests>"), "KZN:BadXml");
    EXPECT_SUCCESS(User(port_, "ben").script("<step><cmd>list</cmd><type>thng</type></step>"));
}

TEST_F(Hostile, AnythingElseIsNotFound)
{
    for (const std::string target : {"/kznconnect/op.dox", "/kznconnect", "/kznconnect/op.do/", "//kznconnect/op.do"}) {
        const HttpReply reply = Talk(port_).post(target, "cmd=login");
        EXPECT_EQ(reply.status, 404U) << target;
        EXPECT_FAILURE(reply.body, "KZN:UnknownEndpoint");
    }
    EXPECT_EQ(Talk(port_).get("/nothing?%zz").status, 404U);
}

TEST_F(Hostile, AGetCarriesItsFormBehindTheQuestionMark)
{
    const HttpReply reply = Talk(port_).get("/kznconnect/op.do?cmd=login&username=anna&password=anna-demo-1");
    EXPECT_EQ(reply.status, 200U);
    EXPECT_EQ(reply.contentType, "text/xml; charset=utf-8");
    EXPECT_SUCCESS(reply.body);
    EXPECT_FAILURE(Talk(port_).get("/kznconnect/op.do").body, "KZN:BadRequest");
}

// Everything before the empty line, without the line that says how the connection goes on.
std::string headOf(unsigned short port, const std::string& method, const std::string& target)
{
    Talk talk(port);
    talk.sendRaw(method + " " + target + " HTTP/1.1\r\nHost: " + talk.host() + "\r\nConnection: close\r\n\r\n");
    const std::string reply = talk.readToEnd();
    const std::size_t end = reply.find("\r\n\r\n");
    EXPECT_NE(end, std::string::npos);
    EXPECT_EQ(end + 4 == reply.size(), method == "HEAD") << reply;
    return reply.substr(0, end);
}

TEST_F(Hostile, AHeadIsAGetWithoutItsBody)
{
    User anna(port_, "anna");
    const std::string icon = textAt(uploadIcon(port_, anna.cred(), anna.makeSpace("n"), "GIF89a").body, "//url");
    for (const std::string& target : {std::string("/kznconnect/op.do?cmd=fly"), std::string("/nothing"),
                                      icon.substr(icon.find("/kzndms")) + "?cred=" + anna.cred()}) {
        const std::string head = headOf(port_, "HEAD", target);
        EXPECT_EQ(head, headOf(port_, "GET", target));
        EXPECT_THAT(head, HasSubstr("Content-Length: "));
    }
    // The connection goes on behind it.
    Talk talk(port_);
    const std::string target = " /nothing HTTP/1.1\r\nHost: " + talk.host() + "\r\n";
    talk.sendRaw("HEAD" + target + "\r\nGET" + target + "Connection: close\r\n\r\n");
    const std::string replies = talk.readToEnd();
    EXPECT_THAT(replies.substr(replies.find("\r\n\r\n")), StartsWith("\r\n\r\nHTTP/1.1 404"));
}

TEST_F(Hostile, AMethodThatIsNotAnsweredIsToldWhichAre)
{
    for (const std::string method : {"PUT", "DELETE", "OPTIONS", "TRACE", "PATCH"}) {
        const std::string head = headOf(port_, method, "/kznconnect/op.do");
        EXPECT_THAT(head, StartsWith("HTTP/1.1 405"));
        EXPECT_THAT(head, HasSubstr("\r\nAllow: GET, HEAD, POST\r\n"));
    }
    for (const auto& [method, path, allowed] :
         {std::array{"GET", "/kznconnect/upload.do", "POST"}, std::array{"POST", "/ready", "GET, HEAD"},
          std::array{"DELETE", "/ready", "GET, HEAD"}, std::array{"POST", "/", "GET, HEAD"},
          std::array{"POST", "/kzndms/icon/a", "GET, HEAD"}}) {
        const std::string head = headOf(port_, method, path);
        EXPECT_THAT(head, StartsWith("HTTP/1.1 405")) << method << ' ' << path;
        EXPECT_THAT(head, HasSubstr(std::string("\r\nAllow: ") + allowed + "\r\n")) << path;
    }
}

TEST_F(Hostile, AConnectionTooManyIsToldSo)
{
    std::vector<std::unique_ptr<Talk>> open;
    for (int i = 0; i < 512; ++i) open.push_back(std::make_unique<Talk>(port_));
    EXPECT_EQ(open.back()->get("/nothing").status, 404U);
    for (int i = 0; i < 3; ++i) {
        const std::string reply = Talk(port_).readToEnd();
        EXPECT_THAT(reply, StartsWith("HTTP/1.1 503"));
        EXPECT_THAT(reply, HasSubstr("\r\nConnection: close\r\n"));
        const std::string body = reply.substr(reply.find("\r\n\r\n") + 4);
        EXPECT_THAT(reply, HasSubstr("\r\nContent-Length: " + std::to_string(body.size()) + "\r\n"));
        EXPECT_FAILURE(body, "KZN:LimitExceeded");
    }
    // Who has sent a request already is told as well.
    for (int i = 0; i < 20; ++i) EXPECT_EQ(Talk(port_).get("/nothing").status, 503U);
    open.pop_back();
    // The place is free as soon as the service has seen the end of the connection.
    unsigned status = 0;
    for (int i = 0; i < 100 && status != 404U; ++i) status = Talk(port_).get("/nothing").status;
    EXPECT_EQ(status, 404U);
}

TEST_F(Hostile, BytesThatAreNoRequestEndTheirConnectionOnly)
{
    const std::vector<std::string> cases{
        "\r\n\r\n\r\n\r\n",
        "hello\r\n\r\n",
        std::string(100, '\0'),
        "\x16\x03\x01\x02\x00\x01\x00\x01\xFC\x03\x03",
        "GET / HTTP/9.9\r\n\r\n",
        "POST /kznconnect/op.do HTTP/1.1\r\nContent-Length: -1\r\n\r\n",
        head("Content-Length: 5\r\nContent-Length: 6\r\n"),
        head("Content-Length: 99999999999999999999999\r\n"),
        head("Transfer-Encoding: chunked\r\n") + "zz\r\n",
        head("No colon here\r\n"),
        head("Transfer-Encoding: chunked\r\n") + "FFFFFFFFFFFFFFFFFF\r\n",
        "DELETE /kznconnect/op.do HTTP/1.1\r\nContent-Length: 0\r\n\r\n",
    };
    for (const std::string& bytes : cases) {
        SCOPED_TRACE(bytes);
        Talk talk(port_);
        talk.sendRaw(bytes + std::string(100, 'x') + "\r\n\r\n");
        const std::string reply = talk.readToEnd();
        EXPECT_THAT(reply, StartsWith("HTTP/1.1 4"));
        EXPECT_THAT(reply, HasSubstr("<result>FAILURE</result>"));
    }
}

TEST_F(Hostile, RandomBytesHurtNobody)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int i = 0; i < 200; ++i) {
        std::string bytes = i % 2 == 0 ? std::string() : head("Content-Length: 64\r\n") + "cmd=";
        for (int k = 0; k < 200; ++k) bytes += static_cast<char>(static_cast<unsigned char>(byte(random)));
        Talk(port_).sendRaw(bytes);
    }
}

TEST_F(Hostile, MutatedRequestsAreAnswered)
{
    User anna(port_, "anna");
    const std::string script =
        "<script><step><cmd>list</cmd><type>workspace</type><where><eq><path>type</path>"
        "<value>0</value></eq></where><select>*</select></step></script>";
    std::mt19937 random(11);
    for (int i = 0; i < 500; ++i) {
        std::string mutated = script;
        for (int k = 0; k < 3; ++k) {
            mutated[random() % mutated.size()] = static_cast<char>(static_cast<unsigned char>(random() % 256));
        }
        const std::string reply = anna.execute("RunScript", mutated);
        EXPECT_THAT(textAt(reply, kResult), testing::AnyOf("SUCCESS", "FAILURE")) << reply;
    }
}

TEST_F(Hostile, HeadsAndBodiesBeyondTheLimitAreRefused)
{
    Talk largeHead(port_);
    largeHead.sendRaw(head("X: " + std::string(100'000, 'x') + "\r\n"));
    EXPECT_THAT(largeHead.readToEnd(), StartsWith("HTTP/1.1 431"));

    Talk declared(port_);
    declared.sendRaw(head("Content-Length: 17000000\r\n"));
    EXPECT_THAT(declared.readToEnd(), StartsWith("HTTP/1.1 413"));

    const HttpReply sent = Talk(port_).post("/kznconnect/op.do", std::string(17'000'000, 'x'));
    EXPECT_EQ(sent.status, 413U);
    EXPECT_FAILURE(sent.body, "KZN:LimitExceeded");
}

TEST_F(Hostile, ALargeFormWithinTheLimitIsRead)
{
    EXPECT_FAILURE(form(port_, "cmd=login&username=anna&password=x&isp=" + std::string(15'000'000, 'a')),
                   "KZN:LoginRefused");
    EXPECT_FAILURE(form(port_, "cmd=x" + std::string(15'000'000, '&')), "KZN:UnknownCommand");
}

TEST_F(Hostile, SlowAndHalfRequestsHoldNobodyUp)
{
    std::vector<std::unique_ptr<Talk>> waiting;
    for (int i = 0; i < 50; ++i) {
        waiting.push_back(std::make_unique<Talk>(port_));
        waiting.back()->sendRaw(i % 2 == 0 ? "POST /kzn" : head("Content-Length: 100\r\n") + "cmd=");
    }
    EXPECT_NE(signIn(port_, "ben"), "");
}

TEST_F(Hostile, OneConnectionServesManyRequests)
{
    Talk talk(port_);
    for (int i = 0; i < 50; ++i) {
        const HttpReply reply = talk.post("/kznconnect/op.do", "cmd=fly");
        EXPECT_TRUE(reply.keepAlive);
        EXPECT_FAILURE(reply.body, "KZN:UnknownCommand");
    }
    // Two in one packet are answered one after the other.
    talk.sendRaw(head("Content-Length: 7\r\n") + "cmd=fly" + head("Content-Length: 7\r\nConnection: close\r\n") +
                 "cmd=fly");
    const std::string replies = talk.readToEnd();
    EXPECT_NE(replies.find("HTTP/1.1 200"), replies.rfind("HTTP/1.1 200"));
}

TEST_F(Hostile, ABodyIsAskedForWhereTheClientWaits)
{
    Talk talk(port_);
    talk.sendRaw(head("Content-Length: 7\r\nExpect: 100-continue\r\nConnection: close\r\n"));
    talk.sendRaw("cmd=fly");
    const std::string reply = talk.readToEnd();
    EXPECT_THAT(reply, StartsWith("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200"));
}

}  // namespace

}  // namespace service::test
