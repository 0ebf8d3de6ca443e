// The program: a day is recorded, played, and held against another service.
#include <csignal>

#include "tests/service/DemoService.h"
#include "tests/support/FileBytes.h"
#include "tests/tape/Address.h"

namespace service::test {

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Every byte, and signs that a tape writes in another way.
std::string picture()
{
    std::string bytes = "\x89PNG\r\n\x1A\n{cred 1}\\ http://127.0.0.1 \n[reply]";
    for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
    return bytes;
}

// What the service made differs each time; what a reply says does not.
struct Day {
    std::vector<std::string> shown;
    std::string cred;
};

// Some hours of somebody's work; what was answered, but for what is secret.
Day work(unsigned short port)
{
    Day day;
    User anna(port, "anna");
    day.cred = anna.cred();
    const std::string spaceID = anna.makeSpace("Project Äther");
    day.shown.push_back(spaceID);
    day.shown.push_back(anna.addTab(spaceID, "a ]] b", 3));
    day.shown.push_back(anna.fieldsOf(spaceID));
    day.shown.push_back(anna.spaceNamed("Autumn catalogue"));
    day.shown.push_back(anna.execute("Dance", "<a/>"));
    const std::string uploaded = uploadIcon(port, anna.cred(), spaceID, picture()).body;
    day.shown.push_back(uploaded);
    for (const std::string& url : textsAt(uploaded, "//*[starts-with(text(), 'http')]")) {
        EXPECT_THAT(url, StartsWith(urlOf(port) + "/"));
        const HttpReply icon = Talk(port).get(url.substr(urlOf(port).size()) + "?cred=" + anna.cred());
        EXPECT_EQ(icon.status, 200U);
        EXPECT_EQ(icon.body, picture());
        day.shown.push_back(icon.contentType);
    }
    day.shown.push_back(form(port, "cmd=login&username=anna&password=not+hers&isp=&autocommit=true"));
    day.shown.push_back(anna.call("cmd=logout"));
    return day;
}

constexpr const char* kLogin = "cmd=login&username=anna&password=anna-demo-1";

// Requests that were sent to another name, by a page of another site, or by a method that no tape holds.
void expectRefusedByTheirHeads(unsigned short port)
{
    const auto send = [port](const std::string& method, const std::string& headers) {
        return Talk(port).send(method, "/kznconnect/op.do", kLogin, headers);
    };
    for (const char* const foreign :
         {"Host: service.example\r\n", "Origin: http://service.example\r\n", "Sec-Fetch-Site: cross-site\r\n"}) {
        const HttpReply reply = send("POST", foreign);
        EXPECT_EQ(reply.status, 403U) << foreign;
        EXPECT_FAILURE(reply.body, "KZN:AccessDenied");
    }
    for (const char* const method : {"PUT", "OPTIONS", "DELETE"}) {
        const HttpReply reply = send(method, "");
        EXPECT_EQ(reply.status, 405U) << method;
        EXPECT_FAILURE(reply.body, "KZN:BadRequest");
    }
}

class TapeCommands : public DemoService {
protected:
    std::string tape() const { return folder_.file("day.tape"); }

    std::vector<std::string> recording() const
    {
        return {"record", "--to", tape(), "--upstream", urlOf(port_), "--listen", "127.0.0.1:0"};
    }

    std::vector<std::string> replaying() const { return {"replay", tape(), "--listen", "127.0.0.1:0"}; }

    Day recordDay()
    {
        ServiceProcess recorder(recording());
        recordedAt_ = recorder.port();
        Day day = work(recordedAt_);
        recorder.signal(SIGTERM);
        EXPECT_EQ(recorder.wait(), 0);
        return day;
    }

    // The status, and what was said on both channels.
    static int run(const std::vector<std::string>& arguments, std::string& said)
    {
        ServiceProcess process(arguments);
        said = process.output() + process.errors();
        return process.wait();
    }

    int verify(unsigned short port, std::string& said)
    {
        std::ofstream(folder_.file("secrets")) << "anna-demo-1\nnot hers\n";
        return run({"verify", tape(), "--upstream", urlOf(port), "--secrets", folder_.file("secrets")}, said);
    }

