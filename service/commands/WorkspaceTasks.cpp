#include "service/base/Refusal.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/FixedTabs.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/store/Database.h"
#include "service/store/Tabs.h"

namespace service::commands {

namespace {

constexpr long long kMostType = 15;

rules::NewSpace newSpaceOf(const xml::Node& xml)
{
    rules::NewSpace space;
    space.name = requiredName(xml, "workspaceName");
    space.type = numberField(xml, "type", 0, kMostType, 0);
    space.isTemplate = truthField(xml, "isTemplate");
    space.favourite = truthField(xml, "isFavourite");
    space.chatRoomName = xml.textAt("chatRoomName");
    space.description = descriptionTexts(xml);
    return space;
}

std::vector<std::string> addTabsTo(Context& context, const std::string& workspaceID, const xml::Node& xml)
{
    const xml::Node* const tabs = xml.child("tabs");
    std::vector<std::string> tabIDs;
    if (tabs == nullptr) return tabIDs;
    for (const xml::Node& tab : tabs->children) {
        expectElement(tab, "tab");
        const xml::Node* const order = tab.child("tabOrder");
        tabIDs.push_back(rules::makeTab(context, workspaceID, requiredName(tab, "tabName"),
                                        numberField(tab, "tabType", rules::kPlainTab, rules::kFilesTab, 0),
                                        order == nullptr ? 0 : rules::checkedOrder(order->text)));
    }
    return tabIDs;
}

void addToExisting(Context& context, const xml::Node& xml, Reply& reply)
{
    const std::string workspaceID = requiredID(xml, "workspaceID");
    rules::requireAdministrator(context, workspaceID);
    const std::vector<std::string> tabIDs = addTabsTo(context, workspaceID, xml);
    if (tabIDs.empty()) throw Refusal(exceptionid::kBadRequest, "the request names no tab to add");
    for (const std::string& tabID : tabIDs) reply.payload.add("tab").add("tabID", tabID);
    store::touchWorkspace(context.database, workspaceID, context.now);
}

}  // namespace

// One task, two uses: with a workspaceID it adds tabs there, without one it makes a workspace that has them.
void addTabs(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "workspace");
    if (xml.child("workspaceID") != nullptr) return addToExisting(context, xml, reply);

    const std::string workspaceID = rules::makeSpace(context, newSpaceOf(xml));
    addTabsTo(context, workspaceID, xml);
    reply.payload.add("workspace").add("workspaceID", workspaceID);
}

// The copy takes over the tabs, and the description where the request brings none of its own.
void cloneWorkspace(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "workspace");
    const std::string sourceID = requiredID(xml, "useWkspID");
    rules::requireReadable(context, sourceID);
    rules::NewSpace space = newSpaceOf(xml);
    if (space.description.empty()) space.description = store::descriptionOf(context.database, sourceID);
    const std::string workspaceID = rules::makeSpace(context, space);
    for (const store::Tab& tab : store::tabsOf(context.database, sourceID)) {
        rules::makeTab(context, workspaceID, tab.name, tab.type, tab.order);
    }
    reply.payload.add("workspace").add("workspaceID", workspaceID);
}

void deleteWorkspace(Context& context, const xml::Node& xml, Reply& /*reply*/)
{
    expectElement(xml, "workspace");
    const std::string workspaceID = requiredID(xml, "workspaceID");
    rules::requireAdministrator(context, workspaceID);
    store::deleteWorkspace(context.database, workspaceID);
}

}  // namespace service::commands
