#include <algorithm>
#include <array>
#include <utility>

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

constexpr std::array<std::string_view, 12> kFields{"workspaceID", "workspaceName",    "userID",      "userName",
                                                   "type",        "isTemplate",       "namespaceID", "namespaceName",
                                                   "createTime",  "lastModifiedTime", "groupID",     "groupName"};

// What of a workspace is asked for, found out once for a whole list.
struct Parts {
    explicit Parts(const script::Selection& wanted)
        : extension(wanted.touches("ext")),
          description(wanted.touches("ext/KZN/description")),
          fixedTabs(wanted.touches("ext/KZN/discussionTab") || wanted.touches("ext/KZN/filesTab")),
          tabs(wanted.touches("tabs")),
          members(wanted.touches("members")),
          chatRooms(wanted.touches("chatRooms"))
    {
        for (std::size_t i = 0; i < kFields.size(); ++i) fields.at(i) = wanted.touches(kFields.at(i));
    }

    std::array<bool, kFields.size()> fields{};
    bool extension;
    bool description;
    bool fixedTabs;
    bool tabs;
    bool members;
    bool chatRooms;
};

// What belongs to the workspaces that are shown: of each type, one question for all of them.
struct Belongings {
    store::ByWorkspace<std::string> descriptions;
    store::ByWorkspace<store::Tab> tabs;
    store::ByWorkspace<store::Member> members;
    store::ByWorkspace<store::ChatRoom> chatRooms;
};

Belongings belongingsOf(const Context& context, const Parts& parts, const store::Which& which)
{
    Belongings all;
    if (parts.description) all.descriptions = store::descriptionsOf(context.database, which);
    if (parts.tabs || parts.fixedTabs) all.tabs = store::tabsOf(context.database, which);
    if (parts.members) all.members = store::membersOf(context.database, which);
    if (parts.chatRooms) all.chatRooms = store::chatRoomsOf(context.database, which);
    return all;
}

template <class Item>
const std::vector<Item>& of(const store::ByWorkspace<Item>& all, const std::string& workspaceID)
{
    static const std::vector<Item> kNone;
    const auto found = all.find(workspaceID);
    return found == all.end() ? kNone : found->second;
}

void addMembers(const std::vector<store::Member>& items, xml::Node& workspace)
{
    xml::Node& members = workspace.add("members");
    for (const store::Member& item : items) {
        xml::Node& member = members.add("member");
        member.add("userID", item.userID);
        member.add("userName", item.userName);
        member.add("email", item.email);
        addRoles(item.roleIDs, member);
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

void addChatRooms(const std::vector<store::ChatRoom>& items, xml::Node& workspace)
{
    xml::Node& rooms = workspace.add("chatRooms");
    for (const store::ChatRoom& item : items) {
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

void addExtension(const Context& context, const store::Workspace& item, const Belongings& all, xml::Node& workspace)
{
    xml::Node& extension = workspace.add("ext").add("KZN");
    xml::Node& description = extension.add("description");
    for (const std::string& text : of(all.descriptions, item.workspaceID)) description.add("text", text);
    if (!item.descriptionIcon.empty()) description.add("icon", item.descriptionIcon);
    addFixedTabs(of(all.tabs, item.workspaceID), extension);
    if (!item.iconName.empty()) {
        extension.add("spaceIcon").add("url", rules::iconURL(context.settings, item.iconName));
    }
}

void addFields(const store::Workspace& item, const Parts& parts, xml::Node& workspace)
{
    std::size_t at = 0;
    const auto add = [&](const auto& text) {
        if (parts.fields.at(at)) workspace.add(kFields.at(at), text());
        ++at;
    };
    add([&] { return std::string_view(item.workspaceID); });
    add([&] { return std::string_view(item.name); });
    add([&] { return std::string_view(item.ownerID); });
    add([&] { return std::string_view(item.ownerName); });
    add([&] { return std::to_string(item.type); });
    add([&] { return truthText(item.isTemplate); });
    add([&] { return std::string_view(item.namespaceID); });
    add([&] { return std::string_view(item.namespaceName); });
    add([&] { return timeText(item.created); });
    add([&] { return timeText(item.modified); });
    add([&] { return std::string_view(item.groupID); });
    add([&] { return std::string_view(item.groupName); });
}

xml::Node workspaceNode(const Context& context, const store::Workspace& item, const Parts& parts, const Belongings& all)
{
    xml::Node workspace("workspace");
    workspace.children.reserve(8);
    addFields(item, parts, workspace);
    if (parts.extension) addExtension(context, item, all, workspace);
    if (parts.members) addMembers(of(all.members, item.workspaceID), workspace);
    if (parts.tabs) addTabs(of(all.tabs, item.workspaceID), workspace);
    if (parts.chatRooms) addChatRooms(of(all.chatRooms, item.workspaceID), workspace);
    return workspace;
}

std::vector<xml::Node> listWorkspaces(const Context& context, const script::Selection& wanted)
{
    const Parts parts(wanted);
    const std::string& userID = context.session.userID;
    const Belongings all = belongingsOf(context, parts, store::Which::ofMember(userID));
    std::vector<std::pair<long long, xml::Node>> numbered;
    store::visitWorkspacesOfMember(context.database, userID, [&](const store::Workspace& item) {
        numbered.emplace_back(item.number, workspaceNode(context, item, parts, all));
    });
    std::ranges::sort(numbered, {}, &std::pair<long long, xml::Node>::first);
    std::vector<xml::Node> nodes;
    nodes.reserve(numbered.size());
    for (auto& [number, node] : numbered) nodes.push_back(std::move(node));
    return nodes;
}

std::optional<xml::Node> findWorkspace(const Context& context, const std::string& id, const script::Selection& wanted)
{
    const std::string workspaceID = currentOr(id, context.session.workspaceID);
    if (!store::isMember(context.database, workspaceID, context.session.userID)) return std::nullopt;
    const std::optional<store::Workspace> item = store::findWorkspace(context.database, workspaceID);
    if (!item) return std::nullopt;
    const Parts parts(wanted);
    return workspaceNode(context, *item, parts, belongingsOf(context, parts, store::Which::one(workspaceID)));
}

// Only members see a workspace.
bool isGiven(const Context& context, std::string_view path, std::string_view value)
{
    return path == "members/member/userID" && value == context.session.userID;
}

}  // namespace

ObjectType workspaceType()
{
    return {"workspace", {"workspace", "wksp"}, listWorkspaces, findWorkspace, nullptr, isGiven};
}

}  // namespace service::objects
