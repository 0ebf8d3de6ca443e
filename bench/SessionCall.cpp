// A whole call of the client, against the same post by the system's HTTP library.
#include <string>

#include "bench/KeptPost.h"
#include "bench/SessionCalls.h"

using namespace kzn::bench;

int main(int argc, char** argv)
{
    Report report(argc, argv);
    SessionCalls calls(report);
    calls.countConnections();
    KeptPost peer(calls.url(), kSessionBody);
    report.note(std::string("getSessionInfo / the same post by ") + KeptPost::kName,
                calls.against([&] { return peer.post() == kSessionReply; }));
    return report.status();
}
