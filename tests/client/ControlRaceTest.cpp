// Cancellations that meet a call at any moment of it, from several threads; run with a thread sanitizer too.
#include <atomic>
#include <random>

#include "tests/client/ClientFixture.h"

namespace {

using namespace std::chrono_literals;

class ControlRaceTest : public ClientFixture {
protected:
    ControlRaceTest() { otherwise(credReply("new")); }

    // A call is a success with its output, or was cancelled and has left it.
    void expectEither(int result, CWapiClient& of, const CStringT& cred)
    {
        if (result == 1) {
            EXPECT_EQ(narrow(cred), "new");
            EXPECT_EQ(of.getNetworkErrorKind(), CWapiClient::NETWORK_NONE);
            ++succeeded;
        } else {
            EXPECT_EQ(narrow(cred), "before");
            EXPECT_EQ(of.getNetworkErrorKind(), CWapiClient::NETWORK_CANCELLED) << narrow(of.getNetworkErrorText());
            ++ended;
        }
    }

    void callAgainAndAgain(CWapiClient& of, int times)
    {
        for (int time = 0; time < times; ++time) {
            CStringT cred = "before"_w;
            const int result = of.cloneSession("c"_w, {}, cred);
            expectEither(result, of, cred);
        }
    }

    // What one call takes here and now, so that cancellations at random meet some calls and miss others.
    std::chrono::microseconds usualTime()
    {
        constexpr int kCalls = 20;
        const auto begin = std::chrono::steady_clock::now();
        callAgainAndAgain(client, kCalls);
        return std::chrono::ceil<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin) / kCalls;
    }

    int succeeded = 0;
    int ended = 0;
};

}  // namespace

TEST_F(ControlRaceTest, CancelAtAnyMomentOfACall)
{
    const auto longest = 8 * usualTime().count();
    succeeded = 0;
    std::atomic<bool> over = false;
    const auto cancelNowAndThen = [&](unsigned seed) {
        std::mt19937 random(seed);
        std::uniform_int_distribution<std::chrono::microseconds::rep> pause(0, longest);
        while (!over) {
            std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
            client.cancel();
        }
    };
    std::jthread one(cancelNowAndThen, 1U);
    std::jthread other(cancelNowAndThen, 2U);
    const auto enough = std::chrono::steady_clock::now() + 6s;
    for (int time = 0; time < 1500 && std::chrono::steady_clock::now() < enough; ++time) callAgainAndAgain(client, 1);
    over = true;
    one.join();
    other.join();
    EXPECT_GT(succeeded, 0);
    EXPECT_GT(ended, 0);
    callAgainAndAgain(client, 3);
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "");
}

TEST_F(ControlRaceTest, CancelWhenTheReplyIsThere)
{
    for (int time = 0; time < 200; ++time) {
        std::atomic<bool> answered = false;
        client.onExchange([&](const CWapiClient::Exchange& exchange) {
            if (exchange.status != 0) answered = true;
            return true;
        });
        std::jthread other([&] {
            while (!answered) std::this_thread::yield();
            client.cancel();
        });
        CStringT cred = "before"_w;
        EXPECT_EQ(client.cloneSession("c"_w, {}, cred), 1);
        EXPECT_EQ(narrow(cred), "new");
    }
}

// The client ends on its own thread, after those that cancel its calls.
TEST_F(ControlRaceTest, ClientsThatEndAfterACancelledCall)
{
    for (int time = 0; time < 100; ++time) {
        std::jthread owner([&] {
            CWapiClient own(server.url(kOperationPath));
            std::jthread first([&] { own.cancel(); });
            std::jthread second([&] { own.cancel(); });
            CStringT cred = "before"_w;
            const int result = own.cloneSession("c"_w, {}, cred);
            first.join();
            second.join();
            expectEither(result, own, cred);
        });
        owner.join();
    }
}

TEST_F(ControlRaceTest, ClientsOfSeveralThreadsAreEndedByThemselves)
{
    std::vector<std::jthread> owners;
    for (int each = 0; each < 4; ++each)
        owners.emplace_back([&] {
            CWapiClient own(server.url(kOperationPath));
            std::atomic<bool> over = false;
            std::jthread other([&] {
                while (!over) {
                    std::this_thread::sleep_for(500us);
                    own.cancel();
                }
            });
            for (int time = 0; time < 200; ++time) {
                CStringT cred = "before"_w;
                const int result = own.cloneSession("c"_w, {}, cred);
                EXPECT_EQ(narrow(cred), result == 1 ? "new" : "before");
            }
            over = true;
        });
}
