#pragma once

#include <string>
#include <vector>

namespace service::store {

class Database;

struct Event {
    std::string eventID;
    std::string workspaceID;
    std::string senderID;
    std::string senderName;
    std::string type;
    std::string name;
    std::string displayName;
    std::string message;
    std::string tag;
    long long created = 0;
    std::string workspaceName;  // the workspace's own, never what the sender claims
};

void insertEvent(Database& database, const Event& event);

// The events of all workspaces that the user is a member of, the oldest first.
std::vector<Event> eventsVisibleTo(Database& database, const std::string& userID);

// How many events others have sent to the workspace since the user joined it, or last saw one.
long long notificationCount(Database& database, const std::string& workspaceID, const std::string& userID);

// From now on neither this event nor one before it is counted for the user.
void markSeen(Database& database, const std::string& eventID, const std::string& userID);

// What a member's host last reported about a workspace.
void putActivity(Database& database, const std::string& workspaceID, const std::string& userID, long long unread,
                 long long active);

// The sum of what the hosts of all who are members have last reported.
long long activityValue(Database& database, const std::string& workspaceID);

}  // namespace service::store
