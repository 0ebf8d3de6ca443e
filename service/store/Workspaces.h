#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "service/store/Which.h"

namespace service::store {

class Database;

struct Workspace {
    long long number = 0;  // the older, the smaller
    std::string workspaceID;
    std::string name;
    long long type = 0;
    bool isTemplate = false;
    std::string ownerID;
    std::string ownerName;
    std::string orgID;
    std::string namespaceID;
    std::string namespaceName;
    std::string groupID;
    std::string groupName;
    std::string descriptionIcon;
    std::string iconName;  // empty where there is no icon
    long long created = 0;
    long long modified = 0;
};

struct ChatRoom {
    std::string roomID;
    std::string workspaceID;
    std::string name;
};

void insertWorkspace(Database& database, const Workspace& workspace);
std::optional<Workspace> findWorkspace(Database& database, const std::string& workspaceID);

// Calls it for each workspace that the user is a member of, in no order. It is the same object each time.
void visitWorkspacesOfMember(Database& database, const std::string& userID,
                             const std::function<void(const Workspace& workspace)>& visit);
void renameWorkspace(Database& database, const std::string& workspaceID, const std::string& name);
void touchWorkspace(Database& database, const std::string& workspaceID, long long modified);
void deleteWorkspace(Database& database, const std::string& workspaceID);

std::vector<std::string> descriptionOf(Database& database, const std::string& workspaceID);
ByWorkspace<std::string> descriptionsOf(Database& database, const Which& which);
void setDescription(Database& database, const std::string& workspaceID, const std::vector<std::string>& texts);

void insertChatRoom(Database& database, const ChatRoom& room);
ByWorkspace<ChatRoom> chatRoomsOf(Database& database, const Which& which);

}  // namespace service::store
