#include "service/store/Events.h"

#include "service/store/Database.h"

namespace service::store {

void insertEvent(Database& database, const Event& event)
{
    database.run(
        "INSERT INTO event (event_id, workspace_id, sender_id, sender_name, type, name, display_name, message,"
        " tag, created) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        event.eventID, event.workspaceID, event.senderID, event.senderName, event.type, event.name, event.displayName,
        event.message, event.tag, event.created);
}

std::vector<Event> eventsVisibleTo(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT e.event_id, e.workspace_id, e.sender_id, e.sender_name, e.type, e.name, e.display_name,"
        " e.message, e.tag, e.created, w.name FROM event e JOIN workspace w ON w.workspace_id = e.workspace_id"
        " JOIN member m ON m.workspace_id = e.workspace_id AND m.user_id = ? ORDER BY e.number",
        userID);
    std::vector<Event> events;
    while (rows.next()) {
        events.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4), rows.text(5),
                          rows.text(6), rows.text(7), rows.text(8), rows.number(9), rows.text(10)});
    }
    return events;
}

long long notificationCount(Database& database, const std::string& workspaceID, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT count(*) FROM event JOIN member USING (workspace_id)"
        " WHERE workspace_id = ?1 AND member.user_id = ?2 AND sender_id <> ?2"
        " AND event.number > seen_event",
        workspaceID, userID);
    rows.next();
    return rows.number(0);
}

void markSeen(Database& database, const std::string& eventID, const std::string& userID)
{
    database.run(
        "UPDATE member SET seen_event = event.number FROM event WHERE event.event_id = ?1"
        " AND member.workspace_id = event.workspace_id AND member.user_id = ?2 AND seen_event < event.number",
        eventID, userID);
}

void putActivity(Database& database, const std::string& workspaceID, const std::string& userID, long long unread,
                 long long active)
{
    database.run(
        "INSERT INTO activity (workspace_id, user_id, unread, active) VALUES (?, ?, ?, ?)"
        " ON CONFLICT DO UPDATE SET unread = excluded.unread, active = excluded.active",
        workspaceID, userID, unread, active);
}

long long activityValue(Database& database, const std::string& workspaceID)
{
    Rows rows =
        database.select("SELECT coalesce(sum(unread + active), 0) FROM activity WHERE workspace_id = ?", workspaceID);
    rows.next();
    return rows.number(0);
}

}  // namespace service::store
