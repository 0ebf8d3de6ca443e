#include "tests/client/WireOperations.h"

WireOperations accessOperations()
{
    return {
        {"GetWkspList",
         [](CWapiClient& client, WireCall& call) {
             auto& spaces = call.output<std::vector<SpaceForList>>("spaces");
             auto& invitations = call.output<std::vector<CZelSpaceInvite>>("invitations");
             return client.GetWkspList(call.text("cred"), call.text("extra1"), call.text("extra2"), spaces,
                                       invitations);
         }},
        {"GetSpacesTest",
         [](CWapiClient& client, WireCall& call) {
             return client.GetSpacesTest(call.text("extra1"), call.text("extra2"));
         }},
    };
}
