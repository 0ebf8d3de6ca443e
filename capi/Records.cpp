// Written by capi/generate.py.
#include "capi/Records.h"

#include "capi/Arguments.h"
#include "capi/Memory.h"

namespace capi {

pvw_message toC(Memory& memory, const WAPIMESSAGE& from)
{
    pvw_message to{};
    to.size = sizeof to;
    to.code = from.code;
    to.reason = memory.of(from.reason);
    to.exceptionID = memory.of(from.exceptionID);
    to.response = memory.of(from.response);
    to.reserved = from.reserved;
    return to;
}

pvw_tab toC(Memory& memory, const CZelTab& from)
{
    pvw_tab to{};
    to.size = sizeof to;
    to.ID = memory.of(from.GetID());
    to.name = memory.of(from.GetName());
    to.type = memory.of(from.GetType());
    to.position = from.GetTabPos();
    return to;
}

pvw_member toC(Memory& memory, const CZelMember& from)
{
    pvw_member to{};
    to.size = sizeof to;
    to.userID = memory.of(from.userID);
    to.userName = memory.of(from.userName);
    to.status = memory.of(from.status);
    to.reserved = from.reserved;
    to.email = memory.of(from.email);
    to.role = from.role;
    return to;
}

pvw_listed_space toC(Memory& memory, const SpaceForList& from)
{
    pvw_listed_space to{};
    to.size = sizeof to;
    to.workspaceID = memory.of(from.workspaceID);
    to.workspaceName = memory.of(from.workspaceName);
    to.status = memory.of(from.status);
    to.userID = memory.of(from.userID);
    to.userName = memory.of(from.userName);
    to.type = memory.of(from.type);
    to.isTemplate = memory.of(from.isTemplate);
    to.namespaceID = memory.of(from.namespaceID);
    to.description = memory.of(from.description);
    to.spaceIconURL = memory.of(from.spaceIconURL);
    to.role = from.role;
    return to;
}

pvw_space_invite toC(Memory& memory, const CZelSpaceInvite& from)
{
    pvw_space_invite to{};
    to.size = sizeof to;
    to.spaceInviteID = memory.of(from.spaceInviteID);
    to.expires = memory.of(from.expires);
    to.lastModifiedTime = memory.of(from.lastModifiedTime);
    to.status = memory.of(from.status);
    to.workspaceID = memory.of(from.workspaceID);
    to.createTime = memory.of(from.createTime);
    to.statusChanged = memory.of(from.statusChanged);
    to.userDescriptor = memory.of(from.userDescriptor);
    to.userName = memory.of(from.userName);
    to.workspaceName = memory.of(from.workspaceName);
    to.ownerID = memory.of(from.ownerID);
    to.ownerName = memory.of(from.ownerName);
    to.inviteType = from.inviteType;
    to.inviteAsType = from.inviteAsType;
    return to;
}

pvw_space toC(Memory& memory, const space_t& from)
{
    pvw_space to{};
    to.size = sizeof to;
    to.workspaceID = memory.of(from.workspaceID);
    to.workspaceName = memory.of(from.workspaceName);
    to.type = memory.of(from.type);
    to.isTemplate = memory.of(from.isTemplate);
    to.userID = memory.of(from.userID);
    to.userName = memory.of(from.userName);
    to.namespaceID = memory.of(from.namespaceID);
    to.namespaceName = memory.of(from.namespaceName);
    to.createTime = memory.of(from.createTime);
    to.lastModifiedTime = memory.of(from.lastModifiedTime);
    to.groupName = memory.of(from.groupName);
    to.groupID = memory.of(from.groupID);
    to.descriptionText = memory.of(from.descriptionText);
    to.descriptionIcon = memory.of(from.descriptionIcon);
    to.discussionTab = memory.of(from.discussionTab);
    to.filesTab = memory.of(from.filesTab);
    to.spaceIconURL = memory.of(from.spaceIconURL);
    to.members = memory.of(from.members);
    to.tabs = memory.of(from.tabs);
    to.kind = from.kind;
    return to;
}

pvw_space_access toC(Memory& memory, const SPACE_ACCESS& from)
{
    pvw_space_access to{};
    to.size = sizeof to;
    to.setWorkspaceAccess = memory.of(from.setWorkspaceAccess);
    to.deleteWorkspaceAccess = memory.of(from.deleteWorkspaceAccess);
    to.bulkSpaceInviteAccess = memory.of(from.bulkSpaceInviteAccess);
    to.createChatRoomAccess = memory.of(from.createChatRoomAccess);
    to.joinSpaceAccess = memory.of(from.joinSpaceAccess);
    to.createDocAccess = memory.of(from.createDocAccess);
    to.setWorkspaceReason = memory.of(from.setWorkspaceReason);
    to.deleteWorkspaceReason = memory.of(from.deleteWorkspaceReason);
    to.bulkSpaceInviteReason = memory.of(from.bulkSpaceInviteReason);
    to.createChatRoomReason = memory.of(from.createChatRoomReason);
    to.joinSpaceReason = memory.of(from.joinSpaceReason);
    to.createDocReason = memory.of(from.createDocReason);
    return to;
}

pvw_doc_access toC(Memory& memory, const DOC_ACCESS& from)
{
    pvw_doc_access to{};
    to.size = sizeof to;
    to.setDocAccess = memory.of(from.setDocAccess);
    to.deleteDocAccess = memory.of(from.deleteDocAccess);
    to.setDocReason = memory.of(from.setDocReason);
    to.deleteDocReason = memory.of(from.deleteDocReason);
    return to;
}

pvw_room_access toC(Memory& memory, const ROOM_ACCESS& from)
{
    pvw_room_access to{};
    to.size = sizeof to;
    to.setChatRoomAccess = memory.of(from.setChatRoomAccess);
    to.deleteChatRoomAccess = memory.of(from.deleteChatRoomAccess);
    to.createChatEntryAccess = memory.of(from.createChatEntryAccess);
    to.setChatRoomReason = memory.of(from.setChatRoomReason);
    to.deleteChatRoomReason = memory.of(from.deleteChatRoomReason);
    to.createChatEntryReason = memory.of(from.createChatEntryReason);
    return to;
}

pvw_role_item toC(Memory& memory, const RoleItem& from)
{
    pvw_role_item to{};
    to.size = sizeof to;
    to.cmd = memory.of(from.cmd);
    to.id = memory.of(from.id);
    to.access = memory.of(from.access);
    return to;
}

pvw_invitation toC(Memory& memory, const SPACEINVT& from)
{
    pvw_invitation to{};
    to.size = sizeof to;
    to.workspaceID = memory.of(from.workspaceID);
    to.user = memory.of(from.user);
    to.inviteMethod = memory.of(from.inviteMethod);
    to.status = memory.of(from.status);
    to.isproviderID = memory.of(from.isproviderID);
    to.inviteAs = from.inviteAs;
    to.userID = memory.of(from.userID);
    to.userName = memory.of(from.userName);
    to.inviteType = memory.of(from.inviteType);
    to.emailSent = memory.of(from.emailSent);
    to.email = memory.of(from.email);
    return to;
}

pvw_is_provider toC(Memory& memory, const CZelISProvider& from)
{
    pvw_is_provider to{};
    to.size = sizeof to;
    to.ISProviderID = memory.of(from.ISProviderID);
    to.ISProviderName = memory.of(from.ISProviderName);
    to.userName = memory.of(from.userName);
    to.namespaceID = memory.of(from.namespaceID);
    return to;
}

pvw_user_config_info toC(Memory& memory, const CUserConfigInfo& from)
{
    pvw_user_config_info to{};
    to.size = sizeof to;
    to.userID = memory.of(from.userID);
    to.userName = memory.of(from.userName);
    to.email = memory.of(from.email);
    to.firstName = memory.of(from.firstName);
    to.lastName = memory.of(from.lastName);
    to.namespaceID = memory.of(from.namespaceID);
    to.ISProviderID = memory.of(from.ISProviderID);
    to.QueltID = memory.of(from.QueltID);
    to.Password = memory.of(from.Password);
    to.QueltAVToken = memory.of(from.QueltAVToken);
    to.QueltDesktopShareURL = memory.of(from.QueltDesktopShareURL);
    to.QueltAudioOrVisualURL = memory.of(from.QueltAudioOrVisualURL);
    to.hostName = memory.of(from.hostName);
    to.websiteURL = memory.of(from.websiteURL);
    to.ISProviders = memory.of(from.ISProviders);
    return to;
}

pvw_user_profile toC(Memory& memory, const USER_PROFILE& from)
{
    pvw_user_profile to{};
    to.size = sizeof to;
    to.userID = memory.of(from.userID);
    to.firstName = memory.of(from.firstName);
    to.lastName = memory.of(from.lastName);
    to.middleName = memory.of(from.middleName);
    return to;
}

pvw_policy toC(Memory&, const CZelPolicy& from)
{
    pvw_policy to{};
    to.size = sizeof to;
    to.AutomaticUpdates = from.AutomaticUpdates;
    to.PremiumServices = from.PremiumServices;
    to.SecureCollaboration = from.SecureCollaboration;
    to.IMInt = from.IMInt;
    to.IMExt = from.IMExt;
    to.DisableIMCatchInt = from.DisableIMCatchInt;
    to.DisableIMCatchExt = from.DisableIMCatchExt;
    to.LocalArchive = from.LocalArchive;
    to.VoIPInt = from.VoIPInt;
    to.VoIPExt = from.VoIPExt;
    to.VideoInt = from.VideoInt;
    to.VideoExt = from.VideoExt;
    to.DesktopShareInt = from.DesktopShareInt;
    to.DesktopShareExt = from.DesktopShareExt;
    to.RemoteControlInt = from.RemoteControlInt;
    to.RemoteControlExt = from.RemoteControlExt;
    to.FileTransferInt = from.FileTransferInt;
    to.FileTransferExt = from.FileTransferExt;
    to.FileXferVirusScan = from.FileXferVirusScan;
    to.HasSpaces = from.HasSpaces;
    to.CreateWorkspace = from.CreateWorkspace;
    return to;
}

pvw_template_item toC(Memory& memory, const CZelTemplateItem& from)
{
    pvw_template_item to{};
    to.size = sizeof to;
    to.name = memory.of(from.name);
    to.ID = memory.of(from.ID);
    to.description = memory.of(from.description);
    to.type = from.GetType();
    return to;
}

pvw_library toC(Memory& memory, const library_t& from)
{
    pvw_library to{};
    to.size = sizeof to;
    to.name = memory.of(from.name);
    to.ID = memory.of(from.ID);
    to.type = from.type;
    to.templates = memory.of(from.templates);
    return to;
}

pvw_library_app toC(Memory& memory, const library_app_t& from)
{
    pvw_library_app to{};
    to.size = sizeof to;
    to.name = memory.of(from.name);
    to.ID = memory.of(from.ID);
    to.currentDir = memory.of(from.currentDir);
    to.status = memory.of(from.status);
    to.package = memory.of(from.package);
    to.appType = memory.of(from.appType);
    to.identityDescription = memory.of(from.identityDescription);
    to.identityName = memory.of(from.identityName);
    to.topLevel = from.topLevel ? 1 : 0;
    return to;
}

pvw_app_library toC(Memory& memory, const library2_t& from)
{
    pvw_app_library to{};
    to.size = sizeof to;
    to.name = memory.of(from.name);
    to.ID = memory.of(from.ID);
    to.type = memory.of(from.type);
    to.apps = memory.of(from.apps);
    return to;
}

pvw_space_count_item toC(Memory& memory, const SPACE_COUNT_ITEM& from)
{
    pvw_space_count_item to{};
    to.size = sizeof to;
    to.workspaceID = memory.of(from.workspaceID);
    to.count = from.count;
    to.activeMembersCount = from.activeMembersCount;
    to.unreadMessageCount = from.unreadMessageCount;
    return to;
}

void fromC(const pvw_workspace_field& from, CWapiClient::WKSP_Field_Value& to)
{
    to.field = from.field;
    to.value = textOf(from.value);
}

void fromC(const pvw_user_field& from, CWapiClient::USER_Field_Value& to)
{
    to.type = from.type;
    to.value = textOf(from.value);
}

void fromC(const pvw_tab& from, CZelTab& to)
{
    to.SetID(textOf(from.ID));
    to.SetName(textOf(from.name));
    to.SetType(textOf(from.type));
    to.SetTabPos(from.position);
}

void fromC(const pvw_invitation& from, SPACEINVT& to)
{
    to.workspaceID = textOf(from.workspaceID);
    to.user = textOf(from.user);
    to.inviteMethod = textOf(from.inviteMethod);
    to.status = textOf(from.status);
    to.isproviderID = textOf(from.isproviderID);
    to.inviteAs = static_cast<WAPI_INVITEAS_TYPE>(from.inviteAs);
    to.userID = textOf(from.userID);
    to.userName = textOf(from.userName);
    to.inviteType = textOf(from.inviteType);
    to.emailSent = textOf(from.emailSent);
    to.email = textOf(from.email);
}

void fromC(const pvw_user_profile& from, USER_PROFILE& to)
{
    to.userID = textOf(from.userID);
    to.firstName = textOf(from.firstName);
    to.lastName = textOf(from.lastName);
    to.middleName = textOf(from.middleName);
}

void fromC(const pvw_space_count_item& from, SPACE_COUNT_ITEM& to)
{
    to.workspaceID = textOf(from.workspaceID);
    to.count = from.count;
    to.activeMembersCount = from.activeMembersCount;
    to.unreadMessageCount = from.unreadMessageCount;
}

}  // namespace capi
