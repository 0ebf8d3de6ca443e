#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/objects/ObjectTypes.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/store/Database.h"
#include "service/store/Tabs.h"
#include "service/store/Users.h"

namespace service::commands {

namespace {

[[noreturn]] void changesNothing()
{
    throw Refusal(exceptionid::kBadRequest, "the request changes nothing");
}

// What a change does not know it would leave as it is, and must not seem to have changed.
void expectChange(const xml::Node& xml, std::string_view name, std::initializer_list<std::string_view> paths)
{
    expectElement(xml, name);
    expectPaths(xml, paths);
    if (xml.children.empty()) changesNothing();
}

void orderTabs(Context& context, const std::string& workspaceID, const xml::Node& tabs)
{
    if (tabs.children.empty()) changesNothing();
    std::map<std::string, long long> places;
    for (const xml::Node& tab : tabs.children) {
        expectElement(tab, "tab");
        places[requiredID(tab, "tabID")] = rules::checkedOrder(tab.textAt("tabOrder"));
    }
    rules::moveTabs(context, workspaceID, places);
}

// An edit of the name alone carries an empty description block: without a text it says nothing about the description.
// One empty text takes the description away.
void setDescription(Context& context, const std::string& workspaceID, const xml::Node& xml)
{
    std::vector<std::string> texts = descriptionTexts(xml);
    if (texts.empty()) return;
    std::erase(texts, std::string());
    store::setDescription(context.database, workspaceID, texts);
}

void setWorkspace(Context& context, const std::string& id, const xml::Node& xml)
{
    expectChange(xml, "workspace",
                 {"workspaceName", "ext/KZN/description/text", "tabs/tab/tabID", "tabs/tab/tabOrder"});
    rules::requireAdministrator(context, id);
    if (xml.child("workspaceName") != nullptr) {
        store::renameWorkspace(context.database, id, requiredName(xml, "workspaceName"));
    }
    setDescription(context, id, xml);
    if (const xml::Node* const tabs = xml.child("tabs")) orderTabs(context, id, *tabs);
    store::touchWorkspace(context.database, id, context.now);
}

void setTab(Context& context, const std::string& id, const xml::Node& xml)
{
    expectChange(xml, "tab", {"tabName", "tabOrder"});
    const store::Tab tab = rules::requireTab(context, id);
    if (xml.child("tabName") != nullptr) store::renameTab(context.database, tab, requiredName(xml, "tabName"));
    if (const xml::Node* const order = xml.child("tabOrder")) {
        rules::moveTabs(context, tab.workspaceID, {{tab.tabID, rules::checkedOrder(order->text)}});
    }
    store::touchWorkspace(context.database, tab.workspaceID, context.now);
}

void takeText(const xml::Node& extension, std::string_view path, std::string& field)
{
    if (const xml::Node* const element = extension.at(path)) field = element->text;
}

// Users change themselves and nobody else.
void setUser(Context& context, const std::string& id, const xml::Node& xml)
{
    expectChange(xml, "user",
                 {"ext/KZN/hostName", "ext/KZN/websiteURL", "ext/KZN/client/build", "ext/KZN/client/version"});
    const std::string userID = objects::currentOr(id, context.session.userID);
    if (userID != context.session.userID) {
        throw Refusal(exceptionid::kAccessDenied, "you may change no other user's record");
    }
    std::optional<store::User> user = store::findUser(context.database, userID);
    const xml::Node* const extension = xml.at("ext/KZN");
    if (!user || extension == nullptr) changesNothing();
    takeText(*extension, "hostName", user->hostName);
    takeText(*extension, "websiteURL", user->websiteURL);
    takeText(*extension, "client/build", user->clientBuild);
    takeText(*extension, "client/version", user->clientVersion);
    store::updateUserExtension(context.database, *user);
}

}  // namespace

void set(Context& context, const http::Form& form, Reply& /*reply*/)
{
    form.expectFields({"cmd", "cred", "type", "id", "xml"});
    const std::string type = form.required("type");
    const std::string id = form.required("id");
    const xml::Node xml = form.xml("xml");
    if (type == "workspace" || type == "wksp") return setWorkspace(context, id, xml);
    if (type == "tab") return setTab(context, id, xml);
    if (type == "user") return setUser(context, id, xml);
    throw Refusal(exceptionid::kUnknownType, "objects of type " + inQuotes(type) + " cannot be set");
}

}  // namespace service::commands
