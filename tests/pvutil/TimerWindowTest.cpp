// The timer window with real ticks: when they come, whose they are, and that none comes to an owner that is gone.
#include "pvutil/TimerWindow.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "pvutil/MessageLoop.h"

namespace kzn::test {
namespace {

using namespace std::chrono_literals;
using pvutil::DispatchPendingMessages;
using pvutil::TimerWindow;
using Clock = std::chrono::steady_clock;

constexpr auto kClassName = "pvWapi timer window test";

// Somebody who owns a timer window, and what came to it.
struct Owner {
    static void tick(void* owner, unsigned int timerID)
    {
        auto& self = *static_cast<Owner*>(owner);
        self.ticks.push_back(timerID);
        if (self.onTick) self.onTick();
    }

    void create() { window.create(kClassName, this, tick); }
    void share(const Owner& other) { window.share(other.window, this); }

    std::vector<unsigned int> ticks;
    std::function<void()> onTick;
    TimerWindow window;
};

// Dispatches until `done`, or for as long as a loaded machine may need.
bool pumpUntil(const std::function<bool()>& done)
{
    for (const auto end = Clock::now() + 10s; !done() && Clock::now() < end; std::this_thread::sleep_for(1ms))
        DispatchPendingMessages();
    return done();
}

void pumpFor(std::chrono::milliseconds time)
{
    for (const auto end = Clock::now() + time; Clock::now() < end; std::this_thread::sleep_for(1ms))
        DispatchPendingMessages();
}

TEST(TimerWindow, TicksAgainAndAgainAfterOnePeriod)
{
    Owner owner;
    owner.create();
    ASSERT_TRUE(owner.window);
    const auto begin = Clock::now();
    owner.window.setTimer(1, 60);
    EXPECT_TRUE(pumpUntil([&] { return owner.ticks.size() == 1; }));
    EXPECT_GE(Clock::now() - begin, 55ms);
    EXPECT_TRUE(pumpUntil([&] { return owner.ticks.size() == 3; }));
    EXPECT_GE(Clock::now() - begin, 160ms);
    EXPECT_EQ(owner.ticks, (std::vector<unsigned int>{1, 1, 1}));
}

TEST(TimerWindow, ItsNumberIsHandedOn)
{
    Owner owner;
    owner.create();
    owner.window.setTimer(7, 10);
    EXPECT_TRUE(pumpUntil([&] { return !owner.ticks.empty(); }));
    EXPECT_EQ(owner.ticks.front(), 7U);
}

TEST(TimerWindow, TicksNotBeforeItIsSet)
{
    Owner owner;
    owner.create();
    pumpFor(60ms);
    EXPECT_EQ(owner.ticks.size(), 0U);
}

TEST(TimerWindow, SettingItAgainBeginsThePeriodAnew)
{
    Owner owner;
    owner.create();
    for (int times = 0; times < 6; ++times) {
        owner.window.setTimer(1, 300);
        pumpFor(100ms);
    }
    EXPECT_EQ(owner.ticks.size(), 0U);
    EXPECT_TRUE(pumpUntil([&] { return !owner.ticks.empty(); }));
}

TEST(TimerWindow, PeriodIsKeptWithinTheLimits)
{
    Owner slow;
    slow.create();
    Owner fast;
    fast.create();
    for (const unsigned int longest : {0xFFFFFFFFU, 0x80000000U, 0x7FFFFFFFU}) slow.window.setTimer(1, longest);
    const auto begin = Clock::now();
    fast.window.setTimer(1, 0);
    EXPECT_TRUE(pumpUntil([&] { return fast.ticks.size() == 10; }));
    EXPECT_GE(Clock::now() - begin, 85ms);
    EXPECT_EQ(slow.ticks.size(), 0U);
}

TEST(TimerWindow, TicksNobodyDispatchedAreOne)
{
    Owner owner;
    owner.create();
    owner.window.setTimer(1, 40);
    std::this_thread::sleep_for(250ms);
    DispatchPendingMessages();
    EXPECT_EQ(owner.ticks.size(), 1U);
}

TEST(TimerWindow, DispatchingWithoutAWindowDoesNothing)
{
    pumpFor(20ms);
    EXPECT_EQ(DispatchPendingMessages(), 0);
}

TEST(TimerWindow, WithoutAWindowNothingHappens)
{
    Owner owner;
    EXPECT_FALSE(owner.window);
    owner.window.setTimer(1, 10);
    Owner copy;
    copy.share(owner);
    EXPECT_FALSE(copy.window);
    copy.window.setTimer(1, 10);
    pumpFor(60ms);
    EXPECT_EQ(owner.ticks.size() + copy.ticks.size(), 0U);
    owner.window.destroy();
    owner.window.destroy();
}

TEST(TimerWindow, DestroyedItTicksNoMore)
{
    Owner owner;
    owner.create();
    owner.window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return !owner.ticks.empty(); }));
    owner.window.destroy();
    EXPECT_FALSE(owner.window);
    const std::size_t before = owner.ticks.size();
    owner.window.setTimer(1, 10);
    pumpFor(80ms);
    EXPECT_EQ(owner.ticks.size(), before);
}

