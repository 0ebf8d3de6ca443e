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
        {"getSpaceBatch",
         [](CWapiClient& client, WireCall& call) {
             space_t before;
             mark(before);
             before.kind = call.number("kind before");
             auto& space = call.output("space", std::move(before));
             auto& invitations = call.output<std::vector<CZelSpaceInvite>>("invitations");
             auto& access = call.output<SPACE_ACCESS>("access");
             auto& out = call.output<CStringT>("out");
             return client.getSpaceBatch(call.text("cred"), call.text("workspaceID"), space, invitations, access, out);
         }},
        {"GetSpacesTest",
         [](CWapiClient& client, WireCall& call) {
             return client.GetSpacesTest(call.text("extra1"), call.text("extra2"));
         }},
    };
}

WireOperations probeOperations()
{
    return {
        {"probeSpaceAccess",
         [](CWapiClient& client, WireCall& call) {
             return client.probeSpaceAccess(call.text("cred"), call.text("workspaceID"),
                                            call.output<SPACE_ACCESS>("access"),
                                            static_cast<unsigned long>(call.number("tests")));
         }},
        {"probeSpaceAccess2",
         [](CWapiClient& client, WireCall& call) {
             return client.probeSpaceAccess2(call.text("cred"), call.output<SPACE_ACCESS>("access"));
         }},
        {"probeDocAccess",
         [](CWapiClient& client, WireCall& call) {
             return client.probeDocAccess(call.text("cred"), call.text("docID"), call.output<DOC_ACCESS>("access"));
         }},
        {"probeChatRoomAccess",
         [](CWapiClient& client, WireCall& call) {
             return client.probeChatRoomAccess(call.text("cred"), call.text("roomID"),
                                               call.output<ROOM_ACCESS>("access"));
         }},
        {"getRole",
         [](CWapiClient& client, WireCall& call) {
             return client.getRole(call.text("cred"), call.texts("workspaceIDs"),
                                   call.output<std::vector<RoleItem>>("roles"));
         }},
        {"ProbeAccessAllSpace",
         [](CWapiClient& client, WireCall& call) {
             return client.ProbeAccessAllSpace(call.text("cred"), call.text("otherUserID"), call.text("extra"),
                                               call.output<std::vector<RoleItem>>("roles"));
         }},
    };
}

WireOperations favouriteOperations()
{
    return {
        {"GetFavoriteSpaceList",
         [](CWapiClient& client, WireCall& call) {
             return client.GetFavoriteSpaceList(call.text("cred"), call.text("thingName"),
                                                call.output<std::vector<space_t>>("spaces"));
         }},
        {"createFavoriteSpace",
         [](CWapiClient& client, WireCall& call) {
             return client.createFavoriteSpace(call.text("cred"), call.text("thingName"), call.text("workspaceID"));
         }},
        {"deleteFavoriteSpace",
         [](CWapiClient& client, WireCall& call) {
             return client.deleteFavoriteSpace(call.text("cred"), call.text("thingName"), call.text("workspaceID"));
         }},
    };
}
