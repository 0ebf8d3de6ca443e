// Keeps a session alive in a host that has a poll() loop of its own: `KeepAlive 3` waits for three refreshes.
//
// The client's timer ticks through the message loop of the thread that made the client. On Windows that is the loop
// which every user interface has; elsewhere the host watches one descriptor beside its own.
#include <poll.h>

#include <cstdio>
#include <cstdlib>

#include "client/WapiClient.h"
#include "examples/Environment.h"
#include "pvutil/MessageLoop.h"

using kzn::pvutil::stringex::ToUtf8;

namespace {

constexpr int kPatience = 60'000;  // milliseconds without any refresh

int failed(CWapiClient& client)
{
    std::fprintf(stderr, "%s\n", ToUtf8(client.GetLstMsg().reason).c_str());
    return 1;
}

/// Returns how many refreshes came before the patience ran out, at most `wanted`.
int serveRefreshes(int wanted)
{
    // A real host has its sockets and pipes in the same list.
    pollfd watched{kzn::pvutil::MessageLoopFd(), POLLIN, 0};
    int seen = 0;
    while (seen < wanted && poll(&watched, 1, kPatience) > 0) seen += kzn::pvutil::DispatchPendingMessages();
    return seen;
}

}  // namespace

int main(int argc, char** argv)
{
    const int wanted = argc > 1 ? std::atoi(argv[1]) : 1;
    CWapiClient client(fromEnvironment("PVWAPI_BASE_URL"));
    // Reading the session sets the period: half of how long a session lives that nobody uses.
    if (!signIn(client) || !client.getSessionInfo(client.getRootCred())) return failed(client);

    // The timer takes up the new period with the next operation.
    const CStringT cred = client.getRootCred();
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    if (!client.GetWkspList(cred, {}, {}, spaces, invitations)) return failed(client);
    std::printf("refreshing every %u ms\n", client.getRefreshInterval());

    const int seen = serveRefreshes(wanted);
    const bool alive = client.getSessionInfo(cred) == 1;
    std::printf("%d refreshes\nthe session is %s\n", seen, alive ? "alive" : "over");
    client.logout(cred);
    return alive && seen >= wanted ? 0 : 1;
}
