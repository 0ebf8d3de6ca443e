// The records of workspaces' members and rights, member by member.
#pragma once

#include "records/Access.h"
#include "records/Members.h"
#include "records/SpaceDetails.h"

template <typename Visit>
void visitMembers(CZelMember& member, Visit visit)
{
    visit("userID", member.userID);
    visit("userName", member.userName);
    visit("status", member.status);
    visit("reserved", member.reserved);
    visit("email", member.email);
    visit("role", member.role);
}

template <typename Visit>
void visitMembers(space_t& space, Visit visit)
{
    visit("workspaceID", space.workspaceID);
    visit("workspaceName", space.workspaceName);
    visit("type", space.type);
    visit("isTemplate", space.isTemplate);
    visit("userID", space.userID);
    visit("userName", space.userName);
    visit("namespaceID", space.namespaceID);
    visit("namespaceName", space.namespaceName);
    visit("createTime", space.createTime);
    visit("lastModifiedTime", space.lastModifiedTime);
    visit("groupName", space.groupName);
    visit("groupID", space.groupID);
    visit("descriptionText", space.descriptionText);
    visit("descriptionIcon", space.descriptionIcon);
    visit("discussionTab", space.discussionTab);
    visit("filesTab", space.filesTab);
    visit("spaceIconURL", space.spaceIconURL);
    visit("kind", space.kind);
    visit("members", space.members);
    visit("tabs", space.tabs);
}

template <typename Visit>
void visitMembers(SPACEINVT& invitation, Visit visit)
{
    visit("workspaceID", invitation.workspaceID);
    visit("user", invitation.user);
    visit("inviteMethod", invitation.inviteMethod);
    visit("status", invitation.status);
    visit("isproviderID", invitation.isproviderID);
    visit("inviteAs", invitation.inviteAs);
    visit("userID", invitation.userID);
    visit("userName", invitation.userName);
    visit("inviteType", invitation.inviteType);
    visit("emailSent", invitation.emailSent);
    visit("email", invitation.email);
}

template <typename Visit>
void visitMembers(SPACE_ACCESS& access, Visit visit)
{
    visit("setWorkspaceAccess", access.setWorkspaceAccess);
    visit("deleteWorkspaceAccess", access.deleteWorkspaceAccess);
    visit("bulkSpaceInviteAccess", access.bulkSpaceInviteAccess);
    visit("createChatRoomAccess", access.createChatRoomAccess);
    visit("joinSpaceAccess", access.joinSpaceAccess);
    visit("createDocAccess", access.createDocAccess);
    visit("setWorkspaceReason", access.setWorkspaceReason);
    visit("deleteWorkspaceReason", access.deleteWorkspaceReason);
    visit("bulkSpaceInviteReason", access.bulkSpaceInviteReason);
    visit("createChatRoomReason", access.createChatRoomReason);
    visit("joinSpaceReason", access.joinSpaceReason);
    visit("createDocReason", access.createDocReason);
}

template <typename Visit>
void visitMembers(DOC_ACCESS& access, Visit visit)
{
    visit("setDocAccess", access.setDocAccess);
    visit("deleteDocAccess", access.deleteDocAccess);
    visit("setDocReason", access.setDocReason);
    visit("deleteDocReason", access.deleteDocReason);
}

template <typename Visit>
void visitMembers(ROOM_ACCESS& access, Visit visit)
{
    visit("setChatRoomAccess", access.setChatRoomAccess);
    visit("deleteChatRoomAccess", access.deleteChatRoomAccess);
    visit("createChatEntryAccess", access.createChatEntryAccess);
    visit("setChatRoomReason", access.setChatRoomReason);
    visit("deleteChatRoomReason", access.deleteChatRoomReason);
    visit("createChatEntryReason", access.createChatEntryReason);
}

template <typename Visit>
void visitMembers(RoleItem& item, Visit visit)
{
    visit("cmd", item.cmd);
    visit("id", item.id);
    visit("access", item.access);
}
