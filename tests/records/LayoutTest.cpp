// The order of the records' members and the numbers of their constants: a host that was compiled against them relies on
// both.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <type_traits>

#include "client/WapiClient.h"
#include "tests/support/Text.h"

namespace {

/// Checks that the members stand in this order, and that nothing else stands behind them.
template <typename Record, typename... Members>
void expectOrder(const Record& record, const Members&... members)
{
    const std::array<const char*, sizeof...(Members)> begins{reinterpret_cast<const char*>(&members)...};
    const std::array<std::size_t, sizeof...(Members)> sizes{sizeof(Members)...};
    EXPECT_TRUE(std::ranges::is_sorted(begins));
    const char* const end = reinterpret_cast<const char*>(&record) + sizeof(Record);
    EXPECT_LT(end - (begins.back() + sizes.back()), static_cast<std::ptrdiff_t>(alignof(Record)));
}

template <typename Member>
bool isNew(const Member& member)
{
    if constexpr (std::is_arithmetic_v<Member> || std::is_enum_v<Member>) return static_cast<int>(member) == 0;
    else return member.empty();
}

/// The same of a record that nobody has filled: every number is 0, every text and list empty.
template <typename Record, typename... Members>
void expectNewInOrder(const Record& record, const Members&... members)
{
    expectOrder(record, members...);
    const std::array<bool, sizeof...(Members)> areNew{isNew(members)...};
    for (std::size_t at = 0; at < areNew.size(); ++at) EXPECT_TRUE(areNew[at]) << "member " << at;
}

}  // namespace

TEST(Layout, OfMessages)
{
    const WAPIMESSAGE r;
    expectNewInOrder(r, r.code, r.reason, r.exceptionID, r.response, r.reserved);
}

TEST(Layout, OfFieldsToWrite)
{
    const CWapiClient::WKSP_Field_Value space{1, "text"_w};
    expectOrder(space, space.field, space.value);
    const CWapiClient::USER_Field_Value user{2, "text"_w};
    expectOrder(user, user.type, user.value);
}

TEST(Layout, OfAccess)
{
    const SPACE_ACCESS s;
    expectNewInOrder(s, s.setWorkspaceAccess, s.deleteWorkspaceAccess, s.bulkSpaceInviteAccess, s.createChatRoomAccess,
                     s.joinSpaceAccess, s.createDocAccess, s.setWorkspaceReason, s.deleteWorkspaceReason,
                     s.bulkSpaceInviteReason, s.createChatRoomReason, s.joinSpaceReason, s.createDocReason);
    const DOC_ACCESS d;
    expectNewInOrder(d, d.setDocAccess, d.deleteDocAccess, d.setDocReason, d.deleteDocReason);
    const ROOM_ACCESS r;
    expectNewInOrder(r, r.setChatRoomAccess, r.deleteChatRoomAccess, r.createChatEntryAccess, r.setChatRoomReason,
                     r.deleteChatRoomReason, r.createChatEntryReason);
}

TEST(Layout, OfRoles)
{
    const MemberRole member;
    expectNewInOrder(member, member.roleID, member.roleName);
    const RoleItem item;
    expectNewInOrder(item, item.cmd, item.id, item.access);
}

TEST(Layout, OfListedSpacesAndInvitations)
{
    const SpaceForList s;
    expectNewInOrder(s, s.workspaceID, s.workspaceName, s.status, s.userID, s.userName, s.type, s.isTemplate,
                     s.namespaceID, s.description, s.spaceIconURL, s.role);
    const CZelSpaceInvite i;
    expectNewInOrder(i, i.spaceInviteID, i.expires, i.lastModifiedTime, i.status, i.workspaceID, i.createTime,
                     i.statusChanged, i.userDescriptor, i.userName, i.workspaceName, i.ownerID, i.ownerName,
                     i.inviteType, i.inviteAsType);
}

TEST(Layout, OfSpacesInFull)
{
    const space_t s;
    expectNewInOrder(s, s.workspaceID, s.workspaceName, s.type, s.isTemplate, s.userID, s.userName, s.namespaceID,
                     s.namespaceName, s.createTime, s.lastModifiedTime, s.groupName, s.groupID, s.descriptionText,
                     s.descriptionIcon, s.discussionTab, s.filesTab, s.spaceIconURL, s.members, s.tabs, s.kind);
}