    void edit(const std::string& from, const std::string& to)
    {
        std::string text = bytesOf(tape());
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << text;
        std::ofstream(tape(), std::ios::binary) << text.replace(at, from.size(), to);
    }

    unsigned short recordedAt_ = 0;
};

TEST_F(TapeCommands, AReplayIsWhatWasRecorded)
{
    const Day recorded = recordDay();
    process_.signal(SIGTERM);
    ServiceProcess player(replaying());
    const Day played = work(player.port());
    ASSERT_EQ(played.shown.size(), recorded.shown.size());
    for (std::size_t i = 0; i < played.shown.size(); ++i) {
        EXPECT_EQ(withoutPort(played.shown[i], player.port()), withoutPort(recorded.shown[i], recordedAt_));
    }
    EXPECT_NE(played.cred, recorded.cred);
    player.signal(SIGTERM);
    EXPECT_THAT(player.errors(), HasSubstr("0 requests fitted none"));
    EXPECT_EQ(player.wait(), 0);
}

TEST_F(TapeCommands, NoSecretAndNoAddressStandsOnTheTape)
{
    const Day day = recordDay();
    const std::string text = bytesOf(tape());
    for (const std::string& secret :
         {std::string("anna-demo-1"), std::string("not+hers"), std::string("not hers"), day.cred, std::to_string(port_),
          std::to_string(recordedAt_), std::string(kBoundary)}) {
        EXPECT_THAT(text, Not(HasSubstr(secret)));
    }
    EXPECT_THAT(text, HasSubstr("<cred>{cred 1}</cred>"));
    EXPECT_THAT(text, HasSubstr("{server}/kzndms/icon/{id "));
    EXPECT_THAT(text, HasSubstr("&password={secret 2}\n"));
}

TEST_F(TapeCommands, ATapeHoldsForAnotherService)
{
    recordDay();
    ServiceProcess second(ServiceProcess::on(folder_.file("other"), {"--seed", "demo"}));
    std::string said;
    EXPECT_EQ(verify(second.port(), said), 0) << said;
    EXPECT_THAT(said, IsLike("[1-9][0-9]* exchanges, 0 different\n"));

    edit("Project Äther", "Project Luft");
    ServiceProcess third(ServiceProcess::on(folder_.file("third"), {"--seed", "demo"}));
    EXPECT_EQ(verify(third.port(), said), 1);
    EXPECT_THAT(said, IsLike("exchange [0-9]+ \\(line [0-9]+\\): its reply differs at byte [0-9]+: the tape has "
                             "\"Luft[^\n]*(\n.*)*exchanges, [1-9][0-9]* different\n"));
}

TEST_F(TapeCommands, ARequestThatFitsNothingIsRefusedAndCounted)
{
    recordDay();
    ServiceProcess player(replaying());
    EXPECT_FAILURE(form(player.port(), "cmd=login&username=ben&password=x"), "KZN:NotOnTape");
    EXPECT_THAT(textAt(form(player.port(), "cmd=login&username=ben&password=x"), kReason),
                HasSubstr("exchange 1 (line 4): its body differs at byte 19"));
    player.signal(SIGTERM);
    EXPECT_THAT(player.errors(), HasSubstr("2 requests fitted none"));
    EXPECT_EQ(player.wait(), 1);
}

TEST_F(TapeCommands, SomebodyMayWriteAny)
{
    recordDay();
    edit("&username=anna", "&username={any}");
    ServiceProcess player(replaying());
    EXPECT_SUCCESS(form(player.port(), "cmd=login&username=whoever&password=x&isp=&autocommit=true"));
}

// However the recorder ends, and whenever somebody looks, the tape is whole.
TEST_F(TapeCommands, TheTapeIsWholeAtAnyMoment)
{
    ServiceProcess recorder(recording());
    User anna(recorder.port(), "anna");
    std::size_t before = 0;
    for (int i = 0; i < 10; ++i) {
        anna.makeSpace("Round " + std::to_string(i));
        const std::string text = bytesOf(tape());
        EXPECT_GT(text.size(), before);
        EXPECT_THAT(text, HasSubstr("Round%20" + std::to_string(i)));
        before = text.size();
    }
    recorder.kill();
    ServiceProcess player(replaying());
    EXPECT_NE(player.firstLine(), "");
}

TEST_F(TapeCommands, AServiceThatIsNotThereIsAFailureAndNothingOnTheTape)
{
    ServiceProcess recorder(recording());
    const unsigned short port = recorder.port();
    process_.signal(SIGTERM);
    process_.wait();
    EXPECT_FAILURE(form(port, "cmd=login&username=anna&password=anna-demo-1"), "KZN:InternalError");
    EXPECT_THAT(bytesOf(tape()), Not(HasSubstr("[request]")));
}

// A page in a browser cannot use the recorder's host for its own ends; and what no tape can hold is not passed on.
TEST_F(TapeCommands, WhatTheServiceRefusesByItsHeadTheRecorderRefusesToo)
{
    ServiceProcess recorder(recording());
    expectRefusedByTheirHeads(recorder.port());
    EXPECT_THAT(bytesOf(tape()), Not(HasSubstr("[request]")));
    EXPECT_SUCCESS(form(recorder.port(), kLogin));
}

// Nor does such a request count as one that the tape should have.
TEST_F(TapeCommands, WhatTheServiceRefusesByItsHeadThePlayerRefusesToo)
{
    {
        ServiceProcess recorder(recording());
        EXPECT_SUCCESS(form(recorder.port(), kLogin));
    }
    ServiceProcess player(replaying());
    expectRefusedByTheirHeads(player.port());
    EXPECT_SUCCESS(form(player.port(), kLogin));
    player.signal(SIGTERM);
    EXPECT_EQ(player.errors(), "1 of 1 exchanges were played; 0 requests fitted none\n");
    EXPECT_EQ(player.wait(), 0);
}

TEST_F(TapeCommands, ATapeIsNotOverwrittenByMistake)
{
    recordDay();
    const std::string before = bytesOf(tape());
    std::string said;
    EXPECT_EQ(run(recording(), said), 2);
    EXPECT_THAT(said, HasSubstr("--overwrite"));
    EXPECT_EQ(bytesOf(tape()), before);
    std::vector<std::string> again = recording();
    again.emplace_back("--overwrite");
    ServiceProcess recorder(again);
    EXPECT_NE(recorder.firstLine(), "");
    EXPECT_THAT(bytesOf(tape()), Not(HasSubstr("[request]")));
}

TEST_F(TapeCommands, StatusesTellWhatWentWrong)
{
    recordDay();
    const std::string url = urlOf(port_);
    std::ofstream(folder_.file("bad")) << "[body]\n{what}\n[reply]\n";
    std::ofstream(folder_.file("secrets")) << "a\nb\n";
    const std::vector<std::vector<std::string>> cases{
        {"record"},
        {"record", "--to", folder_.file("x"), "--upstream", "nowhere"},
        {"record", "--to", folder_.file("no/x"), "--upstream", url},
        {"record", "--to", folder_.file("x"), "--upstream", "https://127.0.0.1:1", "--ca", folder_.file("bad")},
        {"replay"},
        {"replay", folder_.file("none")},
        {"replay", folder_.file("bad")},
        {"replay", tape(), "--listen", "0.0.0.0:0"},
        {"replay", tape(), "--upstream", url},
        {"verify", tape()},
        {"verify", folder_.file("bad"), "--upstream", url},
        {"verify", tape(), "--upstream", url},
        {"verify", tape(), "--upstream", url, "--secrets", folder_.file("none")},
    };
    std::string said;
    for (const std::vector<std::string>& arguments : cases) {
        EXPECT_EQ(run(arguments, said), 2) << testing::PrintToString(arguments);
        EXPECT_THAT(said, IsLike("pvwapi-service: [^\n]+\n")) << testing::PrintToString(arguments);
    }
    process_.signal(SIGTERM);
    process_.wait();
    EXPECT_EQ(verify(port_, said), 3) << said;
    EXPECT_EQ(run({"record", "--help"}, said), 0);
    EXPECT_THAT(said, HasSubstr("--upstream"));
}

}  // namespace

}  // namespace service::test
