// How long a call takes to return once it is cancelled, in each phase: the median and the longest of many tries.
//   stop_times [TRIES]
// Fails where the median is above 100 ms, or the longest is if there are tries enough to say so.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "pvutil/CallControl.h"
#include "pvutil/HttpClient.h"
#include "tests/pvutil/SlowLookUp.h"
#include "tests/support/BusyPort.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/Text.h"

namespace kzn::test {
namespace {

using namespace std::chrono_literals;
using pvutil::CallControl;
using pvutil::CallScope;
using pvutil::CZelHttpClient;
using pvutil::HTTP_METHOD;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
namespace HttpOption = pvutil::HttpOption;

constexpr Milliseconds kLimit = 100ms;
constexpr std::size_t kEnoughTries = 50;

using Ask = std::function<int(CZelHttpClient&)>;

Ask getFrom(const CStringT& url)
{
    return [url](CZelHttpClient& client) {
        return client.Request(url, HTTP_METHOD::GET, CStringT(), {}, HttpOption::kDownload);
    };
}

Milliseconds timeOf(const Ask& ask, bool& isRight)
{
    CallControl control;
    CZelHttpClient client;
    client.ControlledBy(&control);
    const CallScope call(&control, 0ms);
    Clock::time_point cancelled;
    std::jthread other([&] {
        std::this_thread::sleep_for(40ms);
        cancelled = Clock::now();
        control.cancel();
    });
    const int result = ask(client);
    const auto end = Clock::now();
    other.join();
    isRight = isRight && result == -1 && client.Failure().fault == pvutil::HttpFault::cancelled;
    return end - cancelled;
}

// Whether every try was cancelled, and none took longer than the limit.
bool measure(const char* phase, std::size_t tries, const Ask& ask)
{
    std::vector<Milliseconds> times;
    bool isRight = true;
    for (std::size_t at = 0; at < tries; ++at) times.push_back(timeOf(ask, isRight));
    std::sort(times.begin(), times.end());
    const bool isFast = times[tries / 2] <= kLimit && (tries < kEnoughTries || times.back() <= kLimit);
    std::printf("%-10s median %8.3f ms   longest %8.3f ms%s%s\n", phase, times[tries / 2].count(), times.back().count(),
                isRight ? "" : "   NOT CANCELLED", isFast ? "" : "   TOO SLOW");
    return isRight && isFast;
}

bool measureAll(std::size_t tries)
{
    CaptureServer silent;
    silent.otherwise(Script().stall());
    CaptureServer dripping;
    dripping.otherwise(Script().send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n<kzn").stall());
    CaptureServer deaf;
    deaf.stopReading();
    const BusyPort busy;
    const std::string large(30'000'000, 'x');
    const Ask send = [&](CZelHttpClient& client) {
        const std::string_view piece = large;
        return client.Request(deaf.url("/"), HTTP_METHOD::POST, std::span(&piece, 1), {}, HttpOption::kUpload);
    };
    bool isGood = !kHasSlowLookUp || measure("look-up", tries, getFrom(wide("http://slow.invalid/")));
    isGood =
        measure("connect", tries, getFrom(wide("http://127.0.0.1:" + std::to_string(busy.port()) + "/"))) && isGood;
    isGood =
        measure("secure", tries, getFrom(wide("https://127.0.0.1:" + std::to_string(deaf.port()) + "/"))) && isGood;
    isGood = measure("send", tries, send) && isGood;
    isGood = measure("wait", tries, getFrom(silent.url("/"))) && isGood;
    return measure("receive", tries, getFrom(dripping.url("/"))) && isGood;
}

}  // namespace
}  // namespace kzn::test

int main(int argc, char** argv)
{
    const auto tries = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100;
    return tries > 0 && kzn::test::measureAll(tries) ? EXIT_SUCCESS : EXIT_FAILURE;
}
