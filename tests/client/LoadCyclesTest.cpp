// The library loaded and unloaded again and again, with a call now and then: nothing of it stays behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "tests/support/CaptureServer.h"
#include "tests/support/TestSystem.h"

namespace {

using namespace std::chrono_literals;

using CallOnce = int(const char* address);

constexpr int kLoadsPerCall = 10;
constexpr int kWarmUp = 20;

// What may stay of a thousand loads: pages that the heap has not given back, not one page a load.
constexpr std::size_t kMostMemory = std::size_t{1} << 20;

// PVWAPI_LOADS says how many; the usual number is one that no run of all tests feels.
int loads()
{
    const char* const wanted = std::getenv("PVWAPI_LOADS");
    return wanted != nullptr ? std::max(std::atoi(wanted), kLoadsPerCall) : 200;
}

// Each call meets a server of its own, so that nothing of an earlier one is counted.
void loadAndCall()
{
    LoadedLibrary library(LOAD_CALLER);
    ASSERT_TRUE(library);
    EXPECT_TRUE(isOpenHere(logFile()));
    kzn::test::CaptureServer server;
    server.reply(200, "text/xml", "<kznapi><response><result>SUCCESS</result></response></kznapi>");
    auto* const callOnce = reinterpret_cast<CallOnce*>(library.function("callOnce"));
    ASSERT_NE(callOnce, nullptr);
    EXPECT_EQ(callOnce(server.address("/kznconnect/op.do").c_str()), 1);
    EXPECT_EQ(server.requests().size(), 1U);
    library.unload();
    EXPECT_FALSE(isOpenHere(logFile()));
}

void load()
{
    const LoadedLibrary library(LOAD_CALLER);
    ASSERT_TRUE(library);
}

// A thread or a handle that ends by itself may take a moment for it.
SystemUse settledUse()
{
    SystemUse last = systemUse();
    for (int alike = 0, times = 0; alike < 10 && times < 500; ++times) {
        std::this_thread::sleep_for(10ms);
        const SystemUse now = systemUse();
        alike = now.handles == last.handles && now.threads == last.threads ? alike + 1 : 0;
        last = now;
    }
    return last;
}

void expectFlat(void (*cycle)(), int times, std::size_t keptHandles)
{
    keepSystemHttp();
    for (int time = 0; time < kWarmUp; ++time) cycle();
    const SystemUse before = settledUse();
    for (int time = 0; time < times && !testing::Test::HasFailure(); ++time) cycle();
    const SystemUse after = settledUse();
    EXPECT_LE(after.handles, before.handles + keptHandles);
    EXPECT_LE(after.threads, before.threads);
    if (MEMORY_IS_OURS) {
        EXPECT_LE(after.memory, before.memory + kMostMemory);
    }
    std::printf("%d loads: handles %zu to %zu, threads %zu to %zu, memory %zu to %zu KiB\n", times, before.handles,
                after.handles, before.threads, after.threads, before.memory / 1024, after.memory / 1024);
}

}  // namespace

TEST(LoadCyclesTest, LeaveNothingBehind)
{
    expectFlat(load, loads(), 0);
}

TEST(LoadCyclesTest, LeaveNothingOfTheirCalls)
{
    const int calls = loads() / kLoadsPerCall;
    expectFlat(loadAndCall, calls, static_cast<std::size_t>(calls + 1) * kHandlesKeptOfAModule);
}
