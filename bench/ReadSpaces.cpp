// Reading a listing from the bytes of its reply to the caller's records, against the bare parser of the system on the
// same bytes, and against what a careful engineer writes by hand.
#include <string>

#include "bench/Reach.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "bench/readers/Readers.h"

using namespace kzn::bench;

namespace {

constexpr int kMost = 10'000;
constexpr int kPairs = 61;

// As many readings as make one of the largest reply. The records are the caller's: what it costs to free them is not
// counted, all else that the reading made is.
template <typename Read>
double secondsToRead(Report& report, const std::string& reply, int spaces, Read&& read)
{
    double seconds = 0;
    for (int done = 0; done < kMost; done += spaces) {
        Listing listing;
        seconds += secondsOf(threadTime, [&] { read(reply, listing); });
        report.require(isWhole(listing, spaces), "records are missing");
    }
    return seconds;
}

double secondsBare(Report& report, const std::string& reply, int spaces)
{
    bool well = true;
    const double seconds = secondsOf(threadTime, [&] {
        for (int done = 0; done < kMost; done += spaces) well = readBare(reply) && well;
    });
    report.require(well, "the bare parser refuses the reply");
    return seconds;
}

void compareOfSize(Report& report, int spaces)
{
    const std::string reply = spaceListReply(spaces);
    const auto bare = [&] { return secondsBare(report, reply, spaces); };
    const std::string of = " a listing of " + std::to_string(spaces) + " workspaces / bare parser";
    report.atMost("read" + of,
                  compare(
                      report.pairs(kPairs), [&] { return secondsToRead(report, reply, spaces, readByLibrary); }, bare),
                  kReadingLimit);
    report.note("read by hand" + of,
                compare(
                    report.pairs(kPairs), [&] { return secondsToRead(report, reply, spaces, readByHand); }, bare));
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    keepHeap();
    for (const int spaces : {100, 1'000, kMost}) compareOfSize(report, spaces);
    return report.status();
}