TEST(Layout, OfPeople)
{
    const CZelMember m;
    expectNewInOrder(m, m.userID, m.userName, m.status, m.reserved, m.email, m.role);
    const SPACEINVT i;
    expectNewInOrder(i, i.workspaceID, i.user, i.inviteMethod, i.status, i.isproviderID, i.inviteAs, i.userID,
                     i.userName, i.inviteType, i.emailSent, i.email);
}

TEST(Layout, OfUsers)
{
    const CUserConfigInfo c;
    expectNewInOrder(c, c.userID, c.userName, c.email, c.firstName, c.lastName, c.namespaceID, c.ISProviderID,
                     c.QueltID, c.Password, c.QueltAVToken, c.QueltDesktopShareURL, c.QueltAudioOrVisualURL, c.hostName,
                     c.websiteURL, c.ISProviders);
    const CZelISProvider p;
    expectNewInOrder(p, p.ISProviderID, p.ISProviderName, p.userName, p.namespaceID);
    const USER_PROFILE u;
    expectNewInOrder(u, u.userID, u.firstName, u.lastName, u.middleName);
}

TEST(Layout, OfPolicy)
{
    const CZelPolicy p;
    expectNewInOrder(p, p.AutomaticUpdates, p.PremiumServices, p.SecureCollaboration, p.IMInt, p.IMExt,
                     p.DisableIMCatchInt, p.DisableIMCatchExt, p.LocalArchive, p.VoIPInt, p.VoIPExt, p.VideoInt,
                     p.VideoExt, p.DesktopShareInt, p.DesktopShareExt, p.RemoteControlInt, p.RemoteControlExt,
                     p.FileTransferInt, p.FileTransferExt, p.FileXferVirusScan, p.HasSpaces, p.CreateWorkspace);
    EXPECT_EQ(sizeof p, 21 * sizeof(int));
}

TEST(Layout, OfLibraries)
{
    const library_t l;
    expectNewInOrder(l, l.name, l.ID, l.type, l.templates);
    const CZelTemplateItem t;
    EXPECT_LT(&t.name, &t.ID);
    EXPECT_LT(&t.ID, &t.description);
    EXPECT_EQ(t.GetType(), 0);
    const library2_t a;
    expectNewInOrder(a, a.name, a.ID, a.type, a.apps);
    const library_app_t app;
    expectNewInOrder(app, app.name, app.ID, app.currentDir, app.status, app.package, app.appType,
                     app.identityDescription, app.identityName, app.topLevel);
}

TEST(Layout, OfCounts)
{
    const SPACE_COUNT_ITEM c;
    expectNewInOrder(c, c.workspaceID, c.count, c.activeMembersCount, c.unreadMessageCount);
}

TEST(Layout, OfClasses)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<CZelTab>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CZelMember>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CZelSpaceInvite>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CZelTemplateItem>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CWapiClient>);
    EXPECT_EQ(CZelTab().GetTabPos(), 0);
    EXPECT_EQ(CWapiClient::WKSP_Field_Value().field, 0);
    EXPECT_EQ(CWapiClient::USER_Field_Value().type, 0);
}

TEST(Layout, OfConstants)
{
    EXPECT_EQ(static_cast<int>(START_MEETING), 0);
    EXPECT_EQ(static_cast<int>(START_VOICE), 1);
    EXPECT_EQ(static_cast<int>(START_TELEPHONY), 2);
    EXPECT_EQ(static_cast<int>(END_MEETING), 3);
    EXPECT_EQ(static_cast<int>(END_VOICE), 4);
    EXPECT_EQ(static_cast<int>(END_TELEPHONY), 5);
    EXPECT_EQ(static_cast<int>(CWapiClient::METHOD_GET), 0);
    EXPECT_EQ(static_cast<int>(CWapiClient::METHOD_POST), 1);
    EXPECT_EQ(static_cast<int>(WAPI_INVITEAS_MEMBER), 1);
    EXPECT_EQ(static_cast<int>(WAPI_INVITEAS_ADMIN), 2);
    EXPECT_EQ(sizeof(EVENT_NAME), 4U);
    EXPECT_EQ(sizeof(WAPI_INVITEAS_TYPE), 4U);
}
