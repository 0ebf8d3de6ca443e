#include "service/base/Text.h"
#include "service/objects/ObjectTypes.h"
#include "service/objects/RoleList.h"
#include "service/store/Database.h"
#include "service/store/Members.h"
#include "service/store/Organisations.h"
#include "service/store/Users.h"

namespace service::objects {

namespace {

void addWorkspaces(const Context& context, const std::string& userID, xml::Node& user)
{
    xml::Node& workspaces = user.add("workspaces");
    for (const store::Membership& item : store::membershipsOf(context.database, userID)) {
        xml::Node& workspace = workspaces.add("workspace");
        workspace.add("workspaceID", item.workspaceID);
        workspace.add("workspaceName", item.workspaceName);
        addRoles(item.roleIDs, workspace);
    }
}

void addNamespaces(const Context& context, const store::User& item, xml::Node& user)
{
    xml::Node& space = user.add("namespaces").add("namespace");
    if (const auto org = store::findOrganisation(context.database, item.orgID)) {
        space.add("namespaceID", org->namespaceID);
        space.add("namespaceName", org->namespaceName);
    }
}

void addProviders(const Context& context, const store::User& item, xml::Node& user)
{
    xml::Node& providers = user.add("ISProviders");
    for (const store::Provider& from : store::providersOf(context.database, item.userID)) {
        xml::Node& provider = providers.add("ISProvider");
        provider.add("ISProviderID", from.providerID);
        provider.add("ISProviderName", from.providerName);
        provider.add("userName", from.userName);
        provider.add("namespaceID", from.namespaceID);
    }
}

void addNames(const store::User& item, xml::Node& extension)
{
    extension.add("firstName", item.firstName);
    extension.add("middleName", item.middleName);
    extension.add("lastName", item.lastName);
}

// What nobody but the user may read: the conferencing account with its password, and where the user works.
void addOwnExtension(const Context& context, const store::User& item, xml::Node& extension)
{
    extension.add("hostName", item.hostName);
    extension.add("websiteURL", item.websiteURL);
    xml::Node& client = extension.add("client");
    client.add("build", item.clientBuild);
    client.add("version", item.clientVersion);
    const std::optional<store::AvAccount> account = store::avAccountOf(context.database, item.userID);
    if (!account) return;
    xml::Node& conferencing = extension.add("rdqAV");
    conferencing.add("QueltID", account->accountID);
    conferencing.add("Password", account->password);
    conferencing.add("QueltAVToken", account->token);
    conferencing.add("QueltDesktopShareURL", account->desktopShareURL);
    conferencing.add("QueltAudioOrVisualURL", account->audioVisualURL);
}

xml::Node userNode(const Context& context, const store::User& item, const script::Selection& wanted)
{
    const bool own = item.userID == context.session.userID;
    xml::Node user("user");
    user.add("userID", item.userID);
    user.add("userName", item.userName);
    user.add("email", item.email);
    if (wanted.touches("ext")) {
        xml::Node& extension = user.add("ext").add("KZN");
        addNames(item, extension);
        if (own) addOwnExtension(context, item, extension);
    }
    if (wanted.touches("namespaces")) addNamespaces(context, item, user);
    if (own && wanted.touches("ISProviders")) addProviders(context, item, user);
    if (own && wanted.touches("workspaces")) addWorkspaces(context, item.userID, user);
    return user;
}

std::optional<xml::Node> findUser(const Context& context, const std::string& id, const script::Selection& wanted)
{
    const std::optional<store::User> item = store::findUser(context.database, currentOr(id, context.session.userID));
    if (!item || item->orgID != context.session.orgID) return std::nullopt;
    return userNode(context, *item, wanted);
}

// The caller's whole organisation.
std::vector<xml::Node> listUsers(const Context& context, const script::Selection& wanted)
{
    std::vector<xml::Node> nodes;
    for (const std::string& userID : store::userIDsOf(context.database, context.session.orgID)) {
        if (std::optional<xml::Node> node = findUser(context, userID, wanted)) nodes.push_back(std::move(*node));
    }
    return nodes;
}

}  // namespace

ObjectType userType()
{
    return {"user", {"user"}, listUsers, findUser};
}

}  // namespace service::objects
