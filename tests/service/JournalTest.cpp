// The journal of what was asked and answered: kept, listed, searched, masked and followed.
#include <fstream>
#include <iterator>

#include "tests/service/ControlledService.h"

namespace service::test {

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string textOfFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Somebody who has the stream of exchanges open.
class Watcher {
public:
    explicit Watcher(unsigned short port) : talk_(port)
    {
        talk_.sendRaw("GET /control/journal/stream HTTP/1.1\r\nHost: " + talk_.host() + "\r\nAuthorization: Bearer " +
                      kToken + "\r\n\r\n");
    }

    // All that was heard since the last time, up to this text.
    std::string until(const std::string& text)
    {
        std::size_t at = heard_.find(text);
        for (std::string more = " "; at == std::string::npos; at = heard_.find(text)) {
            more = talk_.readMore();
            if (more.empty()) return "ended: " + heard_;
            heard_ += more;
        }
        std::string piece = heard_.substr(0, at + text.size());
        heard_.erase(0, at + text.size());
        return piece;
    }

private:
    Talk talk_;
    std::string heard_;
};

class Journal : public ControlledService {
protected:
    json list(const std::string& query = {}) const { return done("GET", "journal" + query); }

    std::vector<std::string> operations(const std::string& query = {}) const
    {
        std::vector<std::string> names;
        const json told = list(query);
        for (const json& exchange : told.at("exchanges")) names.push_back(exchange.at("operation"));
        return names;
    }

