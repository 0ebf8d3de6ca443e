// Signs in and prints the names of the user's workspaces, one a line, with what the user is in each.
#include <cstdio>

#include "client/WapiClient.h"
#include "examples/Environment.h"

using kzn::pvutil::stringex::ToUtf8;

namespace {

int failed(CWapiClient& client)
{
    std::fprintf(stderr, "%s\n", ToUtf8(client.GetLstMsg().reason).c_str());
    return 1;
}

const char* nameOf(int role)
{
    return role >= WAPI_INVITEAS_ADMIN ? "administrator" : "member";
}

}  // namespace

int main()
{
    CWapiClient client(fromEnvironment("PVWAPI_BASE_URL"));
    if (!signIn(client)) return failed(client);

    // The credential is the first argument of every operation, since a host may work in several sessions.
    const CStringT cred = client.getRootCred();
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    if (!client.GetWkspList(cred, {}, {}, spaces, invitations)) return failed(client);

    for (const SpaceForList& space : spaces) {
        std::printf("%s (%s)\n", ToUtf8(space.workspaceName).c_str(), nameOf(space.role));
    }
    std::printf("%zu workspaces\n", spaces.size());
    client.logout(cred);
    return 0;
}
