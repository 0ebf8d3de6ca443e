// The members of the records of workspaces, of who is in them, and of who may do what there.
#pragma once

#include <tuple>

#include "records/Access.h"
#include "records/MemberTable.h"
#include "records/Members.h"
#include "records/Roles.h"
#include "records/SpaceDetails.h"
#include "records/Spaces.h"
#include "records/Tabs.h"

namespace pvrecords {

template <>
inline constexpr std::tuple kMembers<SpaceForList>{
    Member{"workspaceID", &SpaceForList::workspaceID},
    Member{"workspaceName", &SpaceForList::workspaceName},
    Member{"status", &SpaceForList::status},
    Member{"userID", &SpaceForList::userID},
    Member{"userName", &SpaceForList::userName},
    Member{"type", &SpaceForList::type},
    Member{"isTemplate", &SpaceForList::isTemplate},
    Member{"namespaceID", &SpaceForList::namespaceID},
    Member{"description", &SpaceForList::description},
    Member{"spaceIconURL", &SpaceForList::spaceIconURL},
    Member{"role", &SpaceForList::role},
};

template <>
inline constexpr std::tuple kMembers<CZelSpaceInvite>{
    Member{"spaceInviteID", &CZelSpaceInvite::spaceInviteID},
    Member{"expires", &CZelSpaceInvite::expires},
    Member{"lastModifiedTime", &CZelSpaceInvite::lastModifiedTime},
    Member{"status", &CZelSpaceInvite::status},
    Member{"workspaceID", &CZelSpaceInvite::workspaceID},
    Member{"createTime", &CZelSpaceInvite::createTime},
    Member{"statusChanged", &CZelSpaceInvite::statusChanged},
    Member{"userDescriptor", &CZelSpaceInvite::userDescriptor},
    Member{"userName", &CZelSpaceInvite::userName},
    Member{"workspaceName", &CZelSpaceInvite::workspaceName},
    Member{"ownerID", &CZelSpaceInvite::ownerID},
    Member{"ownerName", &CZelSpaceInvite::ownerName},
    Member{"inviteType", &CZelSpaceInvite::inviteType},
    Member{"inviteAsType", &CZelSpaceInvite::inviteAsType},
};

template <>
inline constexpr std::tuple kMembers<space_t>{
    Member{"workspaceID", &space_t::workspaceID},
    Member{"workspaceName", &space_t::workspaceName},
    Member{"type", &space_t::type},
    Member{"isTemplate", &space_t::isTemplate},
    Member{"userID", &space_t::userID},
    Member{"userName", &space_t::userName},
    Member{"namespaceID", &space_t::namespaceID},
    Member{"namespaceName", &space_t::namespaceName},
    Member{"createTime", &space_t::createTime},
    Member{"lastModifiedTime", &space_t::lastModifiedTime},
    Member{"groupName", &space_t::groupName},
    Member{"groupID", &space_t::groupID},
    Member{"descriptionText", &space_t::descriptionText},
    Member{"descriptionIcon", &space_t::descriptionIcon},
    Member{"discussionTab", &space_t::discussionTab},
    Member{"filesTab", &space_t::filesTab},
    Member{"spaceIconURL", &space_t::spaceIconURL},
    Member{"members", &space_t::members},
    Member{"tabs", &space_t::tabs},
    Member{"kind", &space_t::kind},
};

template <>
inline constexpr std::tuple kMembers<CZelTab>{
    Property{"ID", &CZelTab::GetID, &CZelTab::SetID},
    Property{"name", &CZelTab::GetName, &CZelTab::SetName},
    Property{"type", &CZelTab::GetType, &CZelTab::SetType},
    Property{"position", &CZelTab::GetTabPos, &CZelTab::SetTabPos},
};

template <>
inline constexpr std::tuple kMembers<CZelMember>{
    Member{"userID", &CZelMember::userID}, Member{"userName", &CZelMember::userName},
    Member{"status", &CZelMember::status}, Member{"reserved", &CZelMember::reserved},
    Member{"email", &CZelMember::email},   Member{"role", &CZelMember::role},
};

template <>
inline constexpr std::tuple kMembers<SPACEINVT>{
    Member{"workspaceID", &SPACEINVT::workspaceID},
    Member{"user", &SPACEINVT::user},
    Member{"inviteMethod", &SPACEINVT::inviteMethod},
    Member{"status", &SPACEINVT::status},
    Member{"isproviderID", &SPACEINVT::isproviderID},
    Member{"inviteAs", &SPACEINVT::inviteAs},
    Member{"userID", &SPACEINVT::userID},
    Member{"userName", &SPACEINVT::userName},
    Member{"inviteType", &SPACEINVT::inviteType},
    Member{"emailSent", &SPACEINVT::emailSent},
    Member{"email", &SPACEINVT::email},
};

template <>
inline constexpr std::tuple kMembers<MemberRole>{
    Member{"roleID", &MemberRole::roleID},
    Member{"roleName", &MemberRole::roleName},
};

template <>
inline constexpr std::tuple kMembers<SPACE_ACCESS>{
    Member{"setWorkspaceAccess", &SPACE_ACCESS::setWorkspaceAccess},
    Member{"deleteWorkspaceAccess", &SPACE_ACCESS::deleteWorkspaceAccess},
    Member{"bulkSpaceInviteAccess", &SPACE_ACCESS::bulkSpaceInviteAccess},
    Member{"createChatRoomAccess", &SPACE_ACCESS::createChatRoomAccess},
    Member{"joinSpaceAccess", &SPACE_ACCESS::joinSpaceAccess},
    Member{"createDocAccess", &SPACE_ACCESS::createDocAccess},
    Member{"setWorkspaceReason", &SPACE_ACCESS::setWorkspaceReason},
    Member{"deleteWorkspaceReason", &SPACE_ACCESS::deleteWorkspaceReason},
    Member{"bulkSpaceInviteReason", &SPACE_ACCESS::bulkSpaceInviteReason},
    Member{"createChatRoomReason", &SPACE_ACCESS::createChatRoomReason},
    Member{"joinSpaceReason", &SPACE_ACCESS::joinSpaceReason},
    Member{"createDocReason", &SPACE_ACCESS::createDocReason},
};

template <>
inline constexpr std::tuple kMembers<DOC_ACCESS>{
    Member{"setDocAccess", &DOC_ACCESS::setDocAccess},
    Member{"deleteDocAccess", &DOC_ACCESS::deleteDocAccess},
    Member{"setDocReason", &DOC_ACCESS::setDocReason},
    Member{"deleteDocReason", &DOC_ACCESS::deleteDocReason},
};

template <>
inline constexpr std::tuple kMembers<ROOM_ACCESS>{
    Member{"setChatRoomAccess", &ROOM_ACCESS::setChatRoomAccess},
    Member{"deleteChatRoomAccess", &ROOM_ACCESS::deleteChatRoomAccess},
    Member{"createChatEntryAccess", &ROOM_ACCESS::createChatEntryAccess},
    Member{"setChatRoomReason", &ROOM_ACCESS::setChatRoomReason},
    Member{"deleteChatRoomReason", &ROOM_ACCESS::deleteChatRoomReason},
    Member{"createChatEntryReason", &ROOM_ACCESS::createChatEntryReason},
};

template <>
inline constexpr std::tuple kMembers<RoleItem>{
    Member{"cmd", &RoleItem::cmd},
    Member{"id", &RoleItem::id},
    Member{"access", &RoleItem::access},
};

}  // namespace pvrecords
