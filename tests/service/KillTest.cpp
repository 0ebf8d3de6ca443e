// The service is killed among four writers, again and again: what was answered is there, whole, wherever it struck.
// PVWAPI_KILLS says how often; 3 is enough to see that it works at all.
#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "service/store/Database.h"
#include "tests/service/DemoService.h"
#include "tests/support/Wine.h"

namespace service::test {

namespace {

constexpr std::array kPeople{"anna", "ben", "clara", "dmitri"};
constexpr const char* kTabID = "/kznapi/return/tab/tabID";

// True where it was done; false where nobody was left to answer.
bool answeredWell(const std::string& reply)
{
    EXPECT_TRUE(reply.empty() || textAt(reply, kResult) == "SUCCESS") << reply;
    return !reply.empty();
}

// One of the four: makes workspaces, gives each a tab, takes every third tab away again, and remembers what was
// answered. What was asked for without an answer may have happened or not.
class Writer {
public:
    explicit Writer(std::string name) : name_(std::move(name)) {}

    const std::string& name() const { return name_; }

    // Works until the service has gone.
    void work(User& user, std::atomic<int>& answered)
    {
        while (step(user)) ++answered;
    }

    std::size_t answers() const { return answers_; }

    void checkAfter(unsigned short port) const
    {
        SCOPED_TRACE(name_);
        User user(port, name_);
        const std::string reply = user.script("<step><cmd>list</cmd><type>workspace</type></step>");
        const std::string space = "/kznapi/return/step/workspace";
        const std::vector<std::string> ids = textsAt(reply, space + "/workspaceID");
        const std::set<std::string> there(ids.begin(), ids.end());
        for (const auto& [id, tab] : kept_) {
            ASSERT_TRUE(there.contains(id)) << id;
            const std::vector<std::string> tabs = textsAt(reply, space + "[workspaceID='" + id + "']/tabs/tab/tabID");
            EXPECT_THAT(tabs, testing::IsSupersetOf({std::string("commTab"), std::string("docTab")}));
            for (const std::string& found : tabs) EXPECT_FALSE(deleted_.contains(found)) << id << " with " << found;
            EXPECT_TRUE(tab.empty() || std::ranges::find(tabs, tab) != tabs.end()) << id << " without " << tab;
        }
    }

private:
    bool step(User& user)
    {
        const std::string id = user.makeSpace(name_);
        if (!id.starts_with("wksp-")) return false;
        kept_[id] = {};
        const std::string reply = user.addTab(id, "Tab", 3);
        if (!answeredWell(reply)) return false;
        const std::string tab = textAt(reply, kTabID);
        kept_[id] = tab;
        answers_ += 2;
        return ++steps_ % 3 != 0 || takeAway(user, id, tab);
    }

    bool takeAway(User& user, const std::string& id, const std::string& tab)
    {
        kept_[id] = {};
        if (!answeredWell(user.call("cmd=delete&type=tab&id=" + tab))) return false;
        deleted_.insert(tab);
        ++answers_;
        return true;
    }

    std::string name_;
    std::map<std::string, std::string> kept_;  // workspaces, each with its tab where that was answered
    std::set<std::string> deleted_;            // tabs
    std::size_t steps_ = 0;
    std::size_t answers_ = 0;
};

int killsWanted()
{
    const char* const text = std::getenv("PVWAPI_KILLS");
    return text == nullptr ? 3 : std::atoi(text);
}

void expectWholeFile(const std::string& path)
{
    store::Database database(path);
    EXPECT_EQ(database.value("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(database.value("PRAGMA foreign_key_check"), std::nullopt);
}

// All write at once, until so many have been through a step of their work and the service is killed.
void killAmong(std::vector<Writer>& writers, std::deque<User>& users, ServiceProcess& process, int steps)
{
    std::atomic<int> answered = 0;
    std::atomic<std::size_t> working = writers.size();
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < writers.size(); ++i) {
        threads.emplace_back([&, i] {
            writers[i].work(users[i], answered);
            --working;
        });
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (answered < steps && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    EXPECT_GE(answered, steps);
    process.kill();
    // It may keep a connection of who was killed, and nobody would learn of the end; nor does it tell one who begins to
    // wait just now.
    while (kzn::test::runsUnderWine() && working > 0) {
        for (User& user : users) user.hangUp();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    for (std::thread& thread : threads) thread.join();
}

TEST(Kill, LosesNothingThatWasAnswered)
{
    const TemporaryFolder folder;
    const std::string data = folder.file("data");
    std::vector<Writer> writers(kPeople.begin(), kPeople.end());
    std::mt19937 random(5);
    const int kills = killsWanted();
    for (int round = 0; round < kills; ++round) {
        SCOPED_TRACE(round);
        ServiceProcess process(ServiceProcess::on(data, {"--seed", "demo"}));
        std::deque<User> users;
        for (const Writer& writer : writers) users.emplace_back(process.port(), writer.name());
        killAmong(writers, users, process, std::uniform_int_distribution(10, 40)(random));
        expectWholeFile(data);
        ServiceProcess again(ServiceProcess::on(data));
        for (const Writer& writer : writers) writer.checkAfter(again.port());
    }
    for (const Writer& writer : writers) EXPECT_GT(writer.answers(), static_cast<std::size_t>(2 * kills));
}

}  // namespace

}  // namespace service::test
