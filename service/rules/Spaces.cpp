#include "service/rules/Spaces.h"

#include <algorithm>
#include <set>

#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/base/Text.h"
#include "service/rules/FixedTabs.h"
#include "service/rules/Roles.h"
#include "service/store/Database.h"
#include "service/store/Members.h"
#include "service/store/Tabs.h"
#include "service/store/Things.h"

namespace service::rules {

namespace {

constexpr long long kMostOrder = 1'000'000;

std::string tabIDFor(long long type)
{
    if (type == kDiscussionTab) return std::string(kDiscussionTabID);
    if (type == kFilesTab) return std::string(kFilesTabID);
    return newID("tab");
}

// Every place is held by one tab. Those in `fixed` stay where they are; each of the others comes behind the one that it
// stood behind, to the first place that is free.
void settleTabs(Context& context, const std::string& workspaceID, const std::map<std::string, long long>& fixed)
{
    std::set<long long> taken;
    for (const auto& [tabID, place] : fixed) taken.insert(place);
    long long next = -kMostOrder;
    for (const store::Tab& tab : store::tabsOf(context.database, workspaceID)) {
        if (fixed.contains(tab.tabID)) continue;
        next = std::max(next, tab.order);
        while (taken.contains(next)) ++next;
        if (next != tab.order) store::moveTab(context.database, workspaceID, tab.tabID, next);
        ++next;
    }
}

}  // namespace

std::string makeSpace(Context& context, const NewSpace& space)
{
    requirePolicy(context, "HasSpaces");
    requirePolicy(context, "create-workspace");
    if (!space.chatRoomName.empty()) requirePolicy(context, "create-chatRoom");
    const store::Session& caller = context.session;

    store::Workspace workspace;
    workspace.workspaceID = newID("wksp");
    workspace.name = space.name;
    workspace.type = space.type;
    workspace.isTemplate = space.isTemplate;
    workspace.ownerID = caller.userID;
    workspace.orgID = caller.orgID;
    workspace.created = context.now;
    workspace.modified = context.now;
    store::insertWorkspace(context.database, workspace);
    store::setDescription(context.database, workspace.workspaceID, space.description);
    store::insertMember(context.database, workspace.workspaceID, caller.userID, context.now);
    store::addRole(context.database, workspace.workspaceID, caller.userID, kCreator);
    if (!space.chatRoomName.empty()) {
        store::insertChatRoom(context.database, {newID("room"), workspace.workspaceID, space.chatRoomName});
    }
    if (space.favourite) {
        store::insertWorkspaceThing(context.database, {newID("wtng"), caller.userID, caller.userID,
                                                       store::kFavouriteType, workspace.workspaceID});
    }
    return workspace.workspaceID;
}

std::string makeTab(Context& context, const std::string& workspaceID, const std::string& name, long long type,
                    long long order)
{
    std::string tabID = tabIDFor(type);
    const std::vector<store::Tab> tabs = store::tabsOf(context.database, workspaceID);
    if (tabs.size() >= kMaxTabs) {
        throw Refusal(exceptionid::kLimitExceeded, "a workspace has at most " + std::to_string(kMaxTabs) + " tabs");
    }
    for (const store::Tab& tab : tabs) {
        if (tab.tabID == tabID) {
            throw Refusal(exceptionid::kConflict, "the workspace has its " + tab.name + " tab already");
        }
    }
    store::insertTab(context.database, {tabID, workspaceID, name, type, order});
    settleTabs(context, workspaceID, {});
    return tabID;
}

void moveTabs(Context& context, const std::string& workspaceID, const std::map<std::string, long long>& places)
{
    std::set<long long> taken;
    for (const auto& [tabID, place] : places) {
        if (!taken.insert(place).second) {
            throw Refusal(exceptionid::kBadRequest, "two tabs are given the place " + std::to_string(place));
        }
        if (!store::moveTab(context.database, workspaceID, tabID, place)) {
            throw Refusal(exceptionid::kNoSuchObject, "the workspace has no tab " + inQuotes(tabID));
        }
    }
    settleTabs(context, workspaceID, places);
}

store::Tab requireTab(const Context& context, const std::string& tabID)
{
    const store::Session& caller = context.session;
    std::vector<store::Tab> tabs = store::tabsNamed(context.database, tabID);
    std::erase_if(tabs, [&](const store::Tab& tab) {
        return (!caller.workspaceID.empty() && tab.workspaceID != caller.workspaceID) ||
               !store::isMember(context.database, tab.workspaceID, caller.userID);
    });
    if (tabs.empty()) throw Refusal(exceptionid::kNoSuchObject, "there is no tab " + inQuotes(tabID) + " of yours");
    if (tabs.size() > 1) {
        throw Refusal(exceptionid::kConflict, "several workspaces have a tab " + inQuotes(tabID) +
                                                  ": use a session that was cloned for the workspace");
    }
    requireAdministrator(context, tabs.front().workspaceID);
    return std::move(tabs.front());
}

long long checkedOrder(std::string_view text)
{
    const std::optional<long long> order = wholeNumber(trimmed(text), -kMostOrder, kMostOrder);
    if (!order) throw Refusal(exceptionid::kBadRequest, "tabOrder must be a number, not " + inQuotes(text));
    return *order;
}

void takeOut(Context& context, const std::string& workspaceID, const std::string& userID)
{
    if (!store::isMember(context.database, workspaceID, userID)) {
        throw Refusal(exceptionid::kNoSuchObject, "the workspace has no member " + inQuotes(userID));
    }
    if (isAdministrator(context, workspaceID, userID) && administratorCount(context, workspaceID) == 1) {
        throw Refusal(exceptionid::kConflict, "the last administrator cannot leave the workspace");
    }
    store::deleteMember(context.database, workspaceID, userID);
    store::touchWorkspace(context.database, workspaceID, context.now);
}

void letIn(Context& context, const std::string& workspaceID, const std::string& userID, const std::string& roleID)
{
    if (!store::isMember(context.database, workspaceID, userID)) {
        store::insertMember(context.database, workspaceID, userID, context.now);
    }
    store::addRole(context.database, workspaceID, userID, roleID);
    store::touchWorkspace(context.database, workspaceID, context.now);
}

}  // namespace service::rules