TEST(TimerWindow, DestroyedWithATickDueItIsNotDelivered)
{
    Owner owner;
    owner.create();
    owner.window.setTimer(1, 10);
    std::this_thread::sleep_for(60ms);
    owner.window.destroy();
    DispatchPendingMessages();
    EXPECT_EQ(owner.ticks.size(), 0U);
}

TEST(TimerWindow, SharedItTicksForTheFirst)
{
    Owner first;
    first.create();
    Owner copy;
    copy.share(first);
    ASSERT_TRUE(copy.window);
    copy.window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return first.ticks.size() >= 3; }));
    EXPECT_EQ(copy.ticks.size(), 0U);
}

TEST(TimerWindow, HandedOverToTheOneThatSharedNextLongest)
{
    std::optional<Owner> first(std::in_place);
    first->create();
    Owner second;
    second.share(*first);
    std::optional<Owner> third(std::in_place);
    third->share(second);
    first->window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return first->ticks.size() >= 2; }));

    first.reset();
    EXPECT_TRUE(pumpUntil([&] { return second.ticks.size() >= 2; }));
    EXPECT_EQ(third->ticks.size(), 0U);

    const std::size_t before = second.ticks.size();
    second.window.destroy();
    EXPECT_TRUE(pumpUntil([&] { return third->ticks.size() >= 2; }));
    EXPECT_EQ(second.ticks.size(), before);
    third.reset();
    pumpFor(60ms);
    EXPECT_EQ(second.ticks.size(), before);
}

TEST(TimerWindow, CopyThatGoesFirstChangesNothing)
{
    Owner first;
    first.create();
    for (int times = 0; times < 3; ++times) {
        Owner copy;
        copy.share(first);
        copy.window.setTimer(1, 10);
    }
    EXPECT_TRUE(pumpUntil([&] { return first.ticks.size() >= 2; }));
}

TEST(TimerWindow, SharingLetsGoOfItsOwn)
{
    Owner first;
    first.create();
    Owner second;
    second.create();
    second.window.setTimer(2, 10);
    second.share(first);
    second.share(first);
    second.share(second);
    first.window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return first.ticks.size() >= 3; }));
    EXPECT_EQ(second.ticks.size(), 0U);
    for (const unsigned int tick : first.ticks) EXPECT_EQ(tick, 1U);
}

TEST(TimerWindow, SharingOneThatHasNoneLetsGoToo)
{
    Owner first;
    Owner second;
    second.create();
    second.window.setTimer(1, 10);
    second.share(first);
    EXPECT_FALSE(second.window);
    pumpFor(60ms);
    EXPECT_EQ(second.ticks.size(), 0U);
}

TEST(TimerWindow, TickMayDestroyItsOwnWindow)
{
    auto owner = std::make_unique<Owner>();
    owner->create();
    owner->window.setTimer(1, 10);
    int ticks = 0;
    owner->onTick = [&] {
        ++ticks;
        owner->window.destroy();
    };
    EXPECT_TRUE(pumpUntil([&] { return ticks == 1; }));
    pumpFor(60ms);
    EXPECT_EQ(ticks, 1);
}

