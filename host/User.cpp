// The signed-in user, the user's audio/video account, and the names of others.
#include <array>

#include "host/Call.h"
#include "host/Encoding.h"
#include "host/Topics.h"

namespace host {

namespace {

void show(Call& call)
{
    CUserConfigInfo info;
    call.check(call.client().getUserConfigureInfo(call.cred(), info));
    // The password and the token of the audio/video account are for programs, not for whoever looks at the screen.
    call.show(info, {"userID", "userName", "email", "firstName", "lastName", "namespaceID", "ISProviderID", "QueltID",
                     "QueltDesktopShareURL", "QueltAudioOrVisualURL", "hostName", "websiteURL", "ISProviders"});
}

void profile(Call& call)
{
    std::vector<USER_PROFILE> users;
    for (const CStringT& user : call.xmlList("user")) users.emplace_back().userID = user;
    call.check(call.client().getUserProfile(call.cred(), users));
    call.show(users, {"userID", "firstName", "middleName", "lastName"});
}

void edit(Call& call)
{
    // The place of each is the field's number.
    constexpr std::array kFields{"--host-name", "--website", "--build", "--client-version"};
    std::vector<CWapiClient::USER_Field_Value> fields;
    for (std::size_t type = 0; type < kFields.size(); ++type) {
        if (call.given(kFields[type])) fields.push_back({static_cast<int>(type), call.xml(kFields[type])});
    }
    const CStringT user = call.userID();
    call.check(call.client().editExtUser(call.cred(), user, fields),
               fields.empty() ? "nothing was sent: there is nothing to change" : "");
}

void createAccount(Call& call)
{
    const CStringT user = xmlOf(call.userID());
    call.check(call.client().createRDQAVAccount(call.cred(), user));
}

}  // namespace

Commands userCommands()
{
    const Argument user{"--user", "The user's ID, your own unless given"};
    return {
        {"user", "You, and the names of others", {}, nullptr},
        {"user show", "Show your configuration", {}, show, {"getUserConfigureInfo"}},
        {"user profile",
         "Show the names of users",
         {{"user", "The users' IDs", Kind::list}},
         profile,
         {"getUserProfile"},
         {},
         membersOf<USER_PROFILE>},
        {"user edit",
         "Change your extension fields",
         {{"--host-name", "The name of your host"},
          {"--website", "The address of your web site"},
          {"--build", "The build of your client"},
          {"--client-version", "The version of your client"},
          user},
         edit,
         {"editExtUser"}},
        {"av", "Your audio/video account", {}, nullptr},
        {"av create", "Make the account, which user show then shows", {user}, createAccount, {"createRDQAVAccount"}},
    };
}

}  // namespace host
