// Keeps a session alive in a host that has a poll() loop of its own: `KeepAlive 3` ends after three refreshes. The
// first is made at once, as a host does whose machine has slept; the timer makes the others. Where a refresh finds that
// the session is over, it says so and signs in again.
//
// The client's timer ticks through the message loop of the thread that made the client. On Windows that is the loop
// which every user interface has; elsewhere the host watches one descriptor beside its own.
#include <poll.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "client/WapiClient.h"
#include "examples/Environment.h"
#include "pvutil/MessageLoop.h"

using kzn::pvutil::stringex::ToUtf8;

namespace {

int failed(CWapiClient& client)
{
    std::fprintf(stderr, "%s\n", ToUtf8(client.GetLstMsg().reason).c_str());
    return 1;
}

bool sessionIsOver(CWapiClient& client)
{
    const std::string exceptionID = ToUtf8(client.GetLstMsg().exceptionID);
    return exceptionID == "KZN:SessionExpired" || exceptionID == "KZN:InvalidCredential";
}

/// What a host does that finds its session lost; one that only met no server lets the next tick try again.
void recover(CWapiClient& client)
{
    std::printf("not refreshed: %s\n", ToUtf8(client.GetLstMsg().reason).c_str());
    if (sessionIsOver(client)) std::printf("signed in again: %s\n", signIn(client) ? "yes" : "no");
}

/// Serves ticks until `wanted` refreshes have been told of, or until none comes in twice the time of one.
void serveRefreshes(const CWapiClient& client, const int& seen, int wanted)
{
    // A real host has its sockets and pipes in the same list.
    pollfd watched{kzn::pvutil::MessageLoopFd(), POLLIN, 0};
    const unsigned patience = std::min(client.getRefreshInterval(), unsigned{INT_MAX} / 2) * 2;
    while (seen < wanted && poll(&watched, 1, static_cast<int>(patience)) > 0) kzn::pvutil::DispatchPendingMessages();
}

}  // namespace

int main(int argc, char** argv)
{
    const int wanted = argc > 1 ? std::atoi(argv[1]) : 1;
    CWapiClient client(fromEnvironment("PVWAPI_BASE_URL"));
    int seen = 0;
    client.onRefresh([&](int result) {
        ++seen;
        if (result == 0) recover(client);
    });
    // Reading the session sets the period: half of how long a session lives that nobody uses.
    if (!signIn(client) || !client.getSessionInfo(client.getRootCred())) return failed(client);
    std::printf("refreshing every %u ms\n", client.getRefreshInterval());
    std::fflush(stdout);

    client.OnTimer(1);  // the timer takes up the period here
    serveRefreshes(client, seen, wanted);
    const bool alive = client.getSessionInfo(client.getRootCred()) == 1;
    std::printf("%d refreshes\nthe session is %s\n", seen, alive ? "alive" : "over");
    client.logout(client.getRootCred());
    return alive && seen >= wanted ? 0 : 1;
}