TEST(TimerWindow, TickMayDestroyTheWindowsThatAreDueToo)
{
    std::vector<std::unique_ptr<Owner>> owners;
    std::optional<int> first;
    int others = 0;
    for (int number = 0; number < 5; ++number) {
        owners.push_back(std::make_unique<Owner>());
        owners.back()->create();
        owners.back()->onTick = [&, number] {
            // On a slow machine the one that is left may be due again.
            if (first && *first != number) ++others;
            first = number;
            for (int other = 0; other < 5; ++other)
                if (other != number) owners[static_cast<std::size_t>(other)].reset();
        };
        owners.back()->window.setTimer(1, 10);
    }
    std::this_thread::sleep_for(60ms);
    EXPECT_GT(DispatchPendingMessages(), 0);
    EXPECT_TRUE(first);
    pumpFor(30ms);
    EXPECT_EQ(others, 0);
}

TEST(TimerWindow, TickMayDispatchItself)
{
    Owner outer;
    outer.create();
    Owner inner;
    inner.create();
    outer.onTick = [&] {
        outer.onTick = nullptr;
        EXPECT_TRUE(pumpUntil([&] { return inner.ticks.size() >= 2; }));
    };
    outer.window.setTimer(1, 10);
    inner.window.setTimer(2, 10);
    EXPECT_TRUE(pumpUntil([&] { return outer.ticks.size() >= 3; }));
    for (const unsigned int tick : inner.ticks) EXPECT_EQ(tick, 2U);
}

TEST(TimerWindow, TickMaySetTheTimerAnew)
{
    Owner owner;
    owner.create();
    owner.onTick = [&] { owner.window.setTimer(1, 100); };
    owner.window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return owner.ticks.size() == 1; }));
    const auto begin = Clock::now();
    EXPECT_TRUE(pumpUntil([&] { return owner.ticks.size() == 2; }));
    EXPECT_GE(Clock::now() - begin, 80ms);
}

TEST(TimerWindow, TickMayThrow)
{
    Owner owner;
    owner.create();
    owner.onTick = [] { throw 1; };
    owner.window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return owner.ticks.size() >= 2; }));
}

TEST(TimerWindow, SlowTickDoesNotHoldTheDispatchForEver)
{
    Owner owner;
    owner.create();
    owner.onTick = [] { std::this_thread::sleep_for(30ms); };
    owner.window.setTimer(1, 10);
    std::this_thread::sleep_for(30ms);
    const auto begin = Clock::now();
    EXPECT_GE(DispatchPendingMessages(), 1);
    EXPECT_LT(Clock::now() - begin, 2s);
}

TEST(TimerWindow, TicksOnTheThreadThatMadeIt)
{
    Owner here;
    here.create();
    here.window.setTimer(1, 10);
    std::thread([&] {
        Owner there;
        there.create();
        there.window.setTimer(2, 10);
        EXPECT_TRUE(pumpUntil([&] { return there.ticks.size() >= 3; }));
    }).join();
    EXPECT_EQ(here.ticks.size(), 0U);
    EXPECT_TRUE(pumpUntil([&] { return !here.ticks.empty(); }));
}

TEST(TimerWindow, DestroyedOnAnotherThreadItTicksNoMore)
{
    Owner owner;
    owner.create();
    owner.window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return !owner.ticks.empty(); }));
    std::thread([&] { owner.window.destroy(); }).join();
    const std::size_t before = owner.ticks.size();
    pumpFor(60ms);
    EXPECT_EQ(owner.ticks.size(), before);
    owner.create();
    owner.window.setTimer(1, 10);
    EXPECT_TRUE(pumpUntil([&] { return owner.ticks.size() > before; }));
}

TEST(TimerWindow, OutlivesTheThreadThatMadeIt)
{
    Owner owner;
    std::thread([&] { owner.create(); }).join();
    owner.window.setTimer(1, 10);
    pumpFor(60ms);
    EXPECT_EQ(owner.ticks.size(), 0U);
}

TEST(TimerWindow, ManyCanBeMade)
{
    for (int times = 0; times < 3000; ++times) {
        Owner owner;
        owner.create();
        ASSERT_TRUE(owner.window) << times;
    }
}

}  // namespace
}  // namespace kzn::test
