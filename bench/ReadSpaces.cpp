// Reading a listing from UTF-16 text to the caller's records, against the bare parser on the same text.
#include <expat.h>

#include <array>
#include <memory>

#include "bench/ReadListing.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "pvutil/StringEx.h"

using namespace kzn::bench;
using kzn::pvutil::stringex::FromUtf8;

namespace {

constexpr int kSpaces = 10'000;
constexpr int kFewSpaces = 1'000;
constexpr int kPairs = 61;

struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

// The peer: the same library in the same build with the same settings, one final call, and nobody who listens.
bool parseBare(const CStringT& text)
{
    constexpr std::array<XML_Char, 9> kEncoding = {'U', 'T', 'F', '-', '1', '6', 'L', 'E', 0};
    const std::unique_ptr<XML_ParserStruct, FreeParser> parser(XML_ParserCreate(kEncoding.data()));
    const auto bytes = static_cast<int>(text.size() * sizeof(text[0]));
    return XML_Parse(parser.get(), reinterpret_cast<const char*>(text.data()), bytes, XML_TRUE) == XML_STATUS_OK;
}

double secondsBare(Report& report, const CStringT& text)
{
    bool well = false;
    const double seconds = secondsOf(threadTime, [&] { well = parseBare(text); });
    report.require(well, "the bare parser refuses the reply");
    return seconds;
}

// The records are the caller's: what it costs to free them is not counted, all else that the reading made is.
double secondsToRead(Report& report, const CStringT& text, int spaces)
{
    Listing listing;
    const double seconds = secondsOf(threadTime, [&] { readListing(text, listing); });
    report.require(isWhole(listing, spaces), "records are missing");
    return seconds;
}

double secondsToReadTimes(Report& report, const CStringT& text, int spaces, int times)
{
    double seconds = 0;
    for (int i = 0; i < times; ++i) seconds += secondsToRead(report, text, spaces);
    return seconds;
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const CStringT many = FromUtf8(spaceListReply(kSpaces));
    const CStringT few = FromUtf8(spaceListReply(kFewSpaces));

    report.atMost("read a listing of 10,000 workspaces / bare parser",
                  compare(
                      report.pairs(kPairs), [&] { return secondsToRead(report, many, kSpaces); },
                      [&] { return secondsBare(report, many); }),
                  1.6);
    report.near("cost a workspace, of 10,000 / of 1,000",
                compare(
                    report.pairs(kPairs), [&] { return secondsToRead(report, many, kSpaces); },
                    [&] { return secondsToReadTimes(report, few, kFewSpaces, kSpaces / kFewSpaces); }),
                0.1);
    return report.status();
}
