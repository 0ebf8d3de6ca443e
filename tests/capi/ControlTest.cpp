// Stopping a call, the listeners, the timer's ticks and copies, as a host in C has them.
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/capi/CHost.h"

namespace {

using kzn::test::Script;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

void dispatchUntil(const auto& done)
{
    const auto end = steady_clock::now() + std::chrono::seconds(10);
    while (!done() && steady_clock::now() < end) {
        pvw_dispatch_pending_messages();
        std::this_thread::sleep_for(milliseconds(5));
    }
}

TEST_F(CHost, ACallIsStoppedFromAnotherThread)
{
    server.script(Script().stall());
    std::thread stopping([this] {
        while (requestCount() == 0) std::this_thread::sleep_for(milliseconds(1));
        EXPECT_EQ(pvw_cancel(client), 1);
    });
    EXPECT_EQ(pvw_get_session_info(client, textOf(u"cred")), 0);
    stopping.join();
    EXPECT_EQ(errorKind(), PVW_NETWORK_CANCELLED);
    reply("SUCCESS", "");
    EXPECT_EQ(pvw_get_session_info(client, textOf(u"cred")), 1);
}

TEST_F(CHost, ACallEndsAtItsDeadline)
{
    server.script(Script().stall());
    ASSERT_EQ(pvw_set_deadline(client, 50), 1);
    EXPECT_EQ(pvw_get_session_info(client, textOf(u"cred")), 0);
    EXPECT_EQ(errorKind(), PVW_NETWORK_DEADLINE);
}

struct Ticks {
    pvw_client* client = nullptr;
    std::vector<int> results;
    bool freeing = false;

    static void PVW_CALL told(void* context, int result)
    {
        auto& ticks = *static_cast<Ticks*>(context);
        ticks.results.push_back(result);
        if (!ticks.freeing) return;
        EXPECT_EQ(pvw_client_free(ticks.client), 1);
    }
};

class CTicks : public CHost {
protected:
    void startTimer()
    {
        const std::string session = "<return><sessionInfo><sessionDuration>60</sessionDuration></sessionInfo></return>";
        server.otherwise(200, "text/xml", replyText("SUCCESS", session));
        ASSERT_EQ(pvw_get_session_info(client, textOf(u"cred")), 1);
        unsigned int interval = 0;
        ASSERT_EQ(pvw_get_refresh_interval(client, &interval), 1);
        ASSERT_EQ(interval, 30U);
        ASSERT_EQ(pvw_on_timer(client, 1), 1);
    }

    Ticks ticks;
};

TEST_F(CTicks, AreHeardOf)
{
    ASSERT_EQ(pvw_on_refresh(client, Ticks::told, &ticks), 1);
    startTimer();
    ticks.results.clear();
    dispatchUntil([this] { return ticks.results.size() >= 2; });
    ASSERT_GE(ticks.results.size(), 2U);
    EXPECT_EQ(ticks.results[0], 1);

    ASSERT_EQ(pvw_on_refresh(client, nullptr, nullptr), 1);
    const std::size_t heard = ticks.results.size();
    const std::size_t sent = requestCount();
    dispatchUntil([&] { return requestCount() > sent; });
    EXPECT_GT(requestCount(), sent);
    EXPECT_EQ(ticks.results.size(), heard);
}

TEST_F(CTicks, AClientIsFreedByItsOwnListener)
{
    startTimer();
    ticks.client = client;
    ticks.freeing = true;
    ASSERT_EQ(pvw_on_refresh(client, Ticks::told, &ticks), 1);
    dispatchUntil([this] { return !ticks.results.empty(); });
    EXPECT_EQ(ticks.results.size(), 1U);
    EXPECT_EQ(pvw_client_free(client), 0);
    client = nullptr;
}

TEST_F(CHost, ACopyHasWhatItsOriginalHolds)
{
    ASSERT_EQ(pvw_set_root_cred(client, textOf(u"shared")), 1);
    pvw_client* copy = nullptr;
    ASSERT_EQ(pvw_client_copy(client, &copy), 1);
    EXPECT_NE(copy, client);
    EXPECT_EQ(pvw_client_free(client), 1);
    client = copy;

    pvw_text cred{};
    pvw_result* result = nullptr;
    ASSERT_EQ(pvw_get_root_cred(copy, &cred, &result), 1);
    EXPECT_EQ(std::u16string_view(cred.units, cred.length), u"shared");
    EXPECT_EQ(pvw_result_free(result), 1);
}

struct Heard {
    std::vector<int> statuses;
    std::string url, header, body, reply;
    int answer = 1;

