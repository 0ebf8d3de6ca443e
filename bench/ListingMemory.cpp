// The heap that a whole listing call takes: the reply off the wire, the log, the trace, the parser and the records.
#include <cstddef>
#include <string>

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

constexpr int kSpaces = 10'000;
constexpr double kMost = 4;

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const std::string reply = spaceListReply(kSpaces);
    const std::size_t wideBytes = FromUtf8(reply).size() * sizeof(CStringT::value_type);
    const LoopbackServer server(reply);
    CWapiClient client(FromUtf8(server.url()));
    const CStringT cred = FromUtf8("cred");
    const auto logBefore = logSize();

    Listing listing;
    resetHeapUse();
    const int result = client.GetWkspList(cred, {}, {}, listing.spaces, listing.invitations);
    const HeapUse use = heapUse();

    report.require(result == 1 && isWhole(listing, kSpaces), "the call has failed");
    report.require(logSize() - logBefore > reply.size(), "the log was not written");
    const double ratio = static_cast<double>(use.peak) / static_cast<double>(wideBytes);
    report.note("the listing's reply in UTF-16", static_cast<double>(wideBytes) / 1e6, "MB");
    report.note("peak heap of the listing call", static_cast<double>(use.peak) / 1e6, "MB");
    report.note("of that, the records that are left", static_cast<double>(use.live) / 1e6, "MB");
    report.atMost("peak heap of the listing call / the reply in UTF-16", ratio, kMost, "");
    return report.status();
}