    // All that the journal shows of everything.
    std::string everything() const
    {
        const json told = list();
        std::string text = told.dump();
        for (const json& exchange : told.at("exchanges")) {
            text += done("GET", "journal/" + std::to_string(exchange.at("number").get<int>())).dump();
        }
        return text;
    }
};

TEST_F(Journal, ShowsEachExchangeWithItsUserOperationAndResult)
{
    User anna(port_, "anna");
    anna.makeSpace("Plans <&> \"more\"");
    anna.call("cmd=get&type=workspace&id=none&select=tabs");
    const json exchanges = list().at("exchanges");
    ASSERT_EQ(exchanges.size(), 3U);
    EXPECT_EQ(exchanges[0].at("operation"), "login");
    EXPECT_EQ(exchanges[1].at("operation"), "createSpace");
    EXPECT_EQ(exchanges[2].at("operation"), "getTabs");
    for (const json& each : exchanges) EXPECT_EQ(each.at("user"), "anna");
    EXPECT_EQ(exchanges[1].at("result"), "SUCCESS");
    EXPECT_EQ(exchanges[2].at("result"), "FAILURE");
    EXPECT_EQ(exchanges[2].at("exceptionID"), "KZN:NoSuchObject");
    EXPECT_NE(exchanges[2].at("reason"), "");
    EXPECT_GT(exchanges[1].at("microseconds"), 0);
    EXPECT_GT(exchanges[1].at("bytesIn"), 100);
}

TEST_F(Journal, ShowsOneExchangeDecodedAndIndented)
{
    User anna(port_, "anna");
    anna.makeSpace("Plans");
    const json exchange = done("GET", "journal/2");
    EXPECT_EQ(exchange.at("path"), "/kznconnect/op.do");
    EXPECT_EQ(exchange.at("fields")[0], json({{"name", "cmd"}, {"value", "execute"}}));
    EXPECT_THAT(exchange.at("fields")[2].at("value").get<std::string>(),
                HasSubstr("\n  <workspaceName>Plans</workspaceName>\n"));
    EXPECT_THAT(exchange.at("reply").get<std::string>(), HasSubstr("\n    <result>SUCCESS</result>\n"));
    refused(404, "GET", "journal/3");
    refused(404, "GET", "journal/x");
}

TEST_F(Journal, NoSecretComesOut)
{
    User anna(port_, "anna");
    anna.call("cmd=cloneSession");
    anna.execute("CreateRDQAVAccounts", "<accounts/>");
    anna.call("cmd=no-such-command&password=a-typed-secret");
    form(port_, "cmd=login&username=ben&token=ben-token-1&isp=&autocommit=true");
    form(port_, "cmd=login&username=ben&password=a-wrong-secret&isp=&autocommit=true");
    Talk(port_).get("/kznconnect/op.do?cmd=login&username=ben&password=ben-demo-1");
    Talk(port_).get("/kzndms/icon/none?cred=" + anna.cred());
    Talk(port_).post("/kznconnect/op.do", "name=\"password\"\r\n\r\na-lost-secret", "text/plain");
    Talk(port_).post("/kznconnect/upload.do",
                     "--b\r\nContent-Disposition: form-data; name=\"cred\"\r\n\r\n" + anna.cred() + "\r\n--b--\r\n",
                     "multipart/form-data; boundary=b");
    const std::string shown = everything();
    ASSERT_THAT(shown, HasSubstr("no-such-command"));
    ASSERT_THAT(shown, HasSubstr("bytes that are no form"));
    ASSERT_THAT(shown, HasSubstr("***"));
    EXPECT_THAT(shown, Not(HasSubstr(anna.cred())));
    for (const char* secret :
         {"anna-demo-1", "a-typed-secret", "ben-token-1", "a-wrong-secret", "ben-demo-1", "a-lost-secret"}) {
        EXPECT_THAT(shown, Not(HasSubstr(secret)));
    }
    // Nor is any of them kept.
    process_.signal(SIGTERM);
    process_.wait();
    const std::string file = textOfFile(folder_.file("data"));
    for (const char* secret : {"anna-demo-1", "a-typed-secret", "ben-token-1", "a-wrong-secret", "a-lost-secret"}) {
        EXPECT_EQ(file.find(secret), std::string::npos) << secret;
    }
}

TEST_F(Journal, FindsByTextOperationAndFailure)
{
    User anna(port_, "anna");
    anna.makeSpace("Winter 100% \"new\"");
    anna.makeSpace("Summer");
    anna.call("cmd=get&type=workspace&id=none&select=tabs");
    EXPECT_THAT(operations("?text=" + encoded("winter 100% \"NEW\"")), ElementsAre("createSpace"));
    EXPECT_THAT(operations("?text=" + encoded("winter 10_%")), ElementsAre());
    EXPECT_THAT(operations("?operation=CREATE*"), ElementsAre("createSpace", "createSpace"));
    EXPECT_THAT(operations("?operation=tab"), ElementsAre("getTabs"));
    EXPECT_THAT(operations("?failed=1"), ElementsAre("getTabs"));
    EXPECT_THAT(operations("?failed=1&text=Summer"), ElementsAre());
    refused(400, "GET", "journal?after=x");
    refused(400, "GET", "journal?limit=0");
    refused(400, "GET", "journal?failed=yes");
}

TEST_F(Journal, PagesFollowEachOther)
{
    User anna(port_, "anna");
    for (int i = 0; i < 4; ++i) anna.call("cmd=get&type=sessionInfo&select=sessionInfo");
    json page = list("?limit=2");
    EXPECT_EQ(page.at("exchanges").size(), 2U);
    EXPECT_EQ(page.at("more"), true);
    EXPECT_EQ(page.at("last"), 5);
    page = list("?limit=3&after=2");
    EXPECT_EQ(page.at("exchanges")[0].at("number"), 3);
    EXPECT_EQ(page.at("exchanges").size(), 3U);
    EXPECT_EQ(page.at("more"), false);
}

TEST_F(Journal, NumbersGoOnWhenItIsCleared)
{
    User anna(port_, "anna");
    EXPECT_EQ(done("DELETE", "journal").at("count"), 0);
    EXPECT_THAT(operations(), ElementsAre());
    anna.call("cmd=logout");
    EXPECT_EQ(list().at("exchanges")[0].at("number"), 2);
    EXPECT_EQ(list().at("exchanges")[0].at("user"), "anna");
}

TEST_F(Journal, AResetLeavesIt)
{
    User anna(port_, "anna");
    done("POST", "reset");
    EXPECT_THAT(operations(), ElementsAre("login"));
    EXPECT_FALSE(done("GET", "state").at("tables").contains("exchange"));
}

TEST_F(Journal, IsThereAgainAfterARestart)
{
    User anna(port_, "anna");
    process_.signal(SIGTERM);
    ASSERT_EQ(process_.wait(), 0);
    ServiceProcess again(ServiceProcess::on(folder_.file("data"), {"--control-token", kToken}));
    const json told = service::test::control(again.port(), "GET", "journal").body;
    EXPECT_EQ(told.at("exchanges")[0].at("operation"), "login");
    EXPECT_EQ(told.at("last"), 1);
}

TEST_F(Journal, WhoWatchesHearsOfEachAndHoldsNobodyUp)
{
    std::vector<std::unique_ptr<Watcher>> watching;
    for (int i = 0; i < 3; ++i) {
        watching.push_back(std::make_unique<Watcher>(port_));
        EXPECT_THAT(watching.back()->until("\"count\":0}\n\n"), HasSubstr("text/event-stream"));
    }
    User anna(port_, "anna");
    done("DELETE", "journal");
    watching[1].reset();
    anna.call("cmd=logout");
    for (Watcher* each : {watching[0].get(), watching[2].get()}) {
        const std::string heard = each->until("\"operation\":\"logout\"");
        EXPECT_THAT(heard, HasSubstr("id: 1\n"));
        EXPECT_THAT(heard, HasSubstr("\"operation\":\"login\""));
        EXPECT_THAT(heard, HasSubstr("event: cleared\n"));
        EXPECT_THAT(heard, HasSubstr("id: 2\n"));
    }
}

TEST_F(Journal, SoManyMayWatch)
{
    std::vector<std::unique_ptr<Watcher>> watching;
    for (int i = 0; i < 32; ++i) {
        watching.push_back(std::make_unique<Watcher>(port_));
        watching.back()->until("event: begin");
    }
    refused(503, "GET", "journal/stream");
    EXPECT_NE(signIn(port_, "anna"), "");
}

TEST_F(Journal, NeedsTheToken)
{
    for (const char* resource : {"journal", "journal/1", "journal/stream", "overview"}) {
        EXPECT_EQ(service::test::control(port_, "GET", resource, {}, "wrong").status, 401U) << resource;
    }
    EXPECT_EQ(service::test::control(port_, "DELETE", "journal", {}, "wrong").status, 401U);
}

TEST_F(Journal, AnOverviewShowsWhatThereIsAndNoCredential)
{
    User anna(port_, "anna");
    const json told = done("GET", "overview");
    EXPECT_EQ(told.at("users").size(), 4U);
    EXPECT_EQ(told.at("spaces").size(), 4U);
    EXPECT_EQ(told.at("spaces")[0].at("name"), "Autumn catalogue");
    EXPECT_FALSE(told.at("spaces")[0].at("tabs").empty());
    EXPECT_EQ(told.at("spaces")[0].at("members").size(), 3U);
    EXPECT_FALSE(told.at("invitations").empty());
    EXPECT_FALSE(told.at("libraries").empty());
    EXPECT_EQ(told.at("sessions")[0].at("user"), "anna");
    EXPECT_GT(told.at("sessions")[0].at("remaining"), 7'000'000);
    EXPECT_THAT(told.dump(), Not(HasSubstr(anna.cred())));
}

TEST_F(Journal, ReadsALogOfTheLibrary)
{
    const std::string log =
        "<2026-01-31 23:59:58, pid=7, tid=8> Debug:  cmd=login&username=anna&password=a-secret&isp=\n"
        "<2026-01-31 23:59:59, pid=7, tid=8> Debug:  <kznapi><response><result>FAILURE</result>"
        "<reason>no</reason></response></kznapi>\n";
    const HttpReply reply =
        Talk(port_).send("POST", "/control/log", log,
                         std::string("Authorization: Bearer ") + kToken + "\r\nContent-Type: text/plain\r\n");
    ASSERT_EQ(reply.status, 200U) << reply.body;
    const json call = json::parse(reply.body).at("exchanges").at(0);
    EXPECT_EQ(call.at("operation"), "login");
    EXPECT_EQ(call.at("result"), "FAILURE");
    EXPECT_EQ(call.at("reason"), "no");
    EXPECT_THAT(reply.body, Not(HasSubstr("a-secret")));
    refused(400, "POST", "log", "{}");
}

TEST_F(Journal, WhoAskedIsKnownAlsoWhereTheSessionEnds)
{
    User anna(port_, "anna");
    anna.call("cmd=logout");
    anna.call("cmd=logout");
    form(port_, "cmd=get&type=sessionInfo&select=sessionInfo");
    std::vector<std::string> users;
    const json told = list();
    for (const json& exchange : told.at("exchanges")) users.push_back(exchange.at("user"));
    EXPECT_THAT(users, ElementsAre("anna", "anna", "", ""));
}

TEST_F(Journal, ShowsAnUploadWithoutItsPicture)
{
    const std::string picture = "a picture \xFF of bytes";
    const std::string part = "--b\r\nContent-Disposition: form-data; name=\"";
    Talk(port_).post("/kznconnect/upload.do",
                     part + "cmd\"\r\n\r\nexecute\r\n" + part + "task\"\r\n\r\nManageSpaceIcon\r\n" + part +
                         "file\"; filename=\"a.png\"\r\n\r\n" + picture + "\r\n--b--\r\n",
                     "multipart/form-data; boundary=b");
    const json exchange = done("GET", "journal/1");
    EXPECT_EQ(exchange.at("fields")[0], json({{"name", "cmd"}, {"value", "execute"}}));
    EXPECT_EQ(exchange.at("fields")[2], json({{"name", "file"}, {"value", "a.png, 20 bytes"}}));
    EXPECT_EQ(exchange.at("operation"), "SetSpaceIcon");
    EXPECT_THAT(exchange.dump(), Not(HasSubstr("a picture")));
}

TEST_F(Journal, ShowsWhatWentWrongOnPurpose)
{
    done("POST", "faults", R"({"fault": "failure", "exceptionID": "KZN:Meant", "reason": "on purpose", "times": 1})");
    form(port_, "cmd=fly");
    form(port_, "cmd=fly");
    const json told = list();
    EXPECT_EQ(told.at("exchanges")[0].at("fault"), "failure");
    EXPECT_EQ(told.at("exchanges")[0].at("reason"), "on purpose");
    EXPECT_EQ(told.at("exchanges")[1].at("fault"), "");
}

TEST_F(Journal, ShowsWhatWasRefusedBeforeItWasRead)
{
    Talk(port_).send("POST", "/kznconnect/op.do", "cmd=fly", "Host: elsewhere.example\r\n");
    Talk(port_).send("PUT", "/kznconnect/op.do", "cmd=fly", {});
    const json told = list();
    EXPECT_EQ(told.at("exchanges")[0].at("status"), 403);
    EXPECT_EQ(told.at("exchanges")[0].at("exceptionID"), "KZN:AccessDenied");
    EXPECT_EQ(told.at("exchanges")[1].at("status"), 405);
    EXPECT_EQ(done("GET", "journal/2").at("method"), "PUT");
}

// A crash may take what was not yet written, and numbers go on behind what is there.
TEST_F(Journal, StandsAfterACrash)
{
    User anna(port_, "anna");
    EXPECT_EQ(list().at("last"), 1);
    const std::string id = anna.makeSpace("Answered");
    process_.kill();
    ServiceProcess again(ServiceProcess::on(folder_.file("data"), {"--control-token", kToken}));
    form(again.port(), "cmd=fly");
    const json told = service::test::control(again.port(), "GET", "journal").body;
    long long before = 0;
    for (const json& exchange : told.at("exchanges")) {
        EXPECT_EQ(exchange.at("number"), before + 1);
        before = exchange.at("number");
    }
    EXPECT_GE(before, 2);
    EXPECT_EQ(User(again.port(), "anna").spaceNamed("Answered"), id);
}

}  // namespace

}  // namespace service::test
