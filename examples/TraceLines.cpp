// Listens to the trace channel and prints which operations of the client ran, each under the one that called it.
//
// The channel also carries request bodies, and with them passwords and credentials: a host that keeps its lines keeps
// them where only the user can read them.
#include <cstdio>
#include <string>
#include <string_view>

#include "client/WapiClient.h"
#include "examples/Environment.h"
#include "pvtrace/pvtrace.h"

using kzn::pvutil::stringex::ToUtf8;

namespace {

constexpr std::string_view kEnter = "Debug: ---->>>> Enter ";
constexpr std::string_view kLeave = "Debug: <<<<---- Leave ";

/// Called on the thread whose operation runs, before the operation goes on: it is quick and does not call the client.
void printOperation(int, const PvTraceUnit* text)
{
    static int depth = 0;
    const std::string line = ToUtf8(text);
    if (line.starts_with(kEnter)) std::printf("%*s%s\n", 2 * depth++, "", line.c_str() + kEnter.size());
    if (line.starts_with(kLeave)) --depth;
}

}  // namespace

int main()
{
    PvTraceSetSink(printOperation);
    {
        CWapiClient client(fromEnvironment("PVWAPI_BASE_URL"));
        if (signIn(client)) {
            client.getSessionInfo(client.getRootCred());
            client.OnTimer(1);
            client.logout(client.getRootCred());
        }
    }
    PvTraceSetSink(nullptr);
    return 0;
}
