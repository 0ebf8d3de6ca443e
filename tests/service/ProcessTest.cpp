#include <csignal>
#include <fstream>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

int exitStatusOf(std::vector<std::string> arguments, std::string& errors)
{
    ServiceProcess process(std::move(arguments));
    EXPECT_EQ(process.firstLine(), "");
    errors = process.errors();
    return process.wait();
}

TEST(Process, SaysWhereItListensInOneLine)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data")));
    EXPECT_THAT(process.firstLine(), MatchesRegex("listening on 127\\.0\\.0\\.1:[1-9][0-9]*\n"));
}

TEST(Process, EndsCleanlyOnTerminateAndInterrupt)
{
    for (const int number : {SIGTERM, SIGINT}) {
        const TemporaryFolder folder;
        ServiceProcess process(ServiceProcess::on(folder.file("data")));
        process.firstLine();
        process.signal(number);
        EXPECT_EQ(process.wait(), 0);
    }
}

TEST(Process, RefusesBadArgumentsWithOneLine)
{
    const TemporaryFolder folder;
    const std::string data = folder.file("data");
    const std::vector<std::vector<std::string>> cases{
        {},
        {"--data", ""},
        {"--data", data, "--listen", "8420"},
        {"--data", data, "--listen", "127.0.0.1:65536"},
        {"--data", data, "--listen", "127.0.0.1:-1"},
        {"--data", data, "--listen", "nowhere.example:80"},
        {"--data", data, "--listen", "0.0.0.0:0"},
        {"--data", data, "--seed", "other"},
        {"--data", data, "--session-duration", "0"},
        {"--data", data, "--what"},
        {"--data", data, "extra"},
    };
    for (const std::vector<std::string>& arguments : cases) {
        std::string errors;
        EXPECT_EQ(exitStatusOf(arguments, errors), 2) << testing::PrintToString(arguments);
        EXPECT_THAT(errors, MatchesRegex("pvwapi-service: [^\n]+\n")) << testing::PrintToString(arguments);
    }
    EXPECT_FALSE(std::filesystem::exists(data));
}

TEST(Process, RefusesDataFilesThatItCannotUse)
{
    const TemporaryFolder folder;
    std::ofstream(folder.file("text")) << std::string(5000, 'x');
    std::filesystem::create_directory(folder.file("folder"));
    for (const std::string name : {"text", "folder", "missing/data"}) {
        std::string errors;
        EXPECT_EQ(exitStatusOf(ServiceProcess::on(folder.file(name)), errors), 2) << name;
        EXPECT_THAT(errors, MatchesRegex("pvwapi-service: [^\n]+\n")) << name;
        EXPECT_THAT(errors, HasSubstr(folder.file(name)));
    }
}

TEST(Process, RefusesAPortAndAFileInUse)
{
    const TemporaryFolder folder;
    ServiceProcess first(ServiceProcess::on(folder.file("data")));
    const std::string address = "127.0.0.1:" + std::to_string(first.port());
    std::string errors;
    EXPECT_EQ(exitStatusOf({"--data", folder.file("other"), "--listen", address}, errors), 2);
    EXPECT_THAT(errors, HasSubstr(address));
    EXPECT_EQ(exitStatusOf(ServiceProcess::on(folder.file("data")), errors), 2);
    EXPECT_THAT(errors, HasSubstr(folder.file("data")));
}

TEST(Process, KeepsItsDataFileFromOthers)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data")));
    process.firstLine();
    const auto mode = std::filesystem::status(folder.file("data")).permissions();
    EXPECT_EQ(mode & (std::filesystem::perms::group_all | std::filesystem::perms::others_all),
              std::filesystem::perms::none);
}

TEST(Process, SeedsOnlyAnEmptyFile)
{
    const TemporaryFolder folder;
    std::string spaceID;
    {
        ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--seed", "demo"}));
        spaceID = User(process.port(), "anna").makeSpace("Kept");
        process.signal(SIGTERM);
        EXPECT_THAT(process.errors(), HasSubstr("filled"));
        EXPECT_EQ(process.wait(), 0);
    }
    ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--seed", "demo"}));
    User anna(process.port(), "anna");
    const std::string reply = anna.script("<step><cmd>list</cmd><type>workspace</type></step>");
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/workspace/workspaceID"), testing::Contains(spaceID));
    EXPECT_EQ(textsAt(reply, "/kznapi/return/step/workspace").size(), 4U);
    process.signal(SIGTERM);
    EXPECT_THAT(process.errors(), HasSubstr("nothing was changed"));
}

// Every workspace whose making was answered is there after a kill, wherever in the next request it struck.
TEST(Process, LosesNothingThatItAnsweredWhenItIsKilled)
{
    const TemporaryFolder folder;
    std::vector<std::string> made;
    for (int round = 0; round < 5; ++round) {
        ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--seed", "demo"}));
        User anna(process.port(), "anna");
        for (int i = 0; i < 20 + round; ++i) {
            const std::string spaceID = anna.makeSpace("Round " + std::to_string(round) + ", " + std::to_string(i));
            ASSERT_NE(spaceID, "");
            made.push_back(spaceID);
        }
        Talk unanswered(process.port());
        unanswered.sendRaw("POST /kznconnect/op.do HTTP/1.1\r\nHost: " + unanswered.host() +
                           "\r\nContent-Length: 200\r\n\r\ncmd=execute&task=AddTabs");
        process.signal(SIGKILL);
        EXPECT_EQ(process.wait(), -SIGKILL);
    }
    ServiceProcess process(ServiceProcess::on(folder.file("data")));
    User anna(process.port(), "anna");
    const std::string reply = anna.script("<step><cmd>list</cmd><type>workspace</type></step>");
    const std::vector<std::string> found = textsAt(reply, "/kznapi/return/step/workspace/workspaceID");
    EXPECT_THAT(found, testing::IsSupersetOf(made));
    EXPECT_EQ(found.size(), made.size() + 3);
    EXPECT_EQ(textsAt(reply, "/kznapi/return/step/workspace/tabs/tab").size(), 2 * found.size());
}

}  // namespace

}  // namespace service::test
