// How the records of the account operations show in wire examples.
#pragma once

#include "client/WapiClient.h"

template <typename Visit>
void visitMembers(CZelISProvider& provider, Visit visit)
{
    visit("ISProviderID", provider.ISProviderID);
    visit("ISProviderName", provider.ISProviderName);
    visit("userName", provider.userName);
    visit("namespaceID", provider.namespaceID);
}

template <typename Visit>
void visitMembers(CUserConfigInfo& info, Visit visit)
{
    visit("userID", info.userID);
    visit("userName", info.userName);
    visit("email", info.email);
    visit("firstName", info.firstName);
    visit("lastName", info.lastName);
    visit("namespaceID", info.namespaceID);
    visit("ISProviderID", info.ISProviderID);
    visit("QueltID", info.QueltID);
    visit("Password", info.Password);
    visit("QueltAVToken", info.QueltAVToken);
    visit("QueltDesktopShareURL", info.QueltDesktopShareURL);
    visit("QueltAudioOrVisualURL", info.QueltAudioOrVisualURL);
    visit("hostName", info.hostName);
    visit("websiteURL", info.websiteURL);
    visit("ISProviders", info.ISProviders);
}

template <typename Visit>
void visitMembers(USER_PROFILE& user, Visit visit)
{
    visit("userID", user.userID);
    visit("firstName", user.firstName);
    visit("lastName", user.lastName);
    visit("middleName", user.middleName);
}

template <typename Visit>
void visitMembers(CZelPolicy& policy, Visit visit)
{
    visit("AutomaticUpdates", policy.AutomaticUpdates);
    visit("PremiumServices", policy.PremiumServices);
    visit("SecureCollaboration", policy.SecureCollaboration);
    visit("IMInt", policy.IMInt);
    visit("IMExt", policy.IMExt);
    visit("DisableIMCatchInt", policy.DisableIMCatchInt);
    visit("DisableIMCatchExt", policy.DisableIMCatchExt);
    visit("LocalArchive", policy.LocalArchive);
    visit("VoIPInt", policy.VoIPInt);
    visit("VoIPExt", policy.VoIPExt);
    visit("VideoInt", policy.VideoInt);
    visit("VideoExt", policy.VideoExt);
    visit("DesktopShareInt", policy.DesktopShareInt);
    visit("DesktopShareExt", policy.DesktopShareExt);
    visit("RemoteControlInt", policy.RemoteControlInt);
    visit("RemoteControlExt", policy.RemoteControlExt);
    visit("FileTransferInt", policy.FileTransferInt);
    visit("FileTransferExt", policy.FileTransferExt);
    visit("FileXferVirusScan", policy.FileXferVirusScan);
    visit("HasSpaces", policy.HasSpaces);
    visit("CreateWorkspace", policy.CreateWorkspace);
}

/// The type can only be asked for, so what is visited is a copy of it.
template <typename Visit>
void visitMembers(CZelTemplateItem& item, Visit visit)
{
    int type = item.GetType();
    visit("name", item.name);
    visit("ID", item.ID);
    visit("description", item.description);
    visit("type", type);
}

template <typename Visit>
void visitMembers(library_t& library, Visit visit)
{
    visit("name", library.name);
    visit("ID", library.ID);
    visit("type", library.type);
    visit("templates", library.templates);
}

template <typename Visit>
void visitMembers(library_app_t& app, Visit visit)
{
    visit("name", app.name);
    visit("ID", app.ID);
    visit("currentDir", app.currentDir);
    visit("status", app.status);
    visit("package", app.package);
    visit("appType", app.appType);
    visit("identityDescription", app.identityDescription);
    visit("identityName", app.identityName);
    visit("topLevel", app.topLevel);
}

template <typename Visit>
void visitMembers(library2_t& library, Visit visit)
{
    visit("name", library.name);
    visit("ID", library.ID);
    visit("type", library.type);
    visit("apps", library.apps);
}

template <typename Visit>
void visitMembers(SPACE_COUNT_ITEM& item, Visit visit)
{
    visit("workspaceID", item.workspaceID);
    visit("count", item.count);
    visit("activeMembersCount", item.activeMembersCount);
    visit("unreadMessageCount", item.unreadMessageCount);
}
