// The user and other users; The organisation; Libraries; Counters, events and meetings. Written by capi/generate.py.
#include "capi/Call.h"

using namespace capi;

int PVW_CALL pvw_get_user_configure_info(pvw_client* client, pvw_text cred, const pvw_user_config_info** info,
                                         pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(info);
        CUserConfigInfo theInfo;
        if (live.getUserConfigureInfo(textOf(cred), theInfo) == 0) return 0;
        return memory.give(into(info, memory.of(theInfo)));
    });
}

int PVW_CALL pvw_get_user_profile(pvw_client* client, pvw_text cred, const pvw_user_profile* users, size_t userCount,
                                  pvw_user_profile_list* usersBack, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(usersBack);
        auto theUsers = recordsOf<USER_PROFILE>(users, userCount);
        if (live.getUserProfile(textOf(cred), theUsers) == 0) return 0;
        return memory.give(into(usersBack, memory.of(theUsers)));
    });
}

int PVW_CALL pvw_edit_ext_user(pvw_client* client, pvw_text cred, pvw_text user, const pvw_user_field* fields,
                               size_t fieldCount)
{
    return asked(client, [&](CWapiClient& live) {
        auto theFields = recordsOf<CWapiClient::USER_Field_Value>(fields, fieldCount);
        return live.editExtUser(textOf(cred), textOf(user), theFields);
    });
}

int PVW_CALL pvw_create_rdqav_account(pvw_client* client, pvw_text cred, pvw_text user)
{
    return asked(client, [&](CWapiClient& live) { return live.createRDQAVAccount(textOf(cred), textOf(user)); });
}

int PVW_CALL pvw_get_org_info(pvw_client* client, pvw_text cred, pvw_text* changePasswordURL,
                              pvw_text* forgetPasswordURL, pvw_text* siteInfoURL, pvw_text* connectSupportURL,
                              pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(changePasswordURL, forgetPasswordURL, siteInfoURL, connectSupportURL);
        CStringT theChangePasswordURL;
        CStringT theForgetPasswordURL;
        CStringT theSiteInfoURL;
        CStringT theConnectSupportURL;
        if (live.getOrgInfo(textOf(cred), theChangePasswordURL, theForgetPasswordURL, theSiteInfoURL,
                            theConnectSupportURL) == 0)
            return 0;
        return memory.give(into(changePasswordURL, memory.of(theChangePasswordURL)),
                           into(forgetPasswordURL, memory.of(theForgetPasswordURL)),
                           into(siteInfoURL, memory.of(theSiteInfoURL)),
                           into(connectSupportURL, memory.of(theConnectSupportURL)));
    });
}

int PVW_CALL pvw_get_domain_list(pvw_client* client, pvw_text cred, pvw_text* domains, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(domains);
        CStringT theDomains;
        if (live.getDomainList(textOf(cred), theDomains) == 0) return 0;
        return memory.give(into(domains, memory.of(theDomains)));
    });
}

int PVW_CALL pvw_get_policy_data(pvw_client* client, pvw_text cred, const pvw_policy** policy, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(policy);
        CZelPolicy thePolicy;
        if (live.getPolicyData(textOf(cred), thePolicy) == 0) return 0;
        return memory.give(into(policy, memory.of(thePolicy)));
    });
}

int PVW_CALL pvw_get_libraries(pvw_client* client, pvw_text cred, int withTemplates, int withWidgets, int readOnly,
                               pvw_library_list* libraries, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(libraries);
        std::vector<library_t> theLibraries;
        if (live.getLibraries(textOf(cred), withTemplates, withWidgets, readOnly, theLibraries) == 0) return 0;
        return memory.give(into(libraries, memory.of(theLibraries)));
    });
}

int PVW_CALL pvw_add_template_to_library(pvw_client* client, pvw_text cred, pvw_text groupID, pvw_text templateID)
{
    return asked(client, [&](CWapiClient& live) {
        return live.addTemplateToLibrary(textOf(cred), textOf(groupID), textOf(templateID));
    });
}

int PVW_CALL pvw_get_user_libraries_with_apps(pvw_client* client, pvw_text cred, int readOnly, int withTopLevelApps,
                                              pvw_app_library_list* libraries, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(libraries);
        std::vector<library2_t> theLibraries;
        if (live.getUserLibrariesWithApps(textOf(cred), readOnly, withTopLevelApps, theLibraries) == 0) return 0;
        return memory.give(into(libraries, memory.of(theLibraries)));
    });
}

int PVW_CALL pvw_get_space_notify(pvw_client* client, pvw_text cred, const pvw_space_count_item* items,
                                  size_t itemCount, pvw_space_count_item_list* itemsBack, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(itemsBack);
        auto theItems = recordsOf<SPACE_COUNT_ITEM>(items, itemCount);
        if (live.getSpaceNotify(textOf(cred), theItems) == 0) return 0;
        return memory.give(into(itemsBack, memory.of(theItems)));
    });
}

int PVW_CALL pvw_get_space_activity(pvw_client* client, pvw_text cred, const pvw_space_count_item* items,
                                    size_t itemCount, pvw_space_count_item_list* itemsBack, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(itemsBack);
        auto theItems = recordsOf<SPACE_COUNT_ITEM>(items, itemCount);
        if (live.getSpaceActivity(textOf(cred), theItems) == 0) return 0;
        return memory.give(into(itemsBack, memory.of(theItems)));
    });
}

int PVW_CALL pvw_send_notification_event(pvw_client* client, pvw_text cred, int event, pvw_text workspaceID,
                                         pvw_text workspaceName, pvw_text message, pvw_text specificTag,
                                         pvw_text senderUserName)
{
    return asked(client, [&](CWapiClient& live) {
        return live.sendNotificationEvent(textOf(cred), static_cast<EVENT_NAME>(event), textOf(workspaceID),
                                          textOf(workspaceName), textOf(message), textOf(specificTag),
                                          textOf(senderUserName));
    });
}

int PVW_CALL pvw_write_meeting_record(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text siteName,
                                      pvw_text meetingID, pvw_text hostID, pvw_text sessionName)
{
    return asked(client, [&](CWapiClient& live) {
        return live.writeMeetingRecord(textOf(cred), textOf(workspaceID), textOf(siteName), textOf(meetingID),
                                       textOf(hostID), textOf(sessionName));
    });
}
