// Which reply belongs to which request.
#include "log/Calls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/log/LogText.h"

namespace {

using namespace logreader;
using namespace logtest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kLogout = "cmd=logout&cred=c";
constexpr std::string_view kTabs = "cmd=get&cred=c&type=workspace&id=w1&select=tabs";

TEST(Calls, RequestAndReplyAreACall)
{
    const auto calls = callsOf(call(kLogout, kSuccess) + call(kTabs, failure("no such space", "space.unknown")));
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].number, 1U);
    EXPECT_EQ(calls[0].time, kTime);
    EXPECT_EQ(calls[0].pid, "11");
    EXPECT_EQ(calls[0].tid, "12");
    EXPECT_EQ(calls[0].operation, "logout");
    EXPECT_EQ(calls[0].request->bytes, kLogout.size());
    EXPECT_EQ(calls[0].reply->text, kSuccess);
    EXPECT_EQ(calls[0].outcome.kind, Outcome::Kind::success);
    EXPECT_EQ(calls[1].number, 2U);
    EXPECT_EQ(calls[1].operation, "getTabs");
    EXPECT_EQ(valueOf(calls[1].fields, "id"), "w1");
    EXPECT_EQ(calls[1].outcome.reason, "no such space");
    EXPECT_EQ(calls[1].outcome.exceptionID, "space.unknown");
}

TEST(Calls, ThreadsAndProcessesAreToldApart)
{
    const std::string log = entry(kLogout, "1", "1") + entry(kTabs, "1", "2") + entry(kLogout, "2", "1") +
                            entry("not XML", "1", "2") + entry(kSuccess, "2", "1") + entry(failure("", ""), "1", "1");
    EXPECT_THAT(resultsOf(log), ElementsAre("getTabs not XML", "logout SUCCESS", "logout FAILURE"));
}

TEST(Calls, EmptyReplyIsNone)
{
    const auto calls = callsOf(call(kLogout, "") + call(kTabs, kSuccess));
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].outcome.kind, Outcome::Kind::noReply);
    EXPECT_TRUE(calls[0].reply.has_value());
    EXPECT_EQ(calls[1].outcome.kind, Outcome::Kind::success);
}

TEST(Calls, RequestWhoseReplyNeverCameIsShown)
{
    EXPECT_THAT(resultsOf(entry(kLogout) + entry(kTabs) + entry(kSuccess)),
                ElementsAre("logout no reply", "getTabs SUCCESS"));
    const auto calls = callsOf(entry(kTabs, "1", "1") + entry(kLogout, "1", "2"));
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].operation, "getTabs");
    EXPECT_FALSE(calls[0].reply.has_value());
    EXPECT_EQ(calls[1].operation, "logout");
}

TEST(Calls, ReplyAloneIsAProxiedCalls)
{
    const auto calls = callsOf(entry(kSuccess) + call(kTabs, kSuccess) + entry("plain text") + entry(""));
    ASSERT_EQ(calls.size(), 4U);
    EXPECT_EQ(calls[0].operation, "WapiProxyCall");
    EXPECT_FALSE(calls[0].request.has_value());
    EXPECT_EQ(calls[0].outcome.kind, Outcome::Kind::success);
    EXPECT_EQ(calls[1].operation, "getTabs");
    EXPECT_EQ(calls[2].operation, "WapiProxyCall");
    EXPECT_EQ(calls[3].outcome.kind, Outcome::Kind::noReply);
}

// A hostile service answers with a request's text: the calls behind it keep their own replies.
TEST(Calls, ReplyThatLooksLikeARequestShiftsNothing)
{
    EXPECT_THAT(
        resultsOf(call(kTabs, kLogout) + call(kTabs, kSuccess) + entry(kLogout) + call(kTabs, kSuccess)),
        ElementsAre("getTabs no reply", "logout no reply", "getTabs SUCCESS", "logout no reply", "getTabs SUCCESS"));
}

// A forged head adds a call and cuts its own reply short; it takes nothing from those of other threads.
TEST(Calls, HeadForgedInAReplyLeavesOtherThreadsAlone)
{
    const std::string forged = "<kznapi>" + entry("cmd=logout&cred=x", "9", "9") + entry(kSuccess, "9", "9");
    const std::string log = entry(kLogout, "2", "2") + call(kTabs, forged, "1", "1") + entry(kSuccess, "2", "2");
    EXPECT_THAT(resultsOf(log), ElementsAre("getTabs not XML", "logout SUCCESS", "logout SUCCESS"));
}

TEST(Calls, EntriesOfOtherLevelsPartNoCall)
{
    const std::string between = entry("cmd=logout&cred=c", "11", "12", "\n", "Error");
    EXPECT_THAT(resultsOf(entry(kTabs) + between + entry(kSuccess)), ElementsAre("getTabs SUCCESS"));
}

TEST(Calls, FileThatFollowsHasTheReply)
{
    std::vector<std::string> operations;
    CallReader reader(
        [&](const Call& call) { operations.push_back(call.operation + " " + std::string(nameOf(call.outcome.kind))); });
    reader.feed(entry(kTabs));
    reader.endFile();
    reader.feed(entry(kSuccess));
    reader.pause();
    EXPECT_THAT(operations, ElementsAre("getTabs SUCCESS"));
}

TEST(Calls, MostRequestsThatWaitAreBounded)
{
    std::size_t handed = 0;
    CallReader reader([&](const Call& call) {
        ++handed;
        EXPECT_EQ(call.outcome.kind, Outcome::Kind::noReply);
    });
    for (int tid = 1; tid <= 5000; ++tid) reader.feed(entry(kLogout, "1", std::to_string(tid)));
    EXPECT_GT(handed, 800U);
    EXPECT_LT(handed, 1000U);
    reader.end();
    EXPECT_EQ(handed, 5000U);
}

TEST(Calls, CutOffAtAnyByteTheCallsBeforeAreWhole)
{
    const std::string first = call(kLogout, kSuccess);
    const std::string second = call(kTabs, failure("r\n\xC3\xA9", "e"), "11", "13");
    const std::string log = first + second;
    for (std::size_t length = first.size(); length <= log.size(); ++length) {
        const auto calls = callsOf(std::string_view(log).substr(0, length));
        ASSERT_GE(calls.size(), 1U) << length;
        ASSERT_LE(calls.size(), 2U) << length;
        EXPECT_EQ(calls[0].operation, "logout") << length;
        EXPECT_EQ(calls[0].outcome.kind, Outcome::Kind::success) << length;
    }
    EXPECT_EQ(callsOf(log).back().outcome.kind, Outcome::Kind::failure);
    EXPECT_THAT(callsOf(""), IsEmpty());
}

TEST(Calls, PiecesOfAnySizeAreTheSameLog)
{
    const std::string log = call(kLogout, kSuccess) + call(kTabs, "", "1", "2") + entry("plain\r\ntext");
    for (std::size_t piece = 1; piece < 100; ++piece) {
        const auto calls = callsOf(log, piece);
        ASSERT_EQ(calls.size(), 3U) << piece;
        EXPECT_EQ(calls[2].reply->text, "plain\r\ntext") << piece;
    }
}

}  // namespace
