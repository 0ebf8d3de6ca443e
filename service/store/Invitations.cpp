#include "service/store/Invitations.h"

#include "service/store/Database.h"

namespace service::store {

namespace {

Invitation invitationOf(const Rows& rows)
{
    Invitation invitation;
    invitation.invitationID = rows.text(0);
    invitation.workspaceID = rows.text(1);
    invitation.workspaceName = rows.text(2);
    invitation.descriptor = rows.text(3);
    invitation.userID = rows.text(4);
    invitation.userName = rows.text(5);
    invitation.userEmail = rows.text(6);
    invitation.status = rows.text(7);
    invitation.inviteAs = rows.text(8);
    invitation.inviteType = rows.number(9);
    invitation.method = rows.text(10);
    invitation.providerID = rows.text(11);
    invitation.message = rows.text(12);
    invitation.ownerID = rows.text(13);
    invitation.ownerName = rows.text(14);
    invitation.created = rows.number(15);
    invitation.modified = rows.number(16);
    invitation.statusChanged = rows.number(17);
    invitation.expires = rows.number(18);
    if (invitation.status == invitationstatus::kExpired) invitation.statusChanged = invitation.expires;
    return invitation;
}

// The columns are those of invitationOf, ?1 is the present; what follows says which invitations.
constexpr const char* kRecords =
    "SELECT i.invitation_id, i.workspace_id, w.name, i.descriptor, i.user_id, coalesce(u.user_name, ''),"
    " coalesce(u.email, ''),"
    " CASE WHEN i.status = 'pending' AND i.expires <= ?1 THEN 'expired' ELSE i.status END AS state,"
    " i.invite_as, i.invite_type, i.invite_method, i.provider_id, i.message,"
    " i.owner_id, o.user_name, i.created, i.modified, i.status_changed, i.expires"
    " FROM invitation i JOIN workspace w ON w.workspace_id = i.workspace_id JOIN user o ON o.user_id = i.owner_id"
    " LEFT JOIN user u ON u.user_id = i.user_id WHERE ";

std::vector<Invitation> allInvitations(Rows rows)
{
    std::vector<Invitation> invitations;
    while (rows.next()) invitations.push_back(invitationOf(rows));
    return invitations;
}

std::optional<Invitation> firstInvitation(Rows rows)
{
    if (!rows.next()) return std::nullopt;
    return invitationOf(rows);
}

}  // namespace

void insertInvitation(Database& database, const Invitation& invitation)
{
    database.run(
        "INSERT INTO invitation (invitation_id, workspace_id, descriptor, user_id, status, invite_as,"
        " invite_type, invite_method, provider_id, message, owner_id, created, modified, status_changed,"
        " expires) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        invitation.invitationID, invitation.workspaceID, invitation.descriptor, invitation.userID, invitation.status,
        invitation.inviteAs, invitation.inviteType, invitation.method, invitation.providerID, invitation.message,
        invitation.ownerID, invitation.created, invitation.modified, invitation.statusChanged, invitation.expires);
}

std::vector<Invitation> invitationsVisibleTo(Database& database, const std::string& userID, long long now)
{
    static const std::string sql = std::string(kRecords) +
                                   "state = 'pending' AND (i.user_id = ?2 OR EXISTS (SELECT 1 FROM member m"
                                   " WHERE m.workspace_id = i.workspace_id AND m.user_id = ?2)) ORDER BY i.number";
    return allInvitations(database.select(sql, now, userID));
}

std::optional<Invitation> findInvitation(Database& database, const std::string& invitationID, const std::string& userID,
                                         long long now)
{
    static const std::string sql =
        std::string(kRecords) +
        "i.invitation_id = ?3 AND ((i.user_id = ?2 AND state = 'pending') OR EXISTS"
        " (SELECT 1 FROM member m WHERE m.workspace_id = i.workspace_id AND m.user_id = ?2))";
    return firstInvitation(database.select(sql, now, userID, invitationID));
}

std::optional<Invitation> openInvitation(Database& database, const std::string& workspaceID,
                                         const std::string& descriptor, const std::string& userID, long long now)
{
    static const std::string byDescriptor =
        std::string(kRecords) + "state = 'pending' AND i.workspace_id = ?2 AND i.descriptor = ?3 LIMIT 1";
    std::optional<Invitation> open = firstInvitation(database.select(byDescriptor, now, workspaceID, descriptor));
    return open || userID.empty() ? open : pendingInvitation(database, workspaceID, userID, now);
}

std::optional<Invitation> pendingInvitation(Database& database, const std::string& workspaceID,
                                            const std::string& userID, long long now)
{
    static const std::string sql =
        std::string(kRecords) +
        "state = 'pending' AND i.workspace_id = ?2 AND i.user_id = ?3 ORDER BY i.number LIMIT 1";
    return firstInvitation(database.select(sql, now, workspaceID, userID));
}

void setInvitationStatus(Database& database, const std::string& invitationID, const std::string& status, long long now)
{
    database.run("UPDATE invitation SET status = ?1, modified = ?2, status_changed = ?2 WHERE invitation_id = ?3",
                 status, now, invitationID);
}

void deleteInvitation(Database& database, const std::string& invitationID)
{
    database.run("DELETE FROM invitation WHERE invitation_id = ?", invitationID);
}

void deleteInvitationsOf(Database& database, const std::string& workspaceID, const std::string& descriptor,
                         const std::string& userID)
{
    database.run("DELETE FROM invitation WHERE workspace_id = ? AND descriptor = ?", workspaceID, descriptor);
    if (userID.empty()) return;
    database.run("DELETE FROM invitation WHERE workspace_id = ? AND user_id = ?", workspaceID, userID);
}

}  // namespace service::store
