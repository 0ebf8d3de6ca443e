#include "host/Json.h"

void to_json(host::Json& json, const SpaceForList& space)
{
    json = {
        {"workspaceID", space.workspaceID},
        {"workspaceName", space.workspaceName},
        {"status", space.status},
        {"userID", space.userID},
        {"userName", space.userName},
        {"type", space.type},
        {"isTemplate", space.isTemplate},
        {"namespaceID", space.namespaceID},
        {"description", space.description},
        {"spaceIconURL", space.spaceIconURL},
        {"role", space.role},
    };
}

void to_json(host::Json& json, const CZelSpaceInvite& invitation)
{
    json = {
        {"spaceInviteID", invitation.spaceInviteID},
        {"expires", invitation.expires},
        {"lastModifiedTime", invitation.lastModifiedTime},
        {"status", invitation.status},
        {"workspaceID", invitation.workspaceID},
        {"createTime", invitation.createTime},
        {"statusChanged", invitation.statusChanged},
        {"userDescriptor", invitation.userDescriptor},
        {"userName", invitation.userName},
        {"workspaceName", invitation.workspaceName},
        {"ownerID", invitation.ownerID},
        {"ownerName", invitation.ownerName},
        {"inviteType", invitation.inviteType},
        {"inviteAsType", invitation.inviteAsType},
    };
}

void to_json(host::Json& json, const space_t& space)
{
    json = {
        {"workspaceID", space.workspaceID},
        {"workspaceName", space.workspaceName},
        {"type", space.type},
        {"isTemplate", space.isTemplate},
        {"userID", space.userID},
        {"userName", space.userName},
        {"namespaceID", space.namespaceID},
        {"namespaceName", space.namespaceName},
        {"createTime", space.createTime},
        {"lastModifiedTime", space.lastModifiedTime},
        {"groupName", space.groupName},
        {"groupID", space.groupID},
        {"descriptionText", space.descriptionText},
        {"descriptionIcon", space.descriptionIcon},
        {"discussionTab", space.discussionTab},
        {"filesTab", space.filesTab},
        {"spaceIconURL", space.spaceIconURL},
        {"members", space.members},
        {"tabs", space.tabs},
        {"kind", space.kind},
    };
}

void to_json(host::Json& json, const CZelTab& tab)
{
    json = {
        {"ID", tab.GetID()},
        {"name", tab.GetName()},
        {"type", tab.GetType()},
        {"position", tab.GetTabPos()},
    };
}

void to_json(host::Json& json, const SPACE_ACCESS& access)
{
    json = {
        {"setWorkspaceAccess", access.setWorkspaceAccess},
        {"deleteWorkspaceAccess", access.deleteWorkspaceAccess},
        {"bulkSpaceInviteAccess", access.bulkSpaceInviteAccess},
        {"createChatRoomAccess", access.createChatRoomAccess},
        {"joinSpaceAccess", access.joinSpaceAccess},
        {"createDocAccess", access.createDocAccess},
        {"setWorkspaceReason", access.setWorkspaceReason},
        {"deleteWorkspaceReason", access.deleteWorkspaceReason},
        {"bulkSpaceInviteReason", access.bulkSpaceInviteReason},
        {"createChatRoomReason", access.createChatRoomReason},
        {"joinSpaceReason", access.joinSpaceReason},
        {"createDocReason", access.createDocReason},
    };
}

void to_json(host::Json& json, const DOC_ACCESS& access)
{
    json = {
        {"setDocAccess", access.setDocAccess},
        {"deleteDocAccess", access.deleteDocAccess},
        {"setDocReason", access.setDocReason},
        {"deleteDocReason", access.deleteDocReason},
    };
}

void to_json(host::Json& json, const ROOM_ACCESS& access)
{
    json = {
        {"setChatRoomAccess", access.setChatRoomAccess},
        {"deleteChatRoomAccess", access.deleteChatRoomAccess},
        {"createChatEntryAccess", access.createChatEntryAccess},
        {"setChatRoomReason", access.setChatRoomReason},
        {"deleteChatRoomReason", access.deleteChatRoomReason},
        {"createChatEntryReason", access.createChatEntryReason},
    };
}

void to_json(host::Json& json, const RoleItem& item)
{
    json = {{"cmd", item.cmd}, {"id", item.id}, {"access", item.access}};
}

void to_json(host::Json& json, const CZelMember& member)
{
    json = {
        {"userID", member.userID},     {"userName", member.userName}, {"status", member.status},
        {"reserved", member.reserved}, {"email", member.email},       {"role", member.role},
    };
}

