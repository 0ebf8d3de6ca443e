// What a program that starts the service meets: the line that says it is ready, its end, and what stays behind.
#include <csignal>
#include <nlohmann/json.hpp>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Ready, IsOneLineOfJsonWhereItIsAskedFor)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--ready-json"}));
    const std::string line = process.firstLine();
    ASSERT_THAT(line, IsLike("\\{[^\n]*\\}\n"));
    const json ready = json::parse(line);
    EXPECT_EQ(ready.at("ready"), true);
    EXPECT_EQ(ready.at("pid"), process.pid());
    EXPECT_THAT(ready.at("version").get<std::string>(), IsLike("[0-9]+\\.[0-9]+\\.[0-9]+"));
    const std::string address = "http://127.0.0.1:" + std::to_string(process.port());
    EXPECT_EQ(ready.at("url"), address + "/kznconnect/op.do");
    EXPECT_FAILURE(form(process.port(), "cmd=fly"), "KZN:UnknownCommand");
}

TEST(Ready, CanBeAskedFor)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data")));
    const HttpReply reply = Talk(process.port()).get("/ready");
    EXPECT_EQ(reply.status, 200U);
    EXPECT_EQ(reply.contentType, "application/json");
    const json ready = json::parse(reply.body);
    EXPECT_EQ(ready.at("ready"), true);
    EXPECT_EQ(ready.at("pid"), process.pid());
    EXPECT_FALSE(ready.contains("token"));
    EXPECT_EQ(Talk(process.port()).post("/ready", "").status, 405U);
}

TEST(Ready, TheVersionIsSaidAndThatIsAll)
{
    ServiceProcess process({"--version"});
    EXPECT_THAT(process.firstLine(), IsLike("pvwapi-service [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(process.errors(), "");
    EXPECT_EQ(process.wait(), 0);
}

TEST(Ready, StateInMemoryLeavesNoFile)
{
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.file(""));
    {
        ServiceProcess first(ServiceProcess::on(":memory:", {"--seed", "demo"}));
        ServiceProcess second(ServiceProcess::on(":memory:", {"--seed", "demo"}));
        EXPECT_NE(User(first.port(), "anna").makeSpace("Here alone"), "");
        EXPECT_EQ(User(second.port(), "anna").spaceNamed("Here alone"), "");
        EXPECT_NE(User(first.port(), "anna").spaceNamed("Here alone"), "");
    }
    EXPECT_THAT(namesIn(folder.file("")), IsEmpty());
    std::filesystem::current_path(before);
}

TEST(Ready, NoFileStaysBehindWhereItCannotStart)
{
    const TemporaryFolder folder;
    ServiceProcess first(ServiceProcess::on(":memory:"));
    const std::string address = "127.0.0.1:" + std::to_string(first.port());
    ServiceProcess refused({"--data", folder.file("new"), "--seed", "demo", "--listen", address});
    EXPECT_THAT(refused.errors(), HasSubstr("cannot listen on " + address));
    EXPECT_EQ(refused.wait(), 2);
    EXPECT_THAT(namesIn(folder.file("")), IsEmpty());

    // A link is not the service's; the file behind it would be. (Not everybody may make one on Windows.)
    std::error_code none;
    std::filesystem::create_symlink("behind", folder.file("link"), none);
    ServiceProcess linked({"--data", folder.file(none ? "new" : "link"), "--listen", address});
    EXPECT_EQ(linked.wait(), 2);
    EXPECT_EQ(namesIn(folder.file("")).size(), none ? 0U : 1U);
    std::filesystem::remove(folder.file("link"));

    {
        ServiceProcess makes(ServiceProcess::on(folder.file("kept"), {"--seed", "demo"}));
        EXPECT_NE(signIn(makes.port(), "anna"), "");
        makes.signal(SIGTERM);
        EXPECT_EQ(makes.wait(), 0);
    }
    ServiceProcess again({"--data", folder.file("kept"), "--listen", address});
    EXPECT_EQ(again.wait(), 2);
    ServiceProcess reads(ServiceProcess::on(folder.file("kept")));
    EXPECT_NE(signIn(reads.port(), "anna"), "");
}

TEST(Ready, AFileInUseIsSaidWithTheProcessThatHasIt)
{
    const TemporaryFolder folder;
    ServiceProcess first(ServiceProcess::on(folder.file("data")));
    first.firstLine();
    ServiceProcess second(ServiceProcess::on(folder.file("data")));
    EXPECT_EQ(second.errors(), "pvwapi-service: the data file " + folder.file("data") +
                                   " cannot be used: database is locked by process " + std::to_string(first.pid()) +
                                   "\n");
    EXPECT_EQ(second.wait(), 2);
    EXPECT_FAILURE(form(first.port(), "cmd=fly"), "KZN:UnknownCommand");
}

TEST(Ready, TellsOfEachRequestWhereItIsVerbose)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--verbose", "--seed", "demo"}));
    const unsigned short port = process.port();
    User anna(port, "anna");
    anna.makeSpace("Told");
    anna.execute("Two\nwords", "<a/>");
    Talk(port).get("/nothing?secret=1");
    Talk(port).sendRaw("rubbish\r\n\r\n");
    std::vector<std::string> lines;
    while (lines.empty() || !lines.back().starts_with("#5")) lines.push_back(process.errorLine());
    while (!lines.front().starts_with("#1")) lines.erase(lines.begin());
    constexpr const char* kTime = " [0-9]+\\.[0-9] ms\n";
    EXPECT_THAT(lines, testing::ElementsAre(
                           IsLike(std::string("#1 POST /kznconnect/op.do login [0-9]+>[0-9]+ B 200 SUCCESS") + kTime),
                           IsLike(std::string("#2 POST /kznconnect/op.do execute/AddTabs [0-9]+>[0-9]+ B 200 "
                                              "SUCCESS") +
                                  kTime),
                           IsLike(std::string("#3 POST /kznconnect/op.do execute/Two.words [0-9]+>[0-9]+ B 200 "
                                              "FAILURE KZN:UnknownTask") +
                                  kTime),
                           IsLike(std::string("#4 GET /nothing - 0>[0-9]+ B 404 FAILURE KZN:UnknownEndpoint") + kTime),
                           IsLike(std::string("#5 - - - 0>[0-9]+ B 400 FAILURE KZN:BadRequest") + kTime)));
}

