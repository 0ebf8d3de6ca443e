// The 8-bit build of the parser, fed with the reply as it came, against the 16-bit build, fed with its text: what the
// choice of the build rests on.
#include "bench/Listing.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "bench/readers/Readers.h"

using namespace kzn::bench;

namespace {

constexpr int kSpaces = 10'000;
constexpr int kPairs = 61;

template <typename Read>
double secondsToRead(Report& report, const std::string& reply, Read&& read)
{
    Listing listing;
    const double seconds = secondsOf(threadTime, [&] { read(reply, listing); });
    report.require(isWhole(listing, kSpaces), "records are missing");
    return seconds;
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    keepHeap();
    const std::string reply = spaceListReply(kSpaces);
    report.note("the same reading by the 16-bit parser / by the 8-bit parser",
                compare(
                    report.pairs(kPairs), [&] { return secondsToRead(report, reply, readByWideParser); },
                    [&] { return secondsToRead(report, reply, readByLibrary); }));
    return report.status();
}
