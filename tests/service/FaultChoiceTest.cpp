// Which calls a fault strikes, and what is known of it.
#include <algorithm>
#include <csignal>

#include "tests/service/FaultedService.h"

namespace service::test {

namespace {

using nlohmann::json;
using testing::HasSubstr;

using FaultChoice = FaultedService;

TEST_F(FaultChoice, StrikeTheCallThatIsMeant)
{
    set(R"({"fault": "failure", "operation": "fly", "call": 3, "exceptionID": "KZN:Third"})");
    expectWell("cmd=walk");
    for (const char* const exception :
         {"KZN:UnknownCommand", "KZN:UnknownCommand", "KZN:Third", "KZN:UnknownCommand"}) {
        EXPECT_FAILURE(form(port_, "cmd=fly"), exception);
        EXPECT_FAILURE(form(port_, "cmd=walk"), "KZN:UnknownCommand");
    }
    EXPECT_EQ(counts().at("seen"), 4);
    EXPECT_EQ(counts().at("struck"), 1);
}

TEST_F(FaultChoice, StrikeAsOftenAsTheyMay)
{
    set(R"({"fault": "failure", "times": 2, "exceptionID": "KZN:Twice"})");
    for (const char* const exception : {"KZN:Twice", "KZN:Twice", "KZN:UnknownCommand"}) {
        EXPECT_FAILURE(form(port_, "cmd=fly"), exception);
    }
    EXPECT_EQ(counts().at("struck"), 2);
}

TEST_F(FaultChoice, ChanceIsTheSameWithTheSameSeed)
{
    const auto struckCalls = [this](int seed) {
        done("DELETE", "faults");
        set(R"({"fault": "failure", "probability": 0.3, "exceptionID": "KZN:Chance", "seed": )" + std::to_string(seed) +
            "}");
        std::string struck;
        Talk talk(port_);
        for (int i = 0; i < 200; ++i) {
            const std::string reply = talk.post("/kznconnect/op.do", "cmd=fly").body;
            struck += textAt(reply, kException) == "KZN:Chance" ? 'x' : '.';
        }
        EXPECT_EQ(counts().at("struck"), std::count(struck.begin(), struck.end(), 'x'));
        return struck;
    };
    const std::string first = struckCalls(1);
    EXPECT_EQ(struckCalls(1), first);
    EXPECT_NE(struckCalls(2), first);
    const auto share = std::count(first.begin(), first.end(), 'x');
    EXPECT_GT(share, 30);
    EXPECT_LT(share, 90);
}

TEST_F(FaultChoice, OnlyTheFirstThatStrikesDoes)
{
    set(R"([{"fault": "failure", "exceptionID": "KZN:First", "call": 2},
            {"fault": "failure", "exceptionID": "KZN:Second"}])");
    for (const char* const exception : {"KZN:Second", "KZN:First", "KZN:Second"}) {
        EXPECT_FAILURE(form(port_, "cmd=fly"), exception);
    }
    EXPECT_EQ(counts(1).at("seen"), 3);
    EXPECT_EQ(counts(1).at("struck"), 2);
    const auto id = std::to_string(counts(0).at("id").get<int>());
    done("DELETE", "faults/" + id);
    refused(404, "DELETE", "faults/" + id);
    refused(404, "DELETE", "faults/x");
    EXPECT_EQ(counts(0).at("exceptionID"), "KZN:Second");
}

TEST_F(FaultChoice, NeitherControlNorReadyIsStruck)
{
    set(R"({"fault": "refuse"})");
    EXPECT_EQ(Talk(port_).get("/ready").status, 200U);
    EXPECT_EQ(counts().at("seen"), 0);
    EXPECT_EQ(Talk(port_).get("/kzndms/icon/none").status, 0U);
    EXPECT_EQ(counts().at("struck"), 1);
    done("DELETE", "faults");
    set(R"({"fault": "charset", "charset": "koi8-r", "operation": "icon"})");
    const HttpReply denied = Talk(port_).get("/kzndms/icon/none");
    EXPECT_EQ(denied.status, 403U);
    EXPECT_EQ(denied.contentType, "text/xml; charset=koi8-r");
    done("POST", "reset");
    EXPECT_EQ(done("GET", "faults").at("faults"), json::array());
    expectWell();
}

TEST_F(FaultChoice, ThatAreNoneAreRefused)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"{}", "\"fault\" is missing"},
        {R"({"fault": "fly"})", "\"fault\" is one of refuse, close"},
        {R"({"fault": "refuse", "byte": 1})", "\"byte\""},
        {R"({"fault": "reset", "byte": -1})", "\"byte\""},
        {R"({"fault": "redirect"})", "\"url\" is missing"},
        {R"({"fault": "redirect", "url": "http://127.0.0.1/\r\nX: y"})", "\"url\""},
        {R"({"fault": "redirect", "url": "/", "status": 304})", "\"status\""},
        {R"({"fault": "charset", "charset": "a b"})", "\"charset\""},
        {R"({"fault": "length"})", "\"by\" is missing"},
        {R"({"fault": "delay", "ms": 1.5})", "\"ms\""},
        {R"({"fault": "refuse", "probability": 1.5})", "\"probability\""},
        {R"({"fault": "refuse", "call": 0})", "\"call\""},
        {R"([{"fault": "refuse"}, {"fault": 1}])", "\"fault\" has to be a text"},
        {"7", "object"},
    };
    for (const auto& [fault, why] : cases) EXPECT_THAT(refused(400, "POST", "faults", fault), HasSubstr(why));
    EXPECT_EQ(done("GET", "faults").at("faults"), json::array());
    json state = done("GET", "state");
    state["tables"]["fault"] = json::array({{{"fault_id", 1}, {"description", "{"}, {"seen", 0}, {"struck", 0}}});
    refused(400, "PUT", "state", state.dump());
    expectWell();
}

TEST(FaultsInTheJournal, StandBehindTheirCall)
{
    ServiceProcess process(ServiceProcess::on(":memory:", {"--control-token", kToken, "--verbose"}));
    EXPECT_EQ(control(process.port(), "POST", "faults", R"({"fault": "close"})").status, 200U);
    Wire wire(process.port());
    wire.send("cmd=fly");
    EXPECT_EQ(wire.hear().ended, Ended::closed);
    EXPECT_THAT(process.errorLine(), testing::StartsWith("inspector http://127.0.0.1:"));
    EXPECT_THAT(process.errorLine(), HasSubstr("POST /control/faults control "));
    EXPECT_THAT(process.errorLine(), IsLike(".* fly .* FAILURE KZN:UnknownCommand .* ms fault close\n"));
}

TEST(FaultsOfAFile, AreThereAndCountedWhenItIsOpenedAgain)
{
    const TemporaryFolder folder;
    const std::vector<std::string> start = ServiceProcess::on(folder.file("data"), {"--control-token", kToken});
    {
        ServiceProcess process(start);
        const std::string fault = R"({"fault": "failure", "exceptionID": "KZN:Third", "call": 3})";
        EXPECT_EQ(control(process.port(), "POST", "faults", fault).status, 200U);
        for (int i = 0; i < 2; ++i) EXPECT_FAILURE(form(process.port(), "cmd=fly"), "KZN:UnknownCommand");
        process.kill();
    }
    ServiceProcess process(start);
    EXPECT_FAILURE(form(process.port(), "cmd=fly"), "KZN:Third");
    EXPECT_EQ(control(process.port(), "GET", "faults").body.at("faults").at(0).at("seen"), 3);
}

}  // namespace

}  // namespace service::test