    static int PVW_CALL told(void* context, const pvw_exchange* exchange)
    {
        auto& heard = *static_cast<Heard*>(context);
        EXPECT_EQ(exchange->size, sizeof *exchange);
        EXPECT_EQ(exchange->method, PVW_METHOD_POST);
        heard.statuses.push_back(exchange->status);
        heard.url.assign(exchange->url.bytes, exchange->url.length);
        for (std::size_t at = 0; at < exchange->headerCount; ++at) {
            heard.header.append(exchange->headers[at].bytes, exchange->headers[at].length).append("\n");
        }
        heard.body.clear();
        for (std::size_t at = 0; at < exchange->bodyCount; ++at) {
            heard.body.append(exchange->body[at].bytes, exchange->body[at].length);
        }
        heard.reply.assign(exchange->reply.bytes, exchange->reply.length);
        return heard.answer;
    }
};

TEST_F(CHost, AnExchangeIsHeardOf)
{
    Heard heard;
    ASSERT_EQ(pvw_on_exchange(client, Heard::told, &heard), 1);
    reply("SUCCESS", "");
    EXPECT_EQ(pvw_call_wapi(client, textOf(u"cred"), textOf(u"cmd=x")), 1);
    EXPECT_EQ(heard.statuses, (std::vector<int>{0, 200}));
    EXPECT_TRUE(heard.url.ends_with("/kznconnect/op.do")) << heard.url;
    EXPECT_NE(heard.header.find("Content-Type: application/x-www-form-urlencoded\n"), std::string::npos);
    EXPECT_EQ(heard.body, "cmd=x&cred=cred");
    EXPECT_EQ(heard.reply, replyText("SUCCESS", ""));

    ASSERT_EQ(pvw_on_exchange(client, nullptr, nullptr), 1);
    reply("SUCCESS", "");
    EXPECT_EQ(pvw_call_wapi(client, textOf(u"cred"), textOf(u"cmd=x")), 1);
    EXPECT_EQ(heard.statuses.size(), 2U);
}

TEST_F(CHost, AnExchangeIsPreventedByItsListener)
{
    Heard heard;
    heard.answer = 0;
    ASSERT_EQ(pvw_on_exchange(client, Heard::told, &heard), 1);
    EXPECT_EQ(pvw_call_wapi(client, textOf(u"cred"), textOf(u"cmd=x")), 0);
    EXPECT_EQ(errorKind(), PVW_NETWORK_CANCELLED);
    EXPECT_EQ(requestCount(), 0U);
}

struct Progress {
    std::size_t done = 0;
    int times = 0;
    int answer = 1;

    static int PVW_CALL told(void* context, std::size_t done, std::size_t whole)
    {
        auto& progress = *static_cast<Progress*>(context);
        ++progress.times;
        progress.done = done;
        EXPECT_TRUE(whole == 0 || done <= whole);
        return progress.answer;
    }
};

TEST_F(CHost, ATransferIsHeardOfAndEnded)
{
    const std::string path = testing::TempDir() + "capi-icon.png";
    std::ofstream(path, std::ios::binary) << std::string(5000, 'x');
    std::u16string widePath(path.begin(), path.end());

    Progress progress;
    ASSERT_EQ(pvw_on_transfer_progress(client, Progress::told, &progress), 1);
    reply("SUCCESS", "");
    pvw_text url{};
    pvw_result* result = nullptr;
    EXPECT_EQ(pvw_set_space_icon(client, textOf(u"c"), textOf(u"W"), textOf(widePath), &url, &result), 1);
    EXPECT_EQ(pvw_result_free(result), 1);
    EXPECT_GE(progress.times, 1);
    EXPECT_GE(progress.done, 5000U);

    progress.answer = 0;
    EXPECT_EQ(pvw_set_space_icon(client, textOf(u"c"), textOf(u"W"), textOf(widePath), &url, &result), 0);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(errorKind(), PVW_NETWORK_CANCELLED);
}

}  // namespace
