#include "bench/SessionCalls.h"

#include <cstddef>
#include <cstdint>

#include "bench/KeptPost.h"
#include "bench/LogSize.h"
#include "bench/Reach.h"
#include "bench/Timing.h"

namespace kzn::bench {

namespace {

using kzn::pvutil::stringex::FromUtf8;

constexpr int kBatch = 2;  // calls timed as one piece of work: short, so that some are left alone
constexpr std::size_t kCalls = 1'000;
constexpr std::string_view kCred = "5f0c2f7a-6d3b-4c6e-9a55-1d2f3e4b5c6d:us-00f1e2d3c4b5a697";

}  // namespace

SessionCalls::SessionCalls(Report& report)
    : report_(report),
      isPlaced_(stayOnOneProcessor()),
      server_(kSessionReply),
      client_(FromUtf8(server_.url())),
      cred_(FromUtf8(kCred))
{
    report.require(isPlaced_, "the program cannot stay on one processor");
}

void SessionCalls::countConnections()
{
    const std::size_t before = server_.connections();
    bool well = true;
    for (std::size_t call = 0; call < kCalls; ++call) well = client_.getSessionInfo(cred_) == 1 && well;
    report_.require(well && client_.getRefreshInterval() == 1'800'000, "a call has failed");
    report_.exactly("connections that 1,000 calls open", server_.connections() - before, connectionsFor(kCalls));
}

Ratio SessionCalls::against(const std::function<bool()>& peer)
{
    const auto logBefore = logSize();
    const int pairs = report_.pairs(kCallPairs);
    const Ratio ratio = compareUndisturbed(
        pairs, [&] { return secondsOfBatch([&] { return client_.getSessionInfo(cred_) == 1; }); },
        [&] { return secondsOfBatch(peer); });
    const std::uintmax_t calls = std::uintmax_t{kBatch} * static_cast<std::uintmax_t>(pairs + 1);
    report_.require(logSize() - logBefore > calls * (kSessionBody.size() + kSessionReply.size()),
                    "the log was not written");
    return ratio;
}

double SessionCalls::secondsOfBatch(const std::function<bool()>& call)
{
    bool well = true;
    const double seconds = secondsOf(wallTime, [&] {
        for (int i = 0; i < kBatch; ++i) well = call() && well;
    });
    report_.require(well, "a call has failed");
    return seconds;
}

}  // namespace kzn::bench
