// The first steps of a host, in C++17 of any compiler: signs in, lists, renames, stops a call, and learns why another
// one is refused.
#include <pvwapi.hpp>

#include <cstdlib>
#include <iostream>

using namespace pvwapi;

namespace {

constexpr int kAdministrator = 2;

CStringT environment(const char* name)
{
    const char* const value = std::getenv(name);
    return FromUtf8(value != nullptr ? value : "");
}

bool rename(CWapiClient& client, const CStringT& cred, const CStringT& workspaceID, const CStringT& name)
{
    std::vector<CWapiClient::WKSP_Field_Value> none;
    return client.editExtWksp(cred, workspaceID, XmlText(name), /*changeName=*/1, none) == 1;
}

void stopACall(CWapiClient& client, const CStringT& cred)
{
    client.onExchange([&client](const CWapiClient::Exchange&) {
        client.cancel();  // as any other thread may do
        return true;
    });
    client.getSessionInfo(cred);
    client.onExchange({});
    if (client.getNetworkErrorKind() == CWapiClient::NETWORK_CANCELLED) std::cout << "a call was stopped\n";
}

void learnWhy(CWapiClient& client)
{
    const WAPIMESSAGE message = client.GetLstMsg();
    std::cout << ToUtf8(message.reason) << " (" << ToUtf8(message.exceptionID) << ")\n";
}

void work(CWapiClient& client, const CStringT& cred, const SpaceForList& space)
{
    std::cout << ToUtf8(space.workspaceName);
    if (space.role != kAdministrator) {
        std::cout << " cannot be deleted: ";
        if (client.deleteWksp(cred, space.workspaceID) == 0) learnWhy(client);
    } else if (rename(client, cred, space.workspaceID, FromUtf8("Ideas & plans"))) {
        std::cout << " was called Ideas & plans for a moment\n";
        rename(client, cred, space.workspaceID, space.workspaceName);
    }
}

}  // namespace

int main()
{
    CWapiClient client(environment("PVWAPI_BASE_URL"));
    if (client.login(environment("PVWAPI_USER"), {}, {}, environment("PVWAPI_PASSWORD"), /*useToken=*/0,
                     /*send=*/1) == 0) {
        learnWhy(client);
        return 1;
    }

    const CStringT cred = client.getRootCred();
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    client.GetWkspList(cred, {}, {}, spaces, invitations);
    for (const SpaceForList& space : spaces) work(client, cred, space);
    stopACall(client, cred);
    client.logout(cred);
    return 0;
}
