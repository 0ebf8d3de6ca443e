#include <sstream>

#include "tests/client/WireOperations.h"

namespace {

/// A list of user IDs; the names hold their markers, to be noticed if they are sent or stay.
std::vector<USER_PROFILE> usersAskedFor(WireCall& call)
{
    std::vector<USER_PROFILE> users;
    for (const CStringT& id : call.texts("users")) {
        USER_PROFILE& user = users.emplace_back();
        mark(user);
        user.userID = id;
    }
    return users;
}

std::vector<CWapiClient::USER_Field_Value> userFields(WireCall& call)
{
    std::vector<CWapiClient::USER_Field_Value> fields;
    for (const auto& [type, value] : call.fieldValues("fields")) fields.push_back({type, value});
    return fields;
}

/// A record whose flags are all the same number.
CZelPolicy policyBefore(WireCall& call)
{
    CZelPolicy policy;
    const int before = call.number("flags before");
    pvrecords::eachMember<CZelPolicy>([&](const auto& flag) { flag.set(policy, before); });
    return policy;
}

/// A list of "count active-members unread-messages: workspace ID".
std::vector<SPACE_COUNT_ITEM> countItems(WireCall& call)
{
    std::vector<SPACE_COUNT_ITEM> items;
    for (const CStringT& text : call.texts("items")) {
        const std::string line = narrow(text);
        const auto colon = line.find(": ");
        if (colon == std::string::npos) throw WireFileError("no numbers in " + line);
        std::istringstream numbers(line.substr(0, colon));
        SPACE_COUNT_ITEM& item = items.emplace_back();
        numbers >> item.count >> item.activeMembersCount >> item.unreadMessageCount;
        if (!numbers) throw WireFileError("not three numbers in " + line);
        item.workspaceID = wide(line.substr(colon + 2));
    }
    return items;
}

}  // namespace

WireOperations userOperations()
{
    return {
        {"getUserConfigureInfo",
         [](CWapiClient& client, WireCall& call) {
             return client.getUserConfigureInfo(call.text("cred"), call.output<CUserConfigInfo>("info"));
         }},
        {"getUserProfile",
         [](CWapiClient& client, WireCall& call) {
             return client.getUserProfile(call.text("cred"), call.output("users", usersAskedFor(call)));
         }},
        {"editExtUser",
         [](CWapiClient& client, WireCall& call) {
             auto fields = userFields(call);
             return client.editExtUser(call.text("cred"), call.text("userID"), fields);
         }},
        {"createRDQAVAccount",
         [](CWapiClient& client, WireCall& call) {
             return client.createRDQAVAccount(call.text("cred"), call.text("userID"));
         }},
    };
}

WireOperations organisationOperations()
{
    return {
        {"getOrgInfo",
         [](CWapiClient& client, WireCall& call) {
             auto& changePasswordURL = call.output<CStringT>("changePasswordURL");
             auto& forgetPasswordURL = call.output<CStringT>("forgetPasswordURL");
             auto& siteInfoURL = call.output<CStringT>("siteInfoURL");
             auto& connectSupportURL = call.output<CStringT>("connectSupportURL");
             return client.getOrgInfo(call.text("cred"), changePasswordURL, forgetPasswordURL, siteInfoURL,
                                      connectSupportURL);
         }},
        {"getDomainList",
         [](CWapiClient& client, WireCall& call) {
             return client.getDomainList(call.text("cred"), call.output<CStringT>("domains"));
         }},
        {"getPolicyData",
         [](CWapiClient& client, WireCall& call) {
             return client.getPolicyData(call.text("cred"), call.output("policy", policyBefore(call)));
         }},
    };
}

WireOperations libraryOperations()
{
    return {
        {"getLibraries",
         [](CWapiClient& client, WireCall& call) {
             return client.getLibraries(call.text("cred"), call.number("withTemplates"), call.number("withWidgets"),
                                        call.number("readOnly"), call.output<std::vector<library_t>>("libraries"));
         }},
        {"addTemplateToLibrary",
         [](CWapiClient& client, WireCall& call) {
             return client.addTemplateToLibrary(call.text("cred"), call.text("groupID"), call.text("templateID"));
         }},
        {"getUserLibrariesWithApps",
         [](CWapiClient& client, WireCall& call) {
             return client.getUserLibrariesWithApps(call.text("cred"), call.number("readOnly"),
                                                    call.number("withTopLevelApps"),
                                                    call.output<std::vector<library2_t>>("libraries"));
         }},
    };
}

WireOperations eventOperations()
{
    return {
        {"getSpaceNotify",
         [](CWapiClient& client, WireCall& call) {
             return client.getSpaceNotify(call.text("cred"), call.output("items", countItems(call)));
         }},
        {"getSpaceActivity",
         [](CWapiClient& client, WireCall& call) {
             return client.getSpaceActivity(call.text("cred"), call.output("items", countItems(call)));
         }},
        {"sendNotificationEvent",
         [](CWapiClient& client, WireCall& call) {
             return client.sendNotificationEvent(call.text("cred"), static_cast<EVENT_NAME>(call.number("event")),
                                                 call.text("workspaceID"), call.text("workspaceName"),
                                                 call.text("message"), call.text("specificTag"),
                                                 call.text("senderUserName"));
         }},
        {"writeMeetingRecord",
         [](CWapiClient& client, WireCall& call) {
             return client.writeMeetingRecord(call.text("cred"), call.text("workspaceID"), call.text("siteName"),
                                              call.text("meetingID"), call.text("hostID"), call.text("sessionName"));
         }},
    };
}
