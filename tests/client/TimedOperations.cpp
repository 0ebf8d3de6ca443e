#include "tests/client/TimedOperations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/Text.h"

namespace {

using TimedOperations = std::vector<TimedOperation>;
using Fields = std::vector<CWapiClient::WKSP_Field_Value>;

int createSpace(CWapiClient& client, const CStringT& name)
{
    Fields fields;
    CStringT id;
    return client.createSpace({}, name, fields, id, 0, 0);
}

int cloneWksp(CWapiClient& client, const CStringT& name)
{
    Fields fields;
    CStringT id;
    return client.cloneWksp({}, name, {}, 0, fields, id, 0);
}

int editExtWksp(CWapiClient& client, const CStringT& workspaceID)
{
    Fields fields;
    return client.editExtWksp({}, workspaceID, {}, 1, fields);
}

void sendPicture(CWapiClient& client)
{
    const auto file = std::filesystem::temp_directory_path() / "timed picture.png";
    std::ofstream(file) << "picture";
    CStringT url;
    EXPECT_EQ(client.SetSpaceIcon({}, {}, wide(file.string()), url), 1);
    std::filesystem::remove(file);
}

TimedOperations sessionOperations()
{
    return {
        {"cloneSession", true,
         [](CWapiClient& c) {
             CStringT cred;
             EXPECT_EQ(c.cloneSession({}, {}, cred), 1);
         }},
        {"createSpace", true, [](CWapiClient& c) { createSpace(c, "name"_w); }},
        {"createSpaceRefused", true, [](CWapiClient& c) { createSpace(c, {}); }},
        {"GetWkspList", true,
         [](CWapiClient& c) {
             std::vector<SpaceForList> spaces;
             std::vector<CZelSpaceInvite> invitations;
             c.GetWkspList({}, {}, {}, spaces, invitations);
         }},
        {"OnTimer", true, [](CWapiClient& c) { c.OnTimer(1); }},
        {"login", true, [](CWapiClient& c) { EXPECT_EQ(c.login({}, {}, {}, {}, 0, 1), 1); }},
        {"loginNotSent", false, [](CWapiClient& c) { EXPECT_EQ(c.login({}, {}, {}, {}, 0, 0), 0); }},
        {"getSessionInfo", false, [](CWapiClient& c) { EXPECT_EQ(c.getSessionInfo({}), 1); }},
        {"getCredForExpired", false,
         [](CWapiClient& c) {
             CStringT cred;
             EXPECT_EQ(c.getCredForExpired(cred, {}, {}, {}, {}, 0), 1);
         }},
        {"logout", false, [](CWapiClient& c) { EXPECT_EQ(c.logout({}), 1); }},
        {"callWapi", false, [](CWapiClient& c) { EXPECT_EQ(c.callWapi({}, {}), 1); }},
        {"WapiProxyCall", false,
         [](CWapiClient& c) {
             CStringT reply;
             EXPECT_EQ(c.WapiProxyCall({}, {}, CWapiClient::METHOD_POST, c.getOpURL(), {}, 1, reply), 1);
         }},
        {"GetSpacesTest", false, [](CWapiClient& c) { EXPECT_EQ(c.GetSpacesTest({}, {}), 1); }},
    };
}

TimedOperations spaceOperations()
{
    return {
        {"cloneWksp", true, [](CWapiClient& c) { EXPECT_EQ(cloneWksp(c, "name"_w), 1); }},
        {"cloneWkspRefused", true, [](CWapiClient& c) { EXPECT_EQ(cloneWksp(c, {}), 0); }},
        {"editExtWksp", true, [](CWapiClient& c) { EXPECT_EQ(editExtWksp(c, "w"_w), 1); }},
        {"editExtWkspRefused", true, [](CWapiClient& c) { EXPECT_EQ(editExtWksp(c, {}), 0); }},
        {"deleteWksp", true, [](CWapiClient& c) { EXPECT_EQ(c.deleteWksp({}, "w"_w), 1); }},
        {"deleteWkspRefused", true, [](CWapiClient& c) { EXPECT_EQ(c.deleteWksp({}, {}), 0); }},
        {"leaveWorkspace", true, [](CWapiClient& c) { EXPECT_EQ(c.leaveWorkspace("c"_w, "w"_w), 1); }},
        {"leaveWorkspaceRefused", true, [](CWapiClient& c) { EXPECT_EQ(c.leaveWorkspace({}, "w"_w), 0); }},
        {"createSpaceUsingApp", true,
         [](CWapiClient& c) {
             CStringT id;
             EXPECT_EQ(c.createSpaceUsingApp({}, {}, {}, id, {}, 0, 0), 1);
         }},
        {"saveWorkspaceAsApp", true,
         [](CWapiClient& c) {
             CStringT id;
             EXPECT_EQ(c.saveWorkspaceAsApp({}, {}, {}, {}, id, {}), 1);
         }},
    };
}

TimedOperations tabOperations()
{
    return {
        {"createTab", false,
         [](CWapiClient& c) {
             CStringT id;
             EXPECT_EQ(c.createTab({}, "w"_w, "name"_w, 1, id), 1);
         }},
        {"getTabs", true,
         [](CWapiClient& c) {
             std::vector<CZelTab> tabs;
             EXPECT_EQ(c.getTabs({}, {}, tabs), 1);
         }},
        {"deleteTab", false, [](CWapiClient& c) { EXPECT_EQ(c.deleteTab({}, "w"_w, "t"_w), 1); }},
        {"deleteTabRefused", false, [](CWapiClient& c) { EXPECT_EQ(c.deleteTab({}, "w"_w, "docTab"_w), 0); }},
        {"editTab", false,
         [](CWapiClient& c) {
             CZelTab tab;
             tab.SetID("t"_w);
             EXPECT_EQ(c.editTab({}, "w"_w, tab), 1);
         }},
        {"editTabOrder", false,
         [](CWapiClient& c) {
             std::vector<CZelTab> tabs(1);
             EXPECT_EQ(c.editTabOrder({}, {}, tabs), 1);
         }},
        {"SetSpaceIcon", true, sendPicture},
        {"SetSpaceIconRefused", true,
         [](CWapiClient& c) {
             CStringT url;
             EXPECT_EQ(c.SetSpaceIcon({}, {}, "no such picture"_w, url), 0);
         }},
        {"GetSpaceIcon", false,
         [](CWapiClient& c) {
             CStringT path;
             c.GetSpaceIcon({}, "no address"_w, path);
         }},
    };
}

TimedOperations probeOperations()
{
    return {
        {"probeSpaceAccess", true,
         [](CWapiClient& c) {
             SPACE_ACCESS access;
             EXPECT_EQ(c.probeSpaceAccess({}, {}, access, 0), 1);
         }},
        {"probeSpaceAccess2", false,
         [](CWapiClient& c) {
             SPACE_ACCESS access;
             EXPECT_EQ(c.probeSpaceAccess2({}, access), 1);
         }},
        {"probeDocAccess", true,
         [](CWapiClient& c) {
             DOC_ACCESS access;
             EXPECT_EQ(c.probeDocAccess({}, {}, access), 1);
         }},
        {"probeChatRoomAccess", false,
         [](CWapiClient& c) {
             ROOM_ACCESS access;
             EXPECT_EQ(c.probeChatRoomAccess({}, {}, access), 1);
         }},
        {"getRole", true,
         [](CWapiClient& c) {
             std::vector<RoleItem> roles;
             EXPECT_EQ(c.getRole({}, {}, roles), 1);
         }},
        {"ProbeAccessAllSpace", true,
         [](CWapiClient& c) {
             std::vector<RoleItem> roles;
             EXPECT_EQ(c.ProbeAccessAllSpace({}, {}, {}, roles), 1);
         }},
    };
}

TimedOperations memberOperations()
{
    return {
        {"getSpaceBatch", true,
         [](CWapiClient& c) {
             space_t space;
             std::vector<CZelSpaceInvite> invitations;
             SPACE_ACCESS access;
             CStringT out;
             EXPECT_EQ(c.getSpaceBatch({}, {}, space, invitations, access, out), 1);
         }},
        {"getMembers", true,
         [](CWapiClient& c) {
             std::vector<CZelMember> members;
             EXPECT_EQ(c.getMembers({}, {}, members), 1);
         }},
        {"removeSpaceMember", true, [](CWapiClient& c) { EXPECT_EQ(c.removeSpaceMember({}, {}, {}), 1); }},
        {"changeMemberRole", false,
         [](CWapiClient& c) { EXPECT_EQ(c.changeMemberRole({}, {}, {}, WAPI_INVITEAS_ADMIN), 1); }},
        {"inviteMembers", false,
         [](CWapiClient& c) {
             std::vector<SPACEINVT> none;
             EXPECT_EQ(c.inviteMembers({}, none, {}), 1);
         }},
        {"delInvt", true, [](CWapiClient& c) { EXPECT_EQ(c.delInvt({}, {}, {}), 1); }},
        {"responseInvitation", true, [](CWapiClient& c) { EXPECT_EQ(c.responseInvitation({}, {}, 1), 1); }},
        {"GetFavoriteSpaceList", true,
         [](CWapiClient& c) {
             std::vector<space_t> spaces;
             EXPECT_EQ(c.GetFavoriteSpaceList({}, {}, spaces), 1);
         }},
        {"createFavoriteSpace", true, [](CWapiClient& c) { EXPECT_EQ(c.createFavoriteSpace({}, {}, {}), 1); }},
        {"deleteFavoriteSpace", true, [](CWapiClient& c) { EXPECT_EQ(c.deleteFavoriteSpace({}, {}, {}), 1); }},
    };
}

/// Without and with something to write: the first is refused without a request.
int editExtUser(CWapiClient& client, std::vector<CWapiClient::USER_Field_Value> fields)
{
    return client.editExtUser({}, {}, fields);
}

int sendEvent(CWapiClient& client, int event)
{
    return client.sendNotificationEvent({}, static_cast<EVENT_NAME>(event), {}, {}, {}, {}, {});
}

/// Calls an operation that takes a credential and one output.
template <typename Output>
auto reading(int (CWapiClient::*operation)(const CStringT&, Output&))
{
    return [operation](CWapiClient& client) {
        Output output{};
        (client.*operation)({}, output);
    };
}

TimedOperations accountOperations()
{
    return {
        {"getUserConfigureInfo", true, reading(&CWapiClient::getUserConfigureInfo)},
        {"getUserProfile", true, reading(&CWapiClient::getUserProfile)},
        {"editExtUser", true,
         [](CWapiClient& c) {
             EXPECT_EQ(editExtUser(c, {{0, "host"_w}}), 1);
         }},
        {"editExtUserRefused", true, [](CWapiClient& c) { EXPECT_EQ(editExtUser(c, {}), 0); }},
        {"createRDQAVAccount", true, [](CWapiClient& c) { EXPECT_EQ(c.createRDQAVAccount({}, {}), 1); }},
        {"getOrgInfo", false,
         [](CWapiClient& c) {
             CStringT a, b, d, e;
             EXPECT_EQ(c.getOrgInfo({}, a, b, d, e), 1);
         }},
        {"getDomainList", true, reading(&CWapiClient::getDomainList)},
        {"getPolicyData", true, reading(&CWapiClient::getPolicyData)},
        {"getLibraries", true,
         [](CWapiClient& c) {
             std::vector<library_t> libraries;
             EXPECT_EQ(c.getLibraries({}, 0, 0, 0, libraries), 1);
         }},
        {"addTemplateToLibrary", true, [](CWapiClient& c) { EXPECT_EQ(c.addTemplateToLibrary({}, {}, {}), 1); }},
        {"getUserLibrariesWithApps", true,
         [](CWapiClient& c) {
             std::vector<library2_t> libraries;
             EXPECT_EQ(c.getUserLibrariesWithApps({}, 0, 0, libraries), 1);
         }},
        {"getSpaceNotify", true, reading(&CWapiClient::getSpaceNotify)},
        {"getSpaceActivity", true, reading(&CWapiClient::getSpaceActivity)},
        {"sendNotificationEvent", true, [](CWapiClient& c) { EXPECT_EQ(sendEvent(c, 0), 1); }},
        {"sendNotificationEventRefused", true, [](CWapiClient& c) { EXPECT_EQ(sendEvent(c, 6), 0); }},
        {"writeMeetingRecord", true,
         [](CWapiClient& c) { EXPECT_EQ(c.writeMeetingRecord({}, {}, {}, {}, {}, {}), 1); }},
    };
}

}  // namespace

const std::vector<TimedOperation>& timedOperations()
{
    static const TimedOperations kAll = [] {
        TimedOperations all;
        for (const auto topic : {&sessionOperations, &spaceOperations, &tabOperations, &probeOperations,
                                 &memberOperations, &accountOperations}) {
            TimedOperations some = topic();
            std::move(some.begin(), some.end(), std::back_inserter(all));
        }
        return all;
    }();
    return kAll;
}