// Whoever encodes too often, or not at all, sends a secret in the place of a command or a path.
TEST(Ready, NoLineAboutARequestHasASecret)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--verbose"}));
    const unsigned short port = process.port();
    form(port, "cmd=login%26username=anna%26password%3DS3CRET");
    form(port, "cmd=login%2526username%253Danna%2526password%253DS3CRET");
    for (const char* const target :
         {"op.docred=S3CRET", "op.do%3Fcred=S3CRET", "op.do&cred=S3CRET", "op.do?cmd=login?password=S3CRET"}) {
        Talk(port).get(std::string("/kznconnect/") + target);
    }
    std::string lines;
    for (std::string line; !line.starts_with("#6"); lines += line) line = process.errorLine();
    EXPECT_THAT(lines, testing::HasSubstr(" login&username=anna&password=*** "));
    EXPECT_THAT(lines, testing::HasSubstr(" /kznconnect/op.docred=*** "));
    EXPECT_THAT(lines, testing::Not(testing::HasSubstr("S3CRET")));
}

TEST(Ready, AddressesThatClientsKnowAnswerWhatIsMissing)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data")));
    for (const std::string target : {"/kznconnect/nullsession.do?", "/kznconnect/nullsession.do", "/kzndms",
                                     "/kzndms?cmd=get", "/kzndms/folder/document"}) {
        SCOPED_TRACE(target);
        for (const HttpReply& reply : {Talk(process.port()).get(target), Talk(process.port()).post(target, "cmd=x")}) {
            EXPECT_EQ(reply.status, 200U);
            EXPECT_FAILURE(reply.body, "KZN:UnknownEndpoint");
        }
    }
}

}  // namespace

}  // namespace service::test
