#include "service/base/Clock.h"
#include "service/base/Text.h"
#include "service/objects/ObjectTypes.h"
#include "service/objects/RoleList.h"
#include "service/rules/Icons.h"
#include "service/store/Members.h"
#include "service/store/Tabs.h"
#include "service/store/Workspaces.h"

namespace service::objects {

namespace {

void addMembers(const Context& context, const std::string& workspaceID, const script::Selection& wanted,
                xml::Node& workspace)
{
    const bool withRoles = wanted.touches("members/member/roles");
    xml::Node& members = workspace.add("members");
    for (const store::Member& item : store::membersOf(context.database, workspaceID)) {
        xml::Node& member = members.add("member");
        member.add("userID", item.userID);
        member.add("userName", item.userName);
        member.add("email", item.email);
        if (withRoles) addRoles(store::rolesOf(context.database, workspaceID, item.userID), member);
    }
}

void addTabs(const std::vector<store::Tab>& items, xml::Node& workspace)
{
    xml::Node& tabs = workspace.add("tabs");
    for (const store::Tab& item : items) {
        xml::Node& tab = tabs.add("tab");
        tab.add("tabID", item.tabID);
        tab.add("tabName", item.name);
        tab.add("tabType", std::to_string(item.type));
        tab.add("tabOrder", std::to_string(item.order));
    }
}

void addChatRooms(const Context& context, const std::string& workspaceID, xml::Node& workspace)
{
    xml::Node& rooms = workspace.add("chatRooms");
    for (const store::ChatRoom& item : store::chatRoomsOf(context.database, workspaceID)) {
        xml::Node& room = rooms.add("chatRoom");
        room.add("chatRoomID", item.roomID);
        room.add("chatRoomName", item.name);
    }
}

// The extension names the first discussion tab and the first files tab.
void addFixedTabs(const std::vector<store::Tab>& tabs, xml::Node& extension)
{
    for (const auto& [type, element] : {std::pair(1, "discussionTab"), std::pair(2, "filesTab")}) {
        for (const store::Tab& tab : tabs) {
            if (tab.type != type) continue;
            extension.add(element, tab.tabID);
            break;
        }
    }
}

void addExtension(const Context& context, const store::Workspace& item, const std::vector<store::Tab>& tabs,
                  xml::Node& workspace)
{
    xml::Node& extension = workspace.add("ext").add("KZN");
    xml::Node& description = extension.add("description");
    for (const std::string& text : store::descriptionOf(context.database, item.workspaceID)) {
        description.add("text", text);
    }
    if (!item.descriptionIcon.empty()) description.add("icon", item.descriptionIcon);
    addFixedTabs(tabs, extension);
    if (!item.iconName.empty()) {
        extension.add("spaceIcon").add("url", rules::iconURL(context.settings, item.iconName));
    }
}

xml::Node workspaceNode(const Context& context, const store::Workspace& item, const script::Selection& wanted)
{
    xml::Node workspace("workspace");
    workspace.add("workspaceID", item.workspaceID);
    workspace.add("workspaceName", item.name);
    workspace.add("userID", item.ownerID);
    workspace.add("userName", item.ownerName);
    workspace.add("type", std::to_string(item.type));
    workspace.add("isTemplate", truthText(item.isTemplate));
    workspace.add("namespaceID", item.namespaceID);
    workspace.add("namespaceName", item.namespaceName);
    workspace.add("createTime", timeText(item.created));
    workspace.add("lastModifiedTime", timeText(item.modified));
    workspace.add("groupID", item.groupID);
    workspace.add("groupName", item.groupName);
    const bool withTabs =
        wanted.touches("tabs") || wanted.touches("ext/KZN/discussionTab") || wanted.touches("ext/KZN/filesTab");
    const std::vector<store::Tab> tabs =
        withTabs ? store::tabsOf(context.database, item.workspaceID) : std::vector<store::Tab>();
    if (wanted.touches("ext")) addExtension(context, item, tabs, workspace);
    if (wanted.touches("members")) addMembers(context, item.workspaceID, wanted, workspace);
    if (wanted.touches("tabs")) addTabs(tabs, workspace);
    if (wanted.touches("chatRooms")) addChatRooms(context, item.workspaceID, workspace);
    return workspace;
}

std::vector<xml::Node> listWorkspaces(const Context& context, const script::Selection& wanted)
{
    std::vector<xml::Node> nodes;
    for (const store::Workspace& item : store::workspacesOfMember(context.database, context.session.userID)) {
        nodes.push_back(workspaceNode(context, item, wanted));
    }
    return nodes;
}

std::optional<xml::Node> findWorkspace(const Context& context, const std::string& id, const script::Selection& wanted)
{
    const std::string workspaceID = currentOr(id, context.session.workspaceID);
    if (!store::isMember(context.database, workspaceID, context.session.userID)) return std::nullopt;
    const std::optional<store::Workspace> item = store::findWorkspace(context.database, workspaceID);
    if (!item) return std::nullopt;
    return workspaceNode(context, *item, wanted);
}

}  // namespace

ObjectType workspaceType()
{
    return {"workspace", {"workspace", "wksp"}, listWorkspaces, findWorkspace};
}

}  // namespace service::objects
