#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/base/Text.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/store/Users.h"

namespace service::commands {

namespace {

constexpr std::size_t kMaxProfiles = 10'000;
constexpr const char* kConferencing = "http://av.nordwind.example/";

}  // namespace

// Users who are not there, or in another organisation, are left out.
void getUserProfile(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "users");
    if (xml.children.size() > kMaxProfiles) throw Refusal(exceptionid::kLimitExceeded, "there are too many users");
    for (const xml::Node& asked : xml.children) {
        expectElement(asked, "user");
        const std::string userID(trimmed(asked.textAt("userID")));
        const std::optional<store::User> user = store::findUser(context.database, userID);
        if (!user || user->orgID != context.session.orgID) continue;
        xml::Node& profile = reply.payload.add("user");
        profile.add("userID", user->userID);
        xml::Node& extension = profile.add("ext").add("KZN");
        extension.add("firstName", user->firstName);
        extension.add("middleName", user->middleName);
        extension.add("lastName", user->lastName);
    }
}

void createAvAccounts(Context& context, const xml::Node& xml, Reply& /*reply*/)
{
    expectElement(xml, "user");
    const std::string userID = requiredID(xml, "userID");
    if (userID != context.session.userID) {
        throw Refusal(exceptionid::kAccessDenied, "you may make no other user's conferencing account");
    }
    if (store::avAccountOf(context.database, userID)) {
        throw Refusal(exceptionid::kConflict, "the user has a conferencing account already");
    }
    const std::string accountID = newID("av");
    store::insertAvAccount(
        context.database, userID,
        {accountID, newCredential().substr(0, 16), newCredential(), std::string(kConferencing) + "share/" + accountID,
         std::string(kConferencing) + "call/" + accountID});
}

}  // namespace service::commands
