#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "service/Context.h"
#include "service/store/Tabs.h"
#include "service/store/Workspaces.h"

namespace service::rules {

// What a workspace is made of when it begins.
struct NewSpace {
    std::string name;
    long long type = 0;
    bool isTemplate = false;
    bool favourite = false;
    std::string chatRoomName;  // empty: no room
    std::vector<std::string> description;
};

// Makes the workspace with the caller as its creator and first member; returns its ID. Refused where the caller's
// organisation does not let its people have workspaces, make them, or make a room where one is wanted.
std::string makeSpace(Context& context, const NewSpace& space);

// Adds a tab and returns its ID. There is at most one discussion tab and one files tab in a workspace. Where its place
// is held already it comes behind.
std::string makeTab(Context& context, const std::string& workspaceID, const std::string& name, long long type,
                    long long order);

// Gives tabs, named by their IDs, these places; the others make room. Refused where two are given one place.
void moveTabs(Context& context, const std::string& workspaceID, const std::map<std::string, long long>& places);

// A tab of a workspace that the caller administers. A fixed tab's name means that of the session's workspace; where
// the session has none, and several workspaces could be meant, it is refused.
store::Tab requireTab(const Context& context, const std::string& tabID);

// The number in the text of a tabOrder element; refused where there is none.
long long checkedOrder(std::string_view text);

// How many tabs a workspace has at most.
inline constexpr std::size_t kMaxTabs = 200;

// Takes a member out with all roles. The last administrator stays: nobody could let others in or end the workspace.
void takeOut(Context& context, const std::string& workspaceID, const std::string& userID);

// Lets a user in with this role, or gives a member that role as well.
void letIn(Context& context, const std::string& workspaceID, const std::string& userID, const std::string& roleID);

}  // namespace service::rules