void to_json(host::Json& json, const SPACEINVT& invitation)
{
    json = {
        {"workspaceID", invitation.workspaceID},
        {"user", invitation.user},
        {"inviteMethod", invitation.inviteMethod},
        {"status", invitation.status},
        {"isproviderID", invitation.isproviderID},
        {"inviteAs", static_cast<int>(invitation.inviteAs)},
        {"userID", invitation.userID},
        {"userName", invitation.userName},
        {"inviteType", invitation.inviteType},
        {"emailSent", invitation.emailSent},
        {"email", invitation.email},
    };
}

void to_json(host::Json& json, const CUserConfigInfo& info)
{
    json = {
        {"userID", info.userID},
        {"userName", info.userName},
        {"email", info.email},
        {"firstName", info.firstName},
        {"lastName", info.lastName},
        {"namespaceID", info.namespaceID},
        {"ISProviderID", info.ISProviderID},
        {"QueltID", info.QueltID},
        {"Password", info.Password},
        {"QueltAVToken", info.QueltAVToken},
        {"QueltDesktopShareURL", info.QueltDesktopShareURL},
        {"QueltAudioOrVisualURL", info.QueltAudioOrVisualURL},
        {"hostName", info.hostName},
        {"websiteURL", info.websiteURL},
        {"ISProviders", info.ISProviders},
    };
}

void to_json(host::Json& json, const CZelISProvider& provider)
{
    json = {
        {"ISProviderID", provider.ISProviderID},
        {"ISProviderName", provider.ISProviderName},
        {"userName", provider.userName},
        {"namespaceID", provider.namespaceID},
    };
}

void to_json(host::Json& json, const USER_PROFILE& profile)
{
    json = {
        {"userID", profile.userID},
        {"firstName", profile.firstName},
        {"lastName", profile.lastName},
        {"middleName", profile.middleName},
    };
}

void to_json(host::Json& json, const CZelPolicy& policy)
{
    json = {
        {"AutomaticUpdates", policy.AutomaticUpdates},
        {"PremiumServices", policy.PremiumServices},
        {"SecureCollaboration", policy.SecureCollaboration},
        {"IMInt", policy.IMInt},
        {"IMExt", policy.IMExt},
        {"DisableIMCatchInt", policy.DisableIMCatchInt},
        {"DisableIMCatchExt", policy.DisableIMCatchExt},
        {"LocalArchive", policy.LocalArchive},
        {"VoIPInt", policy.VoIPInt},
        {"VoIPExt", policy.VoIPExt},
        {"VideoInt", policy.VideoInt},
        {"VideoExt", policy.VideoExt},
        {"DesktopShareInt", policy.DesktopShareInt},
        {"DesktopShareExt", policy.DesktopShareExt},
        {"RemoteControlInt", policy.RemoteControlInt},
        {"RemoteControlExt", policy.RemoteControlExt},
        {"FileTransferInt", policy.FileTransferInt},
        {"FileTransferExt", policy.FileTransferExt},
        {"FileXferVirusScan", policy.FileXferVirusScan},
        {"HasSpaces", policy.HasSpaces},
        {"CreateWorkspace", policy.CreateWorkspace},
    };
}

void to_json(host::Json& json, const library_t& library)
{
    json = {
        {"name", library.name},
        {"ID", library.ID},
        {"type", library.type},
        {"templates", library.templates},
    };
}

void to_json(host::Json& json, const CZelTemplateItem& item)
{
    json = {
        {"name", item.name},
        {"ID", item.ID},
        {"description", item.description},
        {"type", item.GetType()},
    };
}

void to_json(host::Json& json, const library2_t& library)
{
    json = {
        {"name", library.name},
        {"ID", library.ID},
        {"type", library.type},
        {"apps", library.apps},
    };
}

void to_json(host::Json& json, const library_app_t& app)
{
    json = {
        {"name", app.name},
        {"ID", app.ID},
        {"currentDir", app.currentDir},
        {"status", app.status},
        {"package", app.package},
        {"appType", app.appType},
        {"identityDescription", app.identityDescription},
        {"identityName", app.identityName},
        {"topLevel", app.topLevel},
    };
}

void to_json(host::Json& json, const SPACE_COUNT_ITEM& item)
{
    json = {
        {"workspaceID", item.workspaceID},
        {"count", item.count},
        {"activeMembersCount", item.activeMembersCount},
        {"unreadMessageCount", item.unreadMessageCount},
    };
}
