// The 16-bit build of the parser against the 8-bit build with conversions: what the choice of the build rests on.
#include "bench/Listing.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "bench/parsers/Readers.h"
#include "pvutil/StringEx.h"

using namespace kzn::bench;

namespace {

constexpr int kSpaces = 10'000;
constexpr int kPairs = 61;

template <typename Read>
double secondsToRead(Report& report, const CStringT& text, Read&& read)
{
    Listing listing;
    const double seconds = secondsOf(threadTime, [&] { read(text, listing); });
    report.require(isWhole(listing, kSpaces), "records are missing");
    return seconds;
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const CStringT text = kzn::pvutil::stringex::FromUtf8(spaceListReply(kSpaces));
    report.note("the same reading by the 8-bit parser with conversions / by the 16-bit parser",
                compare(
                    report.pairs(kPairs), [&] { return secondsToRead(report, text, readNarrow); },
                    [&] { return secondsToRead(report, text, readWide); }));
    return report.status();
}
