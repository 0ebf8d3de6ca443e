// The members of the records of the user, the organisation, the libraries and the counters, and of the last message.
#pragma once

#include <tuple>

#include "records/Events.h"
#include "records/Libraries.h"
#include "records/MemberTable.h"
#include "records/Policy.h"
#include "records/Users.h"
#include "records/WapiMessage.h"

namespace pvrecords {

template <>
inline constexpr std::tuple kMembers<CZelISProvider>{
    Member{"ISProviderID", &CZelISProvider::ISProviderID},
    Member{"ISProviderName", &CZelISProvider::ISProviderName},
    Member{"userName", &CZelISProvider::userName},
    Member{"namespaceID", &CZelISProvider::namespaceID},
};

template <>
inline constexpr std::tuple kMembers<CUserConfigInfo>{
    Member{"userID", &CUserConfigInfo::userID},
    Member{"userName", &CUserConfigInfo::userName},
    Member{"email", &CUserConfigInfo::email},
    Member{"firstName", &CUserConfigInfo::firstName},
    Member{"lastName", &CUserConfigInfo::lastName},
    Member{"namespaceID", &CUserConfigInfo::namespaceID},
    Member{"ISProviderID", &CUserConfigInfo::ISProviderID},
    Member{"QueltID", &CUserConfigInfo::QueltID},
    Member{"Password", &CUserConfigInfo::Password},
    Member{"QueltAVToken", &CUserConfigInfo::QueltAVToken},
    Member{"QueltDesktopShareURL", &CUserConfigInfo::QueltDesktopShareURL},
    Member{"QueltAudioOrVisualURL", &CUserConfigInfo::QueltAudioOrVisualURL},
    Member{"hostName", &CUserConfigInfo::hostName},
    Member{"websiteURL", &CUserConfigInfo::websiteURL},
    Member{"ISProviders", &CUserConfigInfo::ISProviders},
};

template <>
inline constexpr std::tuple kMembers<USER_PROFILE>{
    Member{"userID", &USER_PROFILE::userID},
    Member{"firstName", &USER_PROFILE::firstName},
    Member{"lastName", &USER_PROFILE::lastName},
    Member{"middleName", &USER_PROFILE::middleName},
};

template <>
inline constexpr std::tuple kMembers<CZelPolicy>{
    Member{"AutomaticUpdates", &CZelPolicy::AutomaticUpdates},
    Member{"PremiumServices", &CZelPolicy::PremiumServices},
    Member{"SecureCollaboration", &CZelPolicy::SecureCollaboration},
    Member{"IMInt", &CZelPolicy::IMInt},
    Member{"IMExt", &CZelPolicy::IMExt},
    Member{"DisableIMCatchInt", &CZelPolicy::DisableIMCatchInt},
    Member{"DisableIMCatchExt", &CZelPolicy::DisableIMCatchExt},
    Member{"LocalArchive", &CZelPolicy::LocalArchive},
    Member{"VoIPInt", &CZelPolicy::VoIPInt},
    Member{"VoIPExt", &CZelPolicy::VoIPExt},
    Member{"VideoInt", &CZelPolicy::VideoInt},
    Member{"VideoExt", &CZelPolicy::VideoExt},
    Member{"DesktopShareInt", &CZelPolicy::DesktopShareInt},
    Member{"DesktopShareExt", &CZelPolicy::DesktopShareExt},
    Member{"RemoteControlInt", &CZelPolicy::RemoteControlInt},
    Member{"RemoteControlExt", &CZelPolicy::RemoteControlExt},
    Member{"FileTransferInt", &CZelPolicy::FileTransferInt},
    Member{"FileTransferExt", &CZelPolicy::FileTransferExt},
    Member{"FileXferVirusScan", &CZelPolicy::FileXferVirusScan},
    Member{"HasSpaces", &CZelPolicy::HasSpaces},
    Member{"CreateWorkspace", &CZelPolicy::CreateWorkspace},
};

template <>
inline constexpr std::tuple kMembers<CZelTemplateItem>{
    Member{"name", &CZelTemplateItem::name},
    Member{"ID", &CZelTemplateItem::ID},
    Member{"description", &CZelTemplateItem::description},
    Answer{"type", &CZelTemplateItem::GetType},
};

template <>
inline constexpr std::tuple kMembers<library_t>{
    Member{"name", &library_t::name},
    Member{"ID", &library_t::ID},
    Member{"type", &library_t::type},
    Member{"templates", &library_t::templates},
};

template <>
inline constexpr std::tuple kMembers<library_app_t>{
    Member{"name", &library_app_t::name},
    Member{"ID", &library_app_t::ID},
    Member{"currentDir", &library_app_t::currentDir},
    Member{"status", &library_app_t::status},
    Member{"package", &library_app_t::package},
    Member{"appType", &library_app_t::appType},
    Member{"identityDescription", &library_app_t::identityDescription},
    Member{"identityName", &library_app_t::identityName},
    Member{"topLevel", &library_app_t::topLevel},
};

template <>
inline constexpr std::tuple kMembers<library2_t>{
    Member{"name", &library2_t::name},
    Member{"ID", &library2_t::ID},
    Member{"type", &library2_t::type},
    Member{"apps", &library2_t::apps},
};

template <>
inline constexpr std::tuple kMembers<SPACE_COUNT_ITEM>{
    Member{"workspaceID", &SPACE_COUNT_ITEM::workspaceID},
    Member{"count", &SPACE_COUNT_ITEM::count},
    Member{"activeMembersCount", &SPACE_COUNT_ITEM::activeMembersCount},
    Member{"unreadMessageCount", &SPACE_COUNT_ITEM::unreadMessageCount},
};

template <>
inline constexpr std::tuple kMembers<WAPIMESSAGE>{
    Member{"code", &WAPIMESSAGE::code},
    Member{"reason", &WAPIMESSAGE::reason},
    Member{"exceptionID", &WAPIMESSAGE::exceptionID},
    Member{"response", &WAPIMESSAGE::response},
    Member{"reserved", &WAPIMESSAGE::reserved},
};

}  // namespace pvrecords
