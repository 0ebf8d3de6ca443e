// Clients of many threads at once, over all that a process has only once: the trace sink, the log, kept connections.
// Run with a thread sanitizer too.
#include <atomic>
#include <cstdio>
#include <memory>

#include "pvtrace/pvtrace.h"
#include "tests/client/ClientFixture.h"
#include "tests/client/TimedOperations.h"

namespace {

using namespace std::chrono_literals;

constexpr int kThreads = 8;
constexpr int kRounds = 4;
constexpr auto kLongEnough = 5s;  // of a slow machine: every operation once, at least

std::atomic<int> g_lines = 0;
std::atomic<int> g_otherLines = 0;

void countLine(int, const kzn::pvutil::stringex::CharT*)
{
    ++g_lines;
}

void countOtherLine(int, const kzn::pvutil::stringex::CharT*)
{
    ++g_otherLines;
}

class ManyThreadsTest : public ClientFixture {
protected:
    // Every operation takes it for a success, and the timer of each client ticks every 20 ms.
    ManyThreadsTest() { otherwise(sessionReply(40)); }
    ~ManyThreadsTest() override
    {
        PvTraceSetSink(nullptr);
        CWapiClient::setLog(4);
    }

    // Between the operations ticks are delivered and copies come and go; whichever of the two is left goes on.
    void useEverything(CWapiClient first, bool isCancelled)
    {
        auto own = std::make_unique<CWapiClient>(first);
        int told = 0;
        own->onExchange([&](const CWapiClient::Exchange&) { return ++exchanges > 0; });
        own->onRefresh([&](int) { ++told; });
        ASSERT_EQ(own->getSessionInfo("c"_w), 1);
        std::atomic<bool> over = false;
        std::jthread other([&, client = own.get()] {
            while (!over) {
                std::this_thread::sleep_for(700us);
                if (isCancelled) client->cancel();
            }
        });
        const auto end = Clock::now() + kLongEnough;
        for (int round = 0; round < kRounds && (round == 0 || Clock::now() < end); ++round)
            for (const TimedOperation& operation : timedOperations()) callOne(*own, operation, isCancelled);
        EXPECT_TRUE(pumpUntil([&] { return told > 0; }));
        over = true;
        other.join();
        ticks += told;
    }

    void callOne(CWapiClient& own, const TimedOperation& operation, bool isCancelled)
    {
        const int result = operation.call(own);
        const bool isEnded = isCancelled && own.getNetworkErrorKind() == CWapiClient::NETWORK_CANCELLED;
        const int due = operation.refused() ? 0 : 1;
        EXPECT_TRUE(result == due || isEnded) << operation.name << ": " << narrow(own.GetLstMsg().reason);
        ++calls;
        if (isEnded) ++ended;
        const CWapiClient copy(own);
        EXPECT_EQ(copy.getNetworkErrorKind(), own.getNetworkErrorKind());
        kzn::pvutil::DispatchPendingMessages();
    }

    std::atomic<int> calls = 0;
    std::atomic<int> ended = 0;
    std::atomic<int> exchanges = 0;
    std::atomic<int> ticks = 0;
};

}  // namespace

TEST_F(ManyThreadsTest, UseEverythingAtOnce)
{
    std::atomic<bool> over = false;
    std::jthread host([&] {
        for (int times = 0; !over; ++times) {
            PvTraceSetSink(times % 2 == 0 ? &countLine : &countOtherLine);
            CWapiClient::setLog(times % 5);
            std::this_thread::sleep_for(1ms);
        }
    });
    std::vector<std::jthread> threads;
    for (int each = 0; each < kThreads; ++each)
        threads.emplace_back([&, each] { useEverything(CWapiClient(server.url(kOperationPath)), each % 2 == 1); });
    threads.clear();
    over = true;
    host.join();
    std::printf("%d calls, %d ended, %d ticks\n", calls.load(), ended.load(), ticks.load());
    EXPECT_GT(ended, 0);
    EXPECT_GE(calls, kThreads * static_cast<int>(timedOperations().size()));
    EXPECT_GT(exchanges, calls / 2);  // some send nothing, some are stopped before they begin
    EXPECT_GE(ticks, kThreads);
    EXPECT_GT(g_lines, 0);
    EXPECT_GT(g_otherLines, 0);
}

// Threads come and go, each with a client that dies with its timer armed; those that are left are not disturbed.
TEST_F(ManyThreadsTest, EndWithTheirTimersArmed)
{
    for (int round = 0; round < 10; ++round) {
        std::vector<std::jthread> threads;
        for (int each = 0; each < kThreads; ++each)
            threads.emplace_back([&] {
                CWapiClient own(server.url(kOperationPath));
                EXPECT_EQ(own.getSessionInfo("c"_w), 1);
                own.OnTimer(1);  // arms it
                const CWapiClient copy(own);
                std::this_thread::sleep_for(25ms);
            });
    }
    const std::size_t before = requestCount();
    EXPECT_TRUE(staysQuiet(100ms));
    EXPECT_EQ(requestCount(), before);
    EXPECT_EQ(client.getSessionInfo("c"_w), 1);
}
