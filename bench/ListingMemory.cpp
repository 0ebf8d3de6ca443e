// The heap that calls take: of a listing the reply off the wire, the log, the trace, the parser and the records; of a
// small call how often it is asked.
#include <cstddef>
#include <string>
#include <string_view>

#include "bench/HeapMeter.h"
#include "bench/Listing.h"
#include "bench/LogSize.h"
#include "bench/LoopbackServer.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "client/WapiClient.h"

using namespace kzn::bench;
using kzn::pvutil::stringex::FromUtf8;

namespace {

constexpr double kMost = 2.5;
constexpr double kMostTaken = 4;  // of all blocks, so that a copy more of the reply is seen
constexpr int kCalls = 100;
constexpr int kMostAllocations = 50;

constexpr std::string_view kReply =
    "<kznapi><response><result>SUCCESS</result></response><return><sessionInfo><userID>us-00f1e2d3c4b5a697</userID>"
    "<userName>anna.field@example.org</userName><sessionDuration>3600000</sessionDuration></sessionInfo></return></"
    "kznapi>";

void countAllocations(Report& report)
{
    const LoopbackServer server(kReply);
    CWapiClient client(FromUtf8(server.url()));
    const CStringT cred = FromUtf8("5f0c2f7a-6d3b-4c6e-9a55-1d2f3e4b5c6d:us-00f1e2d3c4b5a697");
    bool well = client.getSessionInfo(cred) == 1;
    resetHeapUse();
    for (int done = 0; done < kCalls; ++done) well = client.getSessionInfo(cred) == 1 && well;
    const HeapUse use = heapUse();
    report.require(well, "a call has failed");
    report.atMost("allocations of a small call", static_cast<double>(use.allocations) / kCalls, kMostAllocations, "");
}

void measure(Report& report, int spaces)
{
    const std::string reply = spaceListReply(spaces);
    const LoopbackServer server(reply);
    CWapiClient client(FromUtf8(server.url()));
    const CStringT cred = FromUtf8("cred");
    // What is kept from one call to the next, a connection above all, is none of the listing's.
    Listing first;
    const bool isWarm = client.GetWkspList(cred, {}, {}, first.spaces, first.invitations) == 1;
    first = {};
    const auto logBefore = logSize();

    Listing listing;
    resetHeapUse();
    const int result = client.GetWkspList(cred, {}, {}, listing.spaces, listing.invitations);
    const HeapUse use = heapUse();

    report.require(isWarm && result == 1 && isWhole(listing, spaces), "the call has failed");
    report.require(logSize() - logBefore > reply.size(), "the log was not written");
    const auto mega = [](std::size_t bytes) { return static_cast<double>(bytes) / 1e6; };
    const std::string of = " of " + std::to_string(spaces) + " workspaces";
    report.note("the reply" + of, mega(reply.size()), "MB");
    report.note("peak heap of the call" + of, mega(use.peak), "MB");
    report.note("of that, the records that are left" + of, mega(use.live), "MB");
    report.atMost("peak heap of the call" + of + " / the reply's bytes",
                  static_cast<double>(use.peak) / static_cast<double>(reply.size()), kMost, "");
    report.atMost("heap that the call" + of + " asks for in all / the reply's bytes",
                  static_cast<double>(use.taken) / static_cast<double>(reply.size()), kMostTaken, "");
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    countAllocations(report);
    for (const int spaces : {1'000, 10'000, 80'000}) measure(report, spaces);
    return report.status();
}
