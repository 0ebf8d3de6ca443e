#pragma once

#include <string>
#include <vector>

#include "service/store/Which.h"

namespace service::store {

class Database;

struct Member {
    std::string userID;
    std::string userName;
    std::string email;
    std::vector<std::string> roleIDs;
};

struct Membership {
    std::string workspaceID;
    std::string workspaceName;
    std::vector<std::string> roleIDs;
    long long number = 0;  // of the workspace: the older, the smaller
};

// The events that are there already are none of the new member's.
void insertMember(Database& database, const std::string& workspaceID, const std::string& userID, long long joined);

// Takes what the member reported along. Returns false where there was no such member.
bool deleteMember(Database& database, const std::string& workspaceID, const std::string& userID);
bool isMember(Database& database, const std::string& workspaceID, const std::string& userID);
std::vector<Member> membersOf(Database& database, const std::string& workspaceID);
ByWorkspace<Member> membersOf(Database& database, const Which& which);

void addRole(Database& database, const std::string& workspaceID, const std::string& userID, const std::string& roleID);
void clearRoles(Database& database, const std::string& workspaceID, const std::string& userID);
std::vector<std::string> rolesOf(Database& database, const std::string& workspaceID, const std::string& userID);

// Every workspace of the user with the roles held there, the oldest workspace first.
std::vector<Membership> membershipsOf(Database& database, const std::string& userID);

}  // namespace service::store
