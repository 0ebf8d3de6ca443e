#include "tests/client/TimedOperations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/TestSystem.h"
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

/// Each thread has a picture of its own.
std::string pictureName()
{
    return "timed picture " + std::to_string(currentThreadId());
}

int sendPicture(CWapiClient& client)
{
    const auto file = std::filesystem::temp_directory_path() / pictureName();
    std::ofstream(file) << "picture";
    CStringT url;
    const int result = client.SetSpaceIcon({}, {}, wide(file.string()), url);
    std::filesystem::remove(file);
    return result;
}

int fetchPicture(CWapiClient& client)
{
    CStringT path;
    const int result = client.GetSpaceIcon({}, client.getDmsURL() + wide("/" + pictureName()), path);
    std::filesystem::remove(narrow(path));
    return result;
}

TimedOperations sessionOperations()
{
    return {
        {"cloneSession", Arms::atEntry,
         [](CWapiClient& c) {
             CStringT cred;
             return c.cloneSession({}, {}, cred);
         }},
        {"createSpace", Arms::atEntry, [](CWapiClient& c) { return createSpace(c, "name"_w); }},
        {"createSpaceRefused", Arms::atEntry, [](CWapiClient& c) { return createSpace(c, {}); }},
        {"GetWkspList", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<SpaceForList> spaces;
             std::vector<CZelSpaceInvite> invitations;
             return c.GetWkspList({}, {}, {}, spaces, invitations);
         }},
        {"OnTimer", Arms::afterAnswer,
         [](CWapiClient& c) {
             c.OnTimer(1);
             return 1;
         }},
        {"login", Arms::afterSuccess, [](CWapiClient& c) { return c.login({}, {}, {}, {}, 0, 1); }},
        {"loginNotSent", Arms::never, [](CWapiClient& c) { return c.login({}, {}, {}, {}, 0, 0); }},
        {"getSessionInfo", Arms::never, [](CWapiClient& c) { return c.getSessionInfo({}); }},
        {"getCredForExpired", Arms::never,
         [](CWapiClient& c) {
             CStringT cred;
             return c.getCredForExpired(cred, {}, {}, {}, {}, 0);
         }},
        {"logout", Arms::never, [](CWapiClient& c) { return c.logout({}); }},
        {"callWapi", Arms::never, [](CWapiClient& c) { return c.callWapi({}, {}); }},
        {"WapiProxyCall", Arms::never,
         [](CWapiClient& c) {
             CStringT reply;
             return c.WapiProxyCall({}, {}, CWapiClient::METHOD_POST, c.getOpURL(), {}, 1, reply);
         }},
        {"GetSpacesTest", Arms::never, [](CWapiClient& c) { return c.GetSpacesTest({}, {}); }},
    };
}

TimedOperations spaceOperations()
{
    return {
        {"cloneWksp", Arms::atEntry, [](CWapiClient& c) { return cloneWksp(c, "name"_w); }},
        {"cloneWkspRefused", Arms::atEntry, [](CWapiClient& c) { return cloneWksp(c, {}); }},
        {"editExtWksp", Arms::atEntry, [](CWapiClient& c) { return editExtWksp(c, "w"_w); }},
        {"editExtWkspRefused", Arms::atEntry, [](CWapiClient& c) { return editExtWksp(c, {}); }},
        {"deleteWksp", Arms::atEntry, [](CWapiClient& c) { return c.deleteWksp({}, "w"_w); }},
        {"deleteWkspRefused", Arms::atEntry, [](CWapiClient& c) { return c.deleteWksp({}, {}); }},
        {"leaveWorkspace", Arms::atEntry, [](CWapiClient& c) { return c.leaveWorkspace("c"_w, "w"_w); }},
        {"leaveWorkspaceRefused", Arms::atEntry, [](CWapiClient& c) { return c.leaveWorkspace({}, "w"_w); }},
        {"createSpaceUsingApp", Arms::atEntry,
         [](CWapiClient& c) {
             CStringT id;
             return c.createSpaceUsingApp({}, {}, {}, id, {}, 0, 0);
         }},
        {"saveWorkspaceAsApp", Arms::atEntry,
         [](CWapiClient& c) {
             CStringT id;
             return c.saveWorkspaceAsApp({}, {}, {}, {}, id, {});
         }},
    };
}

TimedOperations tabOperations()
{
    return {
        {"createTab", Arms::never,
         [](CWapiClient& c) {
             CStringT id;
             return c.createTab({}, "w"_w, "name"_w, 1, id);
         }},
        {"getTabs", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<CZelTab> tabs;
             return c.getTabs({}, {}, tabs);
         }},
        {"deleteTab", Arms::never, [](CWapiClient& c) { return c.deleteTab({}, "w"_w, "t"_w); }},
        {"deleteTabRefused", Arms::never, [](CWapiClient& c) { return c.deleteTab({}, "w"_w, "docTab"_w); }},
        {"editTab", Arms::never,
         [](CWapiClient& c) {
             CZelTab tab;
             tab.SetID("t"_w);
             return c.editTab({}, "w"_w, tab);
         }},
        {"editTabOrder", Arms::never,
         [](CWapiClient& c) {
             std::vector<CZelTab> tabs(1);
             return c.editTabOrder({}, {}, tabs);
         }},
        {"SetSpaceIcon", Arms::atEntry, sendPicture},
        {"SetSpaceIconRefused", Arms::atEntry,
         [](CWapiClient& c) {
             CStringT url;
             return c.SetSpaceIcon({}, {}, "no such picture"_w, url);
         }},
        {"GetSpaceIcon", Arms::never, fetchPicture},
        {"GetSpaceIconRefused", Arms::never,
         [](CWapiClient& c) {
             CStringT path;
             return c.GetSpaceIcon({}, "no address"_w, path);
         }},
    };
}

