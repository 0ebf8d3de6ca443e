// One slow request stops nobody: the real process, several clients at a time.
#include <array>
#include <atomic>
#include <csignal>
#include <future>
#include <thread>

#include "tests/service/ControlledService.h"

namespace service::test {

namespace {

constexpr std::array kPeople{"anna", "ben", "clara", "dmitri"};

// Lists workspaces by what none of them has, again and again, until its time is over.
std::string endlessSteps(const std::string& first = {})
{
    const std::string list =
        "<step><cmd>list</cmd><type>workspace</type><where><eq><path>tabs/tab/tabName</path>"
        "<value>no such tab</value></eq></where></step>";
    return first +
           "<step><cmd>list</cmd><type>workspace</type><select>workspaceID</select>"
           "<set var=\"A\" path=\"workspace/workspaceID\"/></step>"
           "<foreach var=\"A\"><foreach var=\"A\"><foreach var=\"A\"><foreach var=\"A\">" +
           list + list + "</foreach></foreach></foreach></foreach>";
}

const std::string kMakesSpace =
    "<step><cmd>execute</cmd><task>AddTabs</task><xml><workspace><workspaceName>made by the script</workspaceName>"
    "</workspace></xml></step>";

class SideBySide : public ControlledService {
protected:
    // Enough for a script to take all the time that it may have.
    void makeSpaces()
    {
        User anna(port_, "anna");
        for (int i = 0; i < 120; ++i) ASSERT_NE(anna.makeSpace("Space"), "");
    }

    std::future<std::string> scriptOfAnna(const std::string& steps) const
    {
        return std::async(std::launch::async, [this, steps] { return User(port_, "anna").script(steps); });
    }

    static bool isUnderWay(const std::future<std::string>& reply)
    {
        return reply.wait_for(std::chrono::seconds(0)) == std::future_status::timeout;
    }
};

TEST_F(SideBySide, AScriptAtItsLimitStopsNobody)
{
    makeSpaces();
    std::vector<std::future<std::string>> scripts;
    for (int i = 0; i < 3; ++i) scripts.push_back(scriptOfAnna(endlessSteps()));
    for (int i = 0; i < 2; ++i) scripts.push_back(scriptOfAnna(endlessSteps(kMakesSpace)));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    User ben(port_, "ben");
    EXPECT_SUCCESS(ben.call("cmd=get&type=sessionInfo&id=sessioninfo"));
    EXPECT_NE(ben.makeSpace("Made beside"), "");
    EXPECT_NE(ben.spaceNamed("Made beside"), "");
    EXPECT_NE(ben.makeSpace("Made after that"), "");
    for (const std::future<std::string>& script : scripts) EXPECT_TRUE(isUnderWay(script));
    for (std::future<std::string>& script : scripts) EXPECT_FAILURE(script.get(), "KZN:LimitExceeded");
    EXPECT_EQ(User(port_, "anna").spaceNamed("made by the script"), "");
}

TEST_F(SideBySide, EndsAtASignalWhateverIsUnderWay)
{
    makeSpaces();
    std::vector<std::future<std::string>> scripts;
    scripts.push_back(scriptOfAnna(endlessSteps()));
    scripts.push_back(scriptOfAnna(endlessSteps(kMakesSpace)));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const auto start = std::chrono::steady_clock::now();
    process_.signal(SIGTERM);
    EXPECT_EQ(process_.wait(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
    for (std::future<std::string>& script : scripts) EXPECT_EQ(script.get(), "");
}

// Eight clients read and write, policies and clock and faults are changed, and the whole state goes back again and
// again to what it was at the beginning. What each of them is told has to be true at some moment.
class Stress : public testing::TestWithParam<std::string> {
protected:
    static void work(unsigned short port, const std::string& name, std::atomic<int>& answered)
    {
        for (int round = 0; round < 4; ++round) {
            User user(port, name);
            for (int i = 0; i < 8; ++i) answered += step(user, i) ? 1 : 0;
        }
    }

    // A reset may end the session at any moment; nothing else may go wrong.
    static bool isTrue(const std::string& reply)
    {
        const std::string why = textAt(reply, kException);
        const bool gone = why == "KZN:InvalidCredential" || why == "KZN:NoSuchObject" || why == "KZN:SessionExpired" ||
                          why == "KZN:Fault";
        EXPECT_TRUE(gone || textAt(reply, kResult) == "SUCCESS") << reply;
        return !gone;
    }

    static bool step(User& user, int number)
    {
        if (number % 4 == 0) return isTrue(user.script("<step><cmd>list</cmd><type>workspace</type></step>"));
        if (number % 4 == 1) return isTrue(user.call("cmd=get&type=sessionInfo&id=sessioninfo"));
        const std::string id = user.makeSpace("Stress");
        if (id.empty()) return true;
        if (number % 4 == 2) return isTrue(user.addTab(id, "Tab", 3));
        return isTrue(user.call("cmd=get&type=workspace&id=" + id + "&select=tabs"));
    }

    static void steer(unsigned short port, const std::atomic<bool>& isOver)
    {
        const auto ask = [port](const std::string& method, const std::string& resource, const std::string& body = {}) {
            EXPECT_EQ(control(port, method, resource, body).status, 200U) << resource;
        };
        while (!isOver) {
            ask("PUT", "policy", R"({"VoIPExt": true})");
            ask("POST", "clock/advance", R"({"seconds": 60})");
            ask("POST", "faults", R"({"fault": "failure", "probability": 0.2, "exceptionID": "KZN:Fault"})");
            ask("GET", "state");
            ask("DELETE", "faults");
            ask("GET", "clock");
            ask("POST", "reset");
        }
    }

    TemporaryFolder folder_;
};

TEST_P(Stress, EightClientsReadAndWriteWhileTheStateIsReset)
{
    const std::string data = GetParam() == "data" ? folder_.file("data") : GetParam();
    ServiceProcess process(ServiceProcess::on(data, {"--seed", "demo", "--control-token", kToken}));
    const unsigned short port = process.port();
    std::atomic<int> answered = 0;
    std::atomic<bool> isOver = false;
    std::thread steering([port, &isOver] { steer(port, isOver); });
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&, i] { work(port, kPeople.at(static_cast<std::size_t>(i % 4)), answered); });
    }
    for (std::thread& client : clients) client.join();
    isOver = true;
    steering.join();
    EXPECT_GT(answered, 0);
    EXPECT_EQ(control(port, "POST", "reset").body.value("users", 0), 4);
    EXPECT_NE(signIn(port, "anna"), "");
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait(), 0) << process.errors();
}

INSTANTIATE_TEST_SUITE_P(Files, Stress, testing::Values("data", ":memory:"));

}  // namespace

}  // namespace service::test
