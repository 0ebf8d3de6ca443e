// The log file that the library opened when this program loaded it.
#include <gmock/gmock.h>

#include <ctime>
#include <filesystem>
#include <regex>

#include "tests/client/ClientFixture.h"
#include "tests/support/LogLines.h"
#include "tests/support/TestSystem.h"

namespace {

using LogFileTest = ClientFixture;
using testing::ElementsAre;

std::string localTime(std::time_t time)
{
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", std::localtime(&time));
    return text.data();
}

}  // namespace

TEST(LogFile, StandsBeforeAnyClientIsMade)
{
    EXPECT_TRUE(std::filesystem::exists(logFile())) << logFile();
}

TEST_F(LogFileTest, HasLinesOfOneExactForm)
{
    const LogLines log(logFile());
    const std::string earliest = localTime(std::time(nullptr));
    reply(resultReply("SUCCESS", "<x>é𝄞</x>"));
    ASSERT_EQ(client.callWapi("c"_w, "cmd=é𝄞"_w), 1);
    const std::string latest = localTime(std::time(nullptr));

    const std::regex form(
        "\r\n<([-0-9]{10} [:0-9]{8}), pid=([0-9]+), tid=([0-9]+)> Debug:  ([^\r\n]*)(\r?\n)"
        "\r\n<([-0-9]{10} [:0-9]{8}), pid=([0-9]+), tid=([0-9]+)> Debug:  ([^\r\n]*)(\r?\n)");
    const std::string bytes = log.bytesSinceMade();
    std::smatch match;
    ASSERT_TRUE(std::regex_match(bytes, match, form)) << bytes;
    for (const std::size_t line : {1U, 6U}) {
        EXPECT_GE(match[line].str(), earliest);
        EXPECT_LE(match[line].str(), latest);
        EXPECT_EQ(match[line + 1].str(), std::to_string(currentProcessId()));
        EXPECT_EQ(match[line + 2].str(), std::to_string(currentThreadId()));
        EXPECT_EQ(match[line + 4].str(), kEndOfLine);
    }
    EXPECT_EQ(match[4].str(), "cmd=é𝄞&cred=c");
    EXPECT_EQ(match[9].str(), resultReply("SUCCESS", "<x>é𝄞</x>"));
}

TEST_F(LogFileTest, HasARequestBeforeItsReply)
{
    const LogLines log(logFile());
    reply(resultReply("FAILURE"));
    client.callWapi("c"_w, "one"_w);
    reply(resultReply("SUCCESS"));
    client.logout("c"_w);
    EXPECT_THAT(log.sinceMade(), ElementsAre("Debug:  one&cred=c", "Debug:  " + resultReply("FAILURE"),
                                             "Debug:  cmd=logout&cred=c", "Debug:  " + resultReply("SUCCESS")));
}

TEST_F(LogFileTest, HasAReplyInItsOwnCharacterSetAsUtf8)
{
    const LogLines log(logFile());
    server.reply(200, "text/xml; charset=ISO-8859-1", "caf\xE9");
    client.callWapi({}, "x"_w);
    server.reply(200, "text/xml; charset=utf-8", "caf\xE9");
    client.callWapi({}, "x"_w);
    EXPECT_THAT(log.sinceMade(),
                ElementsAre("Debug:  x&cred=", "Debug:  café", "Debug:  x&cred=", "Debug:  caf\xEF\xBF\xBD"));
}

TEST_F(LogFileTest, KeepsTextsWithLineBreaksWhole)
{
    const LogLines log(logFile());
    reply("<kznapi>\r\n\n<a/>\n</kznapi>\n");
    client.callWapi({}, "x\ny"_w);
    EXPECT_THAT(log.sinceMade(), ElementsAre("Debug:  x\ny&cred=", "Debug:  <kznapi>\r\n\n<a/>\n</kznapi>\n"));
}

TEST_F(LogFileTest, HasNothingOfWhatSendsNothing)
{
    const LogLines log(logFile());
    client.GetSpacesTest({}, {});
    client.login({}, {}, {}, {}, 0, 0);
    EXPECT_EQ(log.bytesSinceMade(), "");
}

TEST_F(LogFileTest, TakesLinesUpToTheLevelThatTheHostSets)
{
    const LogLines log(logFile());
    reply(resultReply("SUCCESS"));
    for (const int level : {3, 2, 1, 0, -1}) {
        CWapiClient::setLog(level);
        EXPECT_EQ(client.logout("unseen"_w), 1);
    }
    EXPECT_EQ(log.bytesSinceMade(), "");

    for (const int level : {4, 5, 1'000'000}) {
        CWapiClient::setLog(0);
        CWapiClient::setLog(level);
        const LogLines again(logFile());
        reply(resultReply("SUCCESS"));
        EXPECT_EQ(client.logout("seen"_w), 1);
        EXPECT_THAT(again.sinceMade(), ElementsAre("Debug:  cmd=logout&cred=seen", "Debug:  " + resultReply("SUCCESS")))
            << level;
    }
    CWapiClient::setLog(4);
}
