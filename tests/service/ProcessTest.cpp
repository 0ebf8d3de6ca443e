#include <csignal>
#include <fstream>

#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "tests/service/DemoService.h"
#include "tests/support/Wine.h"

namespace service::test {

namespace {

using testing::HasSubstr;

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
    EXPECT_THAT(process.firstLine(), IsLike("listening on 127\\.0\\.0\\.1:[1-9][0-9]*\n"));
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
        EXPECT_THAT(errors, IsLike("pvwapi-service: [^\n]+\n")) << testing::PrintToString(arguments);
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
        EXPECT_THAT(errors, IsLike("pvwapi-service: [^\n]+\n")) << name;
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

TEST(Process, TakesAnyNameOfAFile)
{
    const TemporaryFolder folder;
    const std::string data = folder.file("Äther 東京 🜁");
    ServiceProcess process(ServiceProcess::on(data, {"--seed", "demo"}));
    EXPECT_NE(signIn(process.port(), "anna"), "");
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::u8path(data)));
    std::string errors;
    EXPECT_EQ(exitStatusOf(ServiceProcess::on(data), errors), 2);
    EXPECT_THAT(errors, HasSubstr(data));
}

// Such a hash would let nobody in, without a word on why.
TEST(Process, RefusesTheHashesOfOlderServices)
{
    const TemporaryFolder folder;
    for (const std::string column : {"password_hash", "token_hash"}) {
        const std::string data = folder.file(column);
        {
            store::Database database(data);
            seed::fillDemo(database);
            database.run("UPDATE user SET " + column + " = '$y$j75$salt$hash' WHERE user_id = 'user-ben'");
        }
        std::string errors;
        EXPECT_EQ(exitStatusOf(ServiceProcess::on(data), errors), 2);
        EXPECT_EQ(errors, "pvwapi-service: the data file " + data +
                              " cannot be used: an older service hashed its passwords in another way; begin with a new "
                              "file\n");
    }
}

TEST(Process, KeepsItsDataFileFromOthers)
{
    const TemporaryFolder folder;
    for (int start = 0; start < 2; ++start) {
        ServiceProcess process(ServiceProcess::on(folder.file("data")));
        process.firstLine();
        for (const std::string name : {"data", "data-wal"}) {
            EXPECT_EQ(isKeptFromOthers(folder.file(name)), !kzn::test::runsUnderWine()) << name;
        }
        process.signal(SIGTERM);
        EXPECT_EQ(process.wait(), 0);
    }
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

}  // namespace

}  // namespace service::test
