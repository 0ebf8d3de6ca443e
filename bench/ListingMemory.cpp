// The heap that calls take: of a listing the reply off the wire, the log, the trace, the parser and the records; of a
// small call how often it is asked.
#include <cstddef>
#include <functional>
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

struct Subject {
    std::string of;  // what the call lists, behind "of"
    std::string reply;
    std::function<bool(const Listing& listing)> isWhole;
    double mostPeak;   // of the heap, in replies
    double mostTaken;  // of all blocks, so that a copy more of the reply is seen
};

void measure(Report& report, const Subject& subject)
{
    const LoopbackServer server(subject.reply);
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

    report.require(isWarm && result == 1 && subject.isWhole(listing), "the call has failed");
    report.require(logSize() - logBefore > subject.reply.size(), "the log was not written");
    const auto mega = [](std::size_t bytes) { return static_cast<double>(bytes) / 1e6; };
    const auto replies = [&](std::size_t bytes) { return mega(bytes) / mega(subject.reply.size()); };
    report.note("the reply of " + subject.of, mega(subject.reply.size()), "MB");
    report.note("peak heap of the call of " + subject.of, mega(use.peak), "MB");
    report.note("of that, the records that are left of " + subject.of, mega(use.live), "MB");
    report.atMost("peak heap of the call of " + subject.of + " / the reply's bytes", replies(use.peak),
                  subject.mostPeak, "");
    report.atMost("heap that the call of " + subject.of + " asks for in all / the reply's bytes", replies(use.taken),
                  subject.mostTaken, "");
}

Subject workspaces(int spaces)
{
    return {std::to_string(spaces) + " workspaces", spaceListReply(spaces),
            [spaces](const Listing& listing) { return isWhole(listing, spaces); }, 2.5, 4};
}

// A record is larger than the text that it was made from here.
Subject leanWorkspaces(int spaces)
{
    return {std::to_string(spaces) + " lean workspaces", leanSpaceListReply(spaces),
            [spaces](const Listing& listing) { return listing.spaces.size() == static_cast<std::size_t>(spaces); }, 2.8,
            4.5};
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    countAllocations(report);
    for (const int spaces : {1'000, 10'000, 80'000}) measure(report, workspaces(spaces));
    measure(report, leanWorkspaces(100'000));
    return report.status();
}
