// "pvwapi-service control": the program as the client of a running service.
#include <csignal>
#include <fstream>

#include "tests/service/ControlledService.h"
#include "tests/support/TestSystem.h"
#include "tests/support/Wine.h"

namespace service::test {

namespace {

using nlohmann::json;
using testing::HasSubstr;

struct Ended {
    int status = -1;
    std::string output;
    std::string errors;
};

Ended ran(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "control");
    ServiceProcess process(std::move(arguments));
    Ended ended;
    ended.output = process.output();
    ended.errors = process.errors();
    ended.status = process.wait();
    return ended;
}

class Remote : public ControlledService {
protected:
    Ended run(std::vector<std::string> words) const
    {
        words.insert(words.begin(), {"--url", url_, "--token", kToken});
        return ran(std::move(words));
    }

    // What has to go well; its output.
    std::string good(std::vector<std::string> words) const
    {
        const Ended ended = run(std::move(words));
        EXPECT_EQ(ended.status, 0) << ended.errors;
        EXPECT_EQ(ended.errors, "");
        return ended.output;
    }

    std::string url_ = "http://127.0.0.1:" + std::to_string(port_) + "/kznconnect/op.do";
};

TEST_F(Remote, ResetsAndSeeds)
{
    EXPECT_EQ(json::parse(good({"reset", "--empty"})).at("users"), 0);
    EXPECT_EQ(json::parse(good({"seed", "demo"})).at("users"), 4);
    const Ended twice = run({"seed", "demo"});
    EXPECT_EQ(twice.status, 1);
    EXPECT_EQ(twice.output, "");
    EXPECT_THAT(twice.errors, IsLike("pvwapi-service: [^\n]*users already[^\n]*\n"));
    EXPECT_NE(User(port_, "anna").makeSpace("New"), "");
    EXPECT_EQ(json::parse(good({"reset"})).at("workspaces"), 4);
}

TEST_F(Remote, ExportsToAFileAndImportsIt)
{
    const std::string file = folder_.file("state.json");
    std::ofstream(file) << "what was there before";
    EXPECT_EQ(good({"export", file}), "");
    const json state = json::parse(std::ifstream(file));
    EXPECT_EQ(state, json::parse(good({"export", "-"})));
    EXPECT_EQ(isKeptFromOthers(file), !kzn::test::runsUnderWine());
    good({"reset", "--empty"});
    EXPECT_EQ(json::parse(good({"import", file})).at("users"), 4);

    const std::string nowhere = folder_.file("none/state.json");
    EXPECT_EQ(run({"export", nowhere}).status, 2);
    EXPECT_EQ(run({"import", nowhere}).status, 2);
    EXPECT_THAT(namesIn(folder_.file("")), testing::Not(testing::Contains(HasSubstr(".new"))));
}

TEST_F(Remote, SetsTheClock)
{
    EXPECT_EQ(json::parse(good({"clock"})).at("offset"), 0);
    EXPECT_THAT(good({"clock", "set", "2030-02-01T09:30:00Z"}), HasSubstr("\"2030-02-01T09:3"));
    EXPECT_THAT(good({"clock", "advance", "86400"}), HasSubstr("\"2030-02-02T09:3"));
    EXPECT_THAT(good({"clock", "set", "1000"}), HasSubstr("\"1970-01-01T00:0"));
    EXPECT_EQ(json::parse(good({"clock", "machine"})).at("offset"), 0);
    EXPECT_EQ(run({"clock", "set", "tomorrow"}).status, 1);
}

TEST_F(Remote, TurnsSwitches)
{
    EXPECT_EQ(json::parse(good({"policy"})).at("org-nordwind").at("VoIPExt"), false);
    EXPECT_EQ(json::parse(good({"policy", "VoIPExt", "on"})).at("VoIPExt"), true);
    EXPECT_EQ(json::parse(good({"policy", "VoIPExt", "off", "--organisation", "org-nordwind"})).at("VoIPExt"), false);
    EXPECT_EQ(run({"policy", "VoIPExt", "on", "--organisation", "a b&c"}).status, 1);
    EXPECT_EQ(run({"policy", "VoIPExt"}).status, 2);
    EXPECT_EQ(run({"policy", "VoIPExt", "perhaps"}).status, 2);
}

TEST_F(Remote, SetsFaults)
{
    const std::string fault = R"({"fault": "failure", "exceptionID": "KZN:Set"})";
    const json one = json::parse(good({"faults", "add", fault})).at("faults").at(0);
    EXPECT_EQ(one.at("exceptionID"), "KZN:Set");
    EXPECT_FAILURE(form(port_, "cmd=fly"), "KZN:Set");
    EXPECT_EQ(json::parse(good({"faults"})).at("faults").at(0).at("struck"), 1);
    std::ofstream(folder_.file("faults.json")) << "[" << fault << ", " << fault << "]";
    EXPECT_EQ(json::parse(good({"faults", "add", folder_.file("faults.json")})).at("faults").size(), 3U);
    EXPECT_EQ(json::parse(good({"faults", "clear", std::to_string(one.at("id").get<int>())})).at("faults").size(), 2U);
    EXPECT_EQ(json::parse(good({"faults", "clear"})).at("faults").size(), 0U);
    EXPECT_EQ(run({"faults", "add", R"({"fault": "fly"})"}).status, 1);
    EXPECT_EQ(run({"faults", "add", folder_.file("none")}).status, 2);
    EXPECT_EQ(run({"faults", "clear", "7"}).status, 1);
}

TEST_F(Remote, TheTokenMayStandInTheEnvironment)
{
    setVariable("PVWAPI_CONTROL_TOKEN", kToken);
    const Ended ended = ran({"--url", url_, "clock"});
    ServiceProcess service(ServiceProcess::on(":memory:"));
    EXPECT_EQ(service::test::control(service.port(), "GET", "clock").status, 200U);
    setVariable("PVWAPI_CONTROL_TOKEN", {});
    EXPECT_EQ(ended.status, 0) << ended.errors;
}

TEST_F(Remote, TellsARefusalFromAFaultHereAndFromNobodyThere)
{
    EXPECT_EQ(ran({"--url", url_, "--token", "wrong", "clock"}).status, 1);
    EXPECT_EQ(ran({"--url", url_, "clock"}).status, 2);
    EXPECT_THAT(ran({"--url", url_, "clock"}).errors, HasSubstr("PVWAPI_CONTROL_TOKEN"));
    for (const std::string url : {"", "127.0.0.1:8420", "http://127.0.0.1", "http://127.0.0.1:0", "https://127.0.0.1:1",
                                  "http://service.example:8420", "http://10.0.0.1:8420"}) {
        const Ended ended = ran({"--url", url, "--token", kToken, "clock"});
        EXPECT_EQ(ended.status, 2) << url;
        EXPECT_THAT(ended.errors, IsLike("pvwapi-service: [^\n]+\n")) << url;
    }
    EXPECT_EQ(ran({}).status, 2);
    EXPECT_EQ(ran({"fly"}).status, 2);
    EXPECT_THAT(ran({"clock", "--help"}).output, HasSubstr("advance"));
    process_.signal(SIGTERM);
    EXPECT_EQ(process_.wait(), 0);
    const Ended nobody = run({"clock"});
    EXPECT_EQ(nobody.status, 3);
    EXPECT_THAT(nobody.errors, HasSubstr("127.0.0.1:" + std::to_string(port_)));
}

}  // namespace

}  // namespace service::test
