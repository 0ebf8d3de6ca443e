#include "tests/client/WireOperations.h"

namespace {

/// An invitation for each repetition of the six texts; what only a reply fills holds its marker.
std::vector<SPACEINVT> invitationsToSend(WireCall& call)
{
    const auto workspaceIDs = call.texts("invitation workspaceID");
    const auto users = call.texts("invitation user");
    const auto methods = call.texts("invitation inviteMethod");
    const auto statuses = call.texts("invitation status");
    const auto providers = call.texts("invitation isproviderID");
    const auto roles = call.texts("invitation inviteAs");

    std::vector<SPACEINVT> invitations(workspaceIDs.size());
    for (std::size_t i = 0; i < invitations.size(); ++i) {
        SPACEINVT& invitation = invitations[i];
        mark(invitation);
        invitation.workspaceID = workspaceIDs[i];
        invitation.user = users.at(i);
        invitation.inviteMethod = methods.at(i);
        invitation.status = statuses.at(i);
        invitation.isproviderID = providers.at(i);
        invitation.inviteAs = static_cast<WAPI_INVITEAS_TYPE>(std::stoi(narrow(roles.at(i))));
    }
    return invitations;
}

}  // namespace

WireOperations memberOperations()
{
    return {
        {"getMembers",
         [](CWapiClient& client, WireCall& call) {
             return client.getMembers(call.text("cred"), call.text("workspaceID"),
                                      call.output<std::vector<CZelMember>>("members"));
         }},
        {"removeSpaceMember",
         [](CWapiClient& client, WireCall& call) {
             return client.removeSpaceMember(call.text("cred"), call.text("workspaceID"), call.text("userID"));
         }},
        {"changeMemberRole",
         [](CWapiClient& client, WireCall& call) {
             return client.changeMemberRole(call.text("cred"), call.text("workspaceID"), call.text("userID"),
                                            static_cast<WAPI_INVITEAS_TYPE>(call.number("role")));
         }},
        {"inviteMembers",
         [](CWapiClient& client, WireCall& call) {
             auto& invitations = call.output("invitations", invitationsToSend(call));
             return client.inviteMembers(call.text("cred"), invitations, call.text("message"));
         }},
        {"delInvt",
         [](CWapiClient& client, WireCall& call) {
             return client.delInvt(call.text("cred"), call.text("workspaceID"), call.text("userDescriptor"));
         }},
        {"responseInvitation",
         [](CWapiClient& client, WireCall& call) {
             return client.responseInvitation(call.text("cred"), call.text("workspaceID"), call.number("accept"));
         }},
    };
}
