// Invitations to workspaces.
#include "host/Call.h"
#include "host/Topics.h"

namespace host {

namespace {

std::vector<CZelSpaceInvite> ofTheUser(Call& call)
{
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    call.check(call.client().GetWkspList(call.cred(), {}, {}, spaces, invitations));
    return invitations;
}

std::vector<CZelSpaceInvite> ofTheWorkspace(Call& call)
{
    space_t space;
    std::vector<CZelSpaceInvite> invitations;
    SPACE_ACCESS access;
    CStringT unused;
    call.check(call.client().getSpaceBatch(call.cred(), call.xml("--workspace"), space, invitations, access, unused));
    return invitations;
}

void list(Call& call)
{
    call.show(call.given("--workspace") ? ofTheWorkspace(call) : ofTheUser(call),
              {"workspaceID", "workspaceName", "userDescriptor", "status", "inviteAsType", "ownerName", "expires"});
}

void answer(Call& call, int accept)
{
    call.check(call.client().responseInvitation(call.cred(), call.xml("workspace"), accept));
}

void accept(Call& call)
{
    answer(call, 1);
}

void reject(Call& call)
{
    answer(call, 0);
}

void withdraw(Call& call)
{
    call.check(call.client().delInvt(call.cred(), call.xml("workspace"), call.cdata("user")));
}

}  // namespace

Commands invitationsCommands()
{
    const Argument workspace{"workspace", "The workspace's ID"};
    return {
        {"invitations", "Invitations to workspaces", {}, nullptr},
        {"invitations list",
         "List the invitations to you, or to a workspace of yours",
         {{"--workspace", "The workspace's ID"}},
         list,
         {"GetWkspList", "getSpaceBatch"},
         {},
         membersOf<CZelSpaceInvite>},
        {"invitations accept", "Take an invitation", {workspace}, accept, {"responseInvitation"}},
        {"invitations reject", "Refuse an invitation", {workspace}, reject, {"responseInvitation"}},
        {"invitations withdraw",
         "Take back the invitation of somebody",
         {workspace, {"user", "The user ID, user name or e-mail address that was invited"}},
         withdraw,
         {"delInvt"},
         "Withdraw the invitation of {user} to workspace {workspace}?"},
    };
}

}  // namespace host
