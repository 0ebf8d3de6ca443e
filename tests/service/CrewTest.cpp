// What reads goes side by side, what writes in turn, and nobody keeps the others for long.
#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "service/commands/Commands.h"
#include "service/work/Crew.h"
#include "tests/service/InnerService.h"

namespace service::test {

namespace {

using commands::Access;
using work::Crew;

http::Form formOf(const std::string& body)
{
    return http::Form::fromUrlEncoded(body);
}

class Connections : public testing::TestWithParam<std::string> {
protected:
    TemporaryFolder folder_;
    store::Database writer_{GetParam() == store::kInMemory ? GetParam() : folder_.file(GetParam())};

    static std::string count(store::Database& database)
    {
        return database.value("SELECT count(*) FROM service_setting").value_or("");
    }

    void put(const std::string& name)
    {
        writer_.run("INSERT INTO service_setting (name, value) VALUES (?, 'x')", name);
    }
};

TEST_P(Connections, ReadWhatIsThereAndKeepTheirMoment)
{
    const std::unique_ptr<store::Database> reader = writer_.reader();
    const std::unique_ptr<store::Database> other = writer_.reader();
    put("one");
    EXPECT_EQ(count(*reader), "1");
    {
        const store::Snapshot snapshot(*reader);
        EXPECT_EQ(count(*reader), "1");
        const store::Transaction transaction(writer_);
        put("two");
        EXPECT_EQ(count(writer_), "2");
        EXPECT_EQ(count(*other), "1");
    }
    EXPECT_EQ(count(*other), "1");
    {
        const store::Snapshot snapshot(*reader);
        EXPECT_EQ(count(*reader), "1");
        put("three");
        EXPECT_EQ(count(*reader), "1");
        EXPECT_EQ(count(*other), "2");
    }
    EXPECT_EQ(count(*reader), "2");
}

TEST_P(Connections, WriteNothingWhereTheyOnlyRead)
{
    const std::unique_ptr<store::Database> reader = writer_.reader();
    put("one");
    EXPECT_THROW(reader->run("DELETE FROM service_setting"), store::OnlyReads);
    EXPECT_EQ(count(*reader), "1");
}

// What has taken effect is not reported as interrupted, for it would be done again.
TEST_P(Connections, BeginAndCommitGoToTheirEnd)
{
    work::Allowance nothing(1);
    for (int i = 0; i < 4000; ++i) {
        writer_.setAllowance(&nothing);
        store::Transaction transaction(writer_);
        transaction.commit();
    }
    writer_.setAllowance(nullptr);
    put("after");
    EXPECT_EQ(count(writer_), "1");
}

// The log goes back to the file while somebody reads, and does not grow for ever.
TEST_P(Connections, WriteTheLogBackBesideTheOthers)
{
    const std::unique_ptr<store::Database> reader = writer_.reader();
    const std::string large(100'000, 'x');
    std::size_t most = 0;
    for (int i = 0; i < 200; ++i) {
        put(std::to_string(i) + large);
        most = std::max(most, writer_.unsettledPages());
        if (writer_.unsettledPages() > 300) reader->settle();
    }
    EXPECT_LT(most, 500U);
    EXPECT_EQ(count(*reader), "200");
    EXPECT_EQ(reader->value("PRAGMA integrity_check"), "ok");
}

INSTANTIATE_TEST_SUITE_P(Files, Connections, testing::Values("data", store::kInMemory));

class CrewAtWork : public InnerService {
protected:
    // Reads and reads until it has to make room.
    static void readForEver(store::Database& database)
    {
        for (;;) database.value("SELECT 1");
    }

    // What a form answers by way of a connection that only reads.
    commands::Finding found(const std::string& body)
    {
        return commands::findOut(*database_.reader(), settings_, formOf(body));
    }
};

TEST_F(CrewAtWork, MakesRoomForOthersThatReadAndWrite)
{
    std::atomic<int> turns = 0;
    std::atomic<int> done = 0;
    Crew crew(database_);
    const auto endless = [&turns](store::Database& database) {
        ++turns;
        readForEver(database);
    };
    for (int i = 0; i < 40; ++i) crew.read(endless, Crew::Length::open);
    crew.write(endless);
    crew.write(endless);
    crew.read([&done](store::Database&) { ++done; }, Crew::Length::open);
    crew.write([&done](store::Database&) { ++done; });
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (done < 2 && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    EXPECT_EQ(done, 2);
    EXPECT_GT(turns, 2);
}

TEST_F(CrewAtWork, UndoesWhatHasToMakeRoomAndDoesItAgain)
{
    std::atomic<int> turns = 0;
    Crew crew(database_);
    crew.write([&turns](store::Database& database) {
        store::Transaction transaction(database);
        database.run("INSERT INTO service_setting (name, value) VALUES ('made', 'x')");
        if (++turns < 2) readForEver(database);
        transaction.commit();
    });
    const auto made = [&crew] {
        const auto seen = std::make_shared<std::promise<std::string>>();
        std::future<std::string> answer = seen->get_future();
        crew.write([seen](store::Database& database) {
            seen->set_value(
                database.value("SELECT count(*) FROM service_setting WHERE name = 'made'").value_or(std::string()));
        });
        return answer.get();
    };
    EXPECT_EQ(made(), "0");
    EXPECT_EQ(made(), "1");
    EXPECT_EQ(turns, 2);
}

TEST_F(CrewAtWork, DoesOnTheSpotWhatIsShortAndNothingElse)
{
    Crew crew(database_);
    using Thread = std::thread::id;
    const auto doneBy = [](int rows, const std::function<void(Crew::Work)>& have) {
        const auto by = std::make_shared<std::promise<Thread>>();
        std::future<Thread> answer = by->get_future();
        have([rows, by](store::Database& database) {
            for (int i = 0; i < rows; ++i) database.value("SELECT 1");
            by->set_value(std::this_thread::get_id());
        });
        return answer.get();
    };
    const auto read = [&crew](Crew::Work work) { crew.readNow(std::move(work), Crew::Length::open); };
    const auto write = [&crew](Crew::Work work) { crew.writeNow(std::move(work)); };
    EXPECT_EQ(doneBy(10, read), std::this_thread::get_id());
    EXPECT_EQ(doneBy(10, write), std::this_thread::get_id());
    EXPECT_NE(doneBy(1000, read), std::this_thread::get_id());
    EXPECT_NE(doneBy(1000, write), std::this_thread::get_id());
}

TEST_F(CrewAtWork, EndsWhateverIsUnderWay)
{
    Crew crew(database_);
    std::atomic<int> begun = 0;
    const auto endless = [&begun](store::Database& database) {
        ++begun;
        readForEver(database);
    };
    crew.write(endless);
    crew.read(endless, Crew::Length::open);
    while (begun < 2) std::this_thread::yield();
    const auto start = std::chrono::steady_clock::now();
    crew.end();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

// The table of commands says which of them read; the connection refuses all that would write.
TEST_F(CrewAtWork, CommandsThatReadWriteNothing)
{
    const std::string anna = credOf("anna");
    const std::string space = makeSpace(anna);
    const std::vector<std::pair<std::string, std::string>> tasks{
        {"GetUserLibraries", "<library><readonly>true</readonly></library>"},
        {"GetUserLibrariesWithApps", "<library><readonly>true</readonly></library>"},
        {"GetUserProfile", "<users><user><userID>user-ben</userID></user></users>"},
        {"ProbeAccess", "<tests><get><id>" + space + "</id></get><VoIPExt></VoIPExt></tests>"},
    };
    for (const auto& [task, xml] : tasks) {
        const std::string body = "cmd=execute&cred=" + anna + "&task=" + task + "&xml=" + encoded(xml);
        EXPECT_EQ(commands::wayOf(formOf(body)).access, Access::reads) << task;
        EXPECT_SUCCESS(found(body).text);
    }
    EXPECT_EQ(commands::wayOf(formOf("cmd=fly")).access, Access::reads);
    EXPECT_FAILURE(found("cmd=fly").text, "KZN:UnknownCommand");
}

TEST_F(CrewAtWork, WhatMayWriteIsReadAsFarAsItGoes)
{
    const std::string anna = credOf("anna");
    const std::string space = makeSpace(anna);
    const std::string script = "cmd=execute&task=RunScript&cred=" + anna + "&xml=";
    const std::string reading = "<step><cmd>list</cmd><type>workspace</type></step>";
    const std::string writing =
        "<step><cmd>execute</cmd><task>AddTabs</task><xml><workspace><workspaceName>n"
        "</workspaceName></workspace></xml></step>";
    for (const std::string type : {"workspace", "user", "org", "invt", "wtng", "thng", "sessionInfo"}) {
        const std::string body = "cmd=get&cred=" + anna + "&type=" + type +
                                 "&where=" + encoded("<where><eq><path>userID</path><senv>userID</senv></eq></where>");
        EXPECT_EQ(commands::wayOf(formOf(body)).access, Access::mayWrite);
        EXPECT_SUCCESS(found(body).text);
    }
    EXPECT_SUCCESS(found(script + encoded("<script>" + reading + "</script>")).text);
    EXPECT_EQ(found(script + encoded("<script>" + reading + writing + "</script>")).text, "");
    const std::string count = "cmd=execute&task=GetWorkspaceNotificationCount&cred=" + anna + "&xml=";
    const std::string asked = "<workspace><workspaceID>" + space + "</workspaceID></workspace>";
    EXPECT_SUCCESS(found(count + encoded("<getCount>" + asked + "</getCount>")).text);
    EXPECT_EQ(found(count + encoded("<getActivity>" + asked + "</getActivity>")).text, "");
}

// A sign-in is looked at without a change; it holds as long as the secret does.
TEST_F(CrewAtWork, SignInsAreProvenApart)
{
    const std::string body = "cmd=login&username=anna&password=anna-demo-1";
    EXPECT_EQ(commands::wayOf(formOf(body)).access, Access::proves);
    const commands::Finding finding = found(body);
    EXPECT_EQ(finding.text, "");
    ASSERT_TRUE(finding.proof);
    EXPECT_FAILURE(found("cmd=login&username=anna&password=other").text, "KZN:LoginRefused");
    const auto reply = [&] {
        return commands::answerForm(database_, settings_, formOf(body), nullptr, &*finding.proof);
    };
    EXPECT_SUCCESS(reply());
    database_.run("UPDATE user SET password_hash = (SELECT password_hash FROM user WHERE user_name = 'ben')");
    EXPECT_FAILURE(reply(), "KZN:LoginRefused");
}

}  // namespace

}  // namespace service::test
