// A whole call of the client, against what a host's engineers would write for it.
#include "bench/HandMadeCall.h"
#include "bench/LogSize.h"
#include "bench/SessionCalls.h"

using namespace kzn::bench;

int main(int argc, char** argv)
{
    Report report(argc, argv);
    SessionCalls calls(report);
    HandMadeCall byHand(calls.url(), logFile() + ".by-hand");
    CStringT duration;
    report.atMost("getSessionInfo / the same by hand, with log and parser",
                  calls.against([&] { return byHand.getSessionInfo(calls.cred(), duration) && duration.size() == 7; }),
                  1.15);
    return report.status();
}
