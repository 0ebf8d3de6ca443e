// Listings; Rights; Members and invitations; Favourites. Written by capi/generate.py.
#include "capi/Call.h"

using namespace capi;

int PVW_CALL pvw_get_wksp_list(pvw_client* client, pvw_text cred, pvw_listed_space_list* spaces,
                               pvw_space_invite_list* invitations, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(spaces, invitations);
        std::vector<SpaceForList> theSpaces;
        std::vector<CZelSpaceInvite> theInvitations;
        if (live.GetWkspList(textOf(cred), {}, {}, theSpaces, theInvitations) == 0) return 0;
        return memory.give(into(spaces, memory.of(theSpaces)), into(invitations, memory.of(theInvitations)));
    });
}

int PVW_CALL pvw_get_space_batch(pvw_client* client, pvw_text cred, pvw_text workspaceID, const pvw_space** space,
                                 pvw_space_invite_list* invitations, const pvw_space_access** access,
                                 pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(space, invitations, access);
        space_t theSpace;
        std::vector<CZelSpaceInvite> theInvitations;
        SPACE_ACCESS theAccess;
        CStringT theOut;
        if (live.getSpaceBatch(textOf(cred), textOf(workspaceID), theSpace, theInvitations, theAccess, theOut) == 0)
            return 0;
        return memory.give(into(space, memory.of(theSpace)), into(invitations, memory.of(theInvitations)),
                           into(access, memory.of(theAccess)));
    });
}

int PVW_CALL pvw_get_spaces_test(pvw_client* client)
{
    return asked(client, [&](CWapiClient& live) { return live.GetSpacesTest({}, {}); });
}

int PVW_CALL pvw_probe_space_access(pvw_client* client, pvw_text cred, pvw_text workspaceID,
                                    const pvw_space_access** access, unsigned int tests, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(access);
        SPACE_ACCESS theAccess;
        if (live.probeSpaceAccess(textOf(cred), textOf(workspaceID), theAccess, tests) == 0) return 0;
        return memory.give(into(access, memory.of(theAccess)));
    });
}

int PVW_CALL pvw_probe_space_access2(pvw_client* client, pvw_text cred, const pvw_space_access** access,
                                     pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(access);
        SPACE_ACCESS theAccess;
        if (live.probeSpaceAccess2(textOf(cred), theAccess) == 0) return 0;
        return memory.give(into(access, memory.of(theAccess)));
    });
}

int PVW_CALL pvw_probe_doc_access(pvw_client* client, pvw_text cred, pvw_text docID, const pvw_doc_access** access,
                                  pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(access);
        DOC_ACCESS theAccess;
        if (live.probeDocAccess(textOf(cred), textOf(docID), theAccess) == 0) return 0;
        return memory.give(into(access, memory.of(theAccess)));
    });
}

int PVW_CALL pvw_probe_chat_room_access(pvw_client* client, pvw_text cred, pvw_text roomID,
                                        const pvw_room_access** access, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(access);
        ROOM_ACCESS theAccess;
        if (live.probeChatRoomAccess(textOf(cred), textOf(roomID), theAccess) == 0) return 0;
        return memory.give(into(access, memory.of(theAccess)));
    });
}

int PVW_CALL pvw_get_role(pvw_client* client, pvw_text cred, const pvw_text* workspaceIDs, size_t workspaceIDCount,
                          pvw_role_item_list* roles, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(roles);
        std::vector<RoleItem> theRoles;
        if (live.getRole(textOf(cred), textsOf(workspaceIDs, workspaceIDCount), theRoles) == 0) return 0;
        return memory.give(into(roles, memory.of(theRoles)));
    });
}

int PVW_CALL pvw_probe_access_all_space(pvw_client* client, pvw_text cred, pvw_text otherUserID,
                                        pvw_role_item_list* roles, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(roles);
        std::vector<RoleItem> theRoles;
        if (live.ProbeAccessAllSpace(textOf(cred), textOf(otherUserID), {}, theRoles) == 0) return 0;
        return memory.give(into(roles, memory.of(theRoles)));
    });
}

int PVW_CALL pvw_get_members(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_member_list* members,
                             pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(members);
        std::vector<CZelMember> theMembers;
        if (live.getMembers(textOf(cred), textOf(workspaceID), theMembers) == 0) return 0;
        return memory.give(into(members, memory.of(theMembers)));
    });
}

int PVW_CALL pvw_remove_space_member(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text memberID)
{
    return asked(client, [&](CWapiClient& live) {
        return live.removeSpaceMember(textOf(cred), textOf(workspaceID), textOf(memberID));
    });
}

int PVW_CALL pvw_change_member_role(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text memberID,
                                    int role)
{
    return asked(client, [&](CWapiClient& live) {
        return live.changeMemberRole(textOf(cred), textOf(workspaceID), textOf(memberID),
                                     static_cast<WAPI_INVITEAS_TYPE>(role));
    });
}

int PVW_CALL pvw_invite_members(pvw_client* client, pvw_text cred, const pvw_invitation* invitations,
                                size_t invitationCount, pvw_invitation_list* invitationsBack, pvw_text message,
                                pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(invitationsBack);
        auto theInvitations = recordsOf<SPACEINVT>(invitations, invitationCount);
        if (live.inviteMembers(textOf(cred), theInvitations, textOf(message)) == 0) return 0;
        return memory.give(into(invitationsBack, memory.of(theInvitations)));
    });
}

int PVW_CALL pvw_del_invt(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text userDescriptor)
{
    return asked(client, [&](CWapiClient& live) {
        return live.delInvt(textOf(cred), textOf(workspaceID), textOf(userDescriptor));
    });
}

int PVW_CALL pvw_response_invitation(pvw_client* client, pvw_text cred, pvw_text workspaceID, int accept)
{
    return asked(client,
                 [&](CWapiClient& live) { return live.responseInvitation(textOf(cred), textOf(workspaceID), accept); });
}

int PVW_CALL pvw_get_favorite_space_list(pvw_client* client, pvw_text cred, pvw_text thingName, pvw_space_list* spaces,
                                         pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(spaces);
        std::vector<space_t> theSpaces;
        if (live.GetFavoriteSpaceList(textOf(cred), textOf(thingName), theSpaces) == 0) return 0;
        return memory.give(into(spaces, memory.of(theSpaces)));
    });
}

int PVW_CALL pvw_create_favorite_space(pvw_client* client, pvw_text cred, pvw_text thingName, pvw_text workspaceID)
{
    return asked(client, [&](CWapiClient& live) {
        return live.createFavoriteSpace(textOf(cred), textOf(thingName), textOf(workspaceID));
    });
}

int PVW_CALL pvw_delete_favorite_space(pvw_client* client, pvw_text cred, pvw_text thingName, pvw_text workspaceID)
{
    return asked(client, [&](CWapiClient& live) {
        return live.deleteFavoriteSpace(textOf(cred), textOf(thingName), textOf(workspaceID));
    });
}