TimedOperations probeOperations()
{
    return {
        {"probeSpaceAccess", Arms::atEntry,
         [](CWapiClient& c) {
             SPACE_ACCESS access;
             return c.probeSpaceAccess({}, {}, access, 0);
         }},
        {"probeSpaceAccess2", Arms::never,
         [](CWapiClient& c) {
             SPACE_ACCESS access;
             return c.probeSpaceAccess2({}, access);
         }},
        {"probeDocAccess", Arms::atEntry,
         [](CWapiClient& c) {
             DOC_ACCESS access;
             return c.probeDocAccess({}, {}, access);
         }},
        {"probeChatRoomAccess", Arms::never,
         [](CWapiClient& c) {
             ROOM_ACCESS access;
             return c.probeChatRoomAccess({}, {}, access);
         }},
        {"getRole", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<RoleItem> roles;
             return c.getRole({}, {}, roles);
         }},
        {"ProbeAccessAllSpace", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<RoleItem> roles;
             return c.ProbeAccessAllSpace({}, {}, {}, roles);
         }},
    };
}

TimedOperations memberOperations()
{
    return {
        {"getSpaceBatch", Arms::atEntry,
         [](CWapiClient& c) {
             space_t space;
             std::vector<CZelSpaceInvite> invitations;
             SPACE_ACCESS access;
             CStringT out;
             return c.getSpaceBatch({}, {}, space, invitations, access, out);
         }},
        {"getMembers", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<CZelMember> members;
             return c.getMembers({}, {}, members);
         }},
        {"removeSpaceMember", Arms::atEntry, [](CWapiClient& c) { return c.removeSpaceMember({}, {}, {}); }},
        {"changeMemberRole", Arms::never,
         [](CWapiClient& c) { return c.changeMemberRole({}, {}, {}, WAPI_INVITEAS_ADMIN); }},
        {"inviteMembers", Arms::never,
         [](CWapiClient& c) {
             std::vector<SPACEINVT> none;
             return c.inviteMembers({}, none, {});
         }},
        {"delInvt", Arms::atEntry, [](CWapiClient& c) { return c.delInvt({}, {}, {}); }},
        {"responseInvitation", Arms::atEntry, [](CWapiClient& c) { return c.responseInvitation({}, {}, 1); }},
        {"GetFavoriteSpaceList", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<space_t> spaces;
             return c.GetFavoriteSpaceList({}, {}, spaces);
         }},
        {"createFavoriteSpace", Arms::atEntry, [](CWapiClient& c) { return c.createFavoriteSpace({}, {}, {}); }},
        {"deleteFavoriteSpace", Arms::atEntry, [](CWapiClient& c) { return c.deleteFavoriteSpace({}, {}, {}); }},
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
        return (client.*operation)({}, output);
    };
}

TimedOperations accountOperations()
{
    return {
        {"getUserConfigureInfo", Arms::atEntry, reading(&CWapiClient::getUserConfigureInfo)},
        {"getUserProfile", Arms::atEntry, reading(&CWapiClient::getUserProfile)},
        {"editExtUser", Arms::atEntry,
         [](CWapiClient& c) {
             return editExtUser(c, {{0, "host"_w}});
         }},
        {"editExtUserRefused", Arms::atEntry, [](CWapiClient& c) { return editExtUser(c, {}); }},
        {"createRDQAVAccount", Arms::atEntry, [](CWapiClient& c) { return c.createRDQAVAccount({}, {}); }},
        {"getOrgInfo", Arms::never,
         [](CWapiClient& c) {
             CStringT a, b, d, e;
             return c.getOrgInfo({}, a, b, d, e);
         }},
        {"getDomainList", Arms::atEntry, reading(&CWapiClient::getDomainList)},
        {"getPolicyData", Arms::atEntry, reading(&CWapiClient::getPolicyData)},
        {"getLibraries", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<library_t> libraries;
             return c.getLibraries({}, 0, 0, 0, libraries);
         }},
        {"addTemplateToLibrary", Arms::atEntry, [](CWapiClient& c) { return c.addTemplateToLibrary({}, {}, {}); }},
        {"getUserLibrariesWithApps", Arms::atEntry,
         [](CWapiClient& c) {
             std::vector<library2_t> libraries;
             return c.getUserLibrariesWithApps({}, 0, 0, libraries);
         }},
        {"getSpaceNotify", Arms::atEntry, reading(&CWapiClient::getSpaceNotify)},
        {"getSpaceActivity", Arms::atEntry, reading(&CWapiClient::getSpaceActivity)},
        {"sendNotificationEvent", Arms::atEntry, [](CWapiClient& c) { return sendEvent(c, 0); }},
        {"sendNotificationEventRefused", Arms::atEntry, [](CWapiClient& c) { return sendEvent(c, 6); }},
        {"writeMeetingRecord", Arms::atEntry,
         [](CWapiClient& c) { return c.writeMeetingRecord({}, {}, {}, {}, {}, {}); }},
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
