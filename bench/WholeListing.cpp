// A whole listing over HTTP, log and records included, against a socket that is read into a string and the system's
// parser without anybody who listens.
#include <string>

#include "bench/Listing.h"
#include "bench/LogSize.h"
#include "bench/LoopbackServer.h"
#include "bench/PlainSocket.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "bench/readers/Readers.h"
#include "client/WapiClient.h"

using namespace kzn::bench;
using kzn::pvutil::stringex::FromUtf8;

namespace {

constexpr int kMost = 10'000;
constexpr int kPairs = 81;

void compareOfSize(Report& report, int spaces)
{
    const std::string reply = spaceListReply(spaces);
    const LoopbackServer server(reply);
    CWapiClient client(FromUtf8(server.url()));
    const CStringT cred = FromUtf8("cred");
    PlainSocket socket(server.url());
    const int times = kMost / spaces;

    const auto library = [&] {
        double seconds = 0;
        for (int done = 0; done < times; ++done) {
            Listing listing;
            int result = 0;
            seconds += secondsOf(
                wallTime, [&] { result = client.GetWkspList(cred, {}, {}, listing.spaces, listing.invitations); });
            report.require(result == 1 && isWhole(listing, spaces), "the call has failed");
        }
        return seconds;
    };
    const auto plain = [&] {
        bool well = true;
        const double seconds = secondsOf(wallTime, [&] {
            for (int done = 0; done < times; ++done) well = readBare(socket.post("cmd=execute&cred=cred")) && well;
        });
        report.require(well && socket.reply() == reply, "the plain exchange has failed");
        return seconds;
    };
    report.atMost("GetWkspList of " + std::to_string(spaces) + " workspaces / plain socket and bare parser",
                  compareUndisturbed(report.pairs(kPairs), library, plain), spaces == kMost ? 1.9 : 1.6);
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    keepHeap();
    report.require(stayOnOneProcessor(), "the program cannot stay on one processor");
    for (const int spaces : {1'000, kMost}) compareOfSize(report, spaces);
    return report.status();
}
