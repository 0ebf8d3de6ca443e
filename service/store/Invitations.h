#pragma once

#include <optional>
#include <string>
#include <vector>

namespace service::store {

class Database;

struct Invitation {
    std::string invitationID;
    std::string workspaceID;
    std::string workspaceName;
    std::string descriptor;  // the invitee as the inviting user wrote it
    std::string userID;      // empty while the invitee is unknown to the service
    std::string userName;
    std::string userEmail;
    std::string status;
    std::string inviteAs;
    long long inviteType = 0;
    std::string method;
    std::string providerID;
    std::string message;
    std::string ownerID;
    std::string ownerName;
    long long created = 0;
    long long modified = 0;
    long long statusChanged = 0;
    long long expires = 0;
};

namespace invitationstatus {
inline constexpr const char* kPending = "pending";
inline constexpr const char* kAccepted = "accepted";
inline constexpr const char* kRejected = "rejected";
inline constexpr const char* kExpired = "expired";  // never stored: a pending one becomes it as time goes by
}  // namespace invitationstatus

void insertInvitation(Database& database, const Invitation& invitation);

// The open invitations, pending and not expired: those addressed to the user, and those of the user's workspaces.
std::vector<Invitation> invitationsVisibleTo(Database& database, const std::string& userID, long long now);

// One invitation in the state that it is in. The members of its workspace learn what became of it; to the invitee it is
// there while it is open.
std::optional<Invitation> findInvitation(Database& database, const std::string& invitationID, const std::string& userID,
                                         long long now);

// The open invitation of a person to a workspace, by what somebody wrote or, unless that is empty, by the user's ID.
std::optional<Invitation> openInvitation(Database& database, const std::string& workspaceID,
                                         const std::string& descriptor, const std::string& userID, long long now);

// The open invitation of a user to a workspace.
std::optional<Invitation> pendingInvitation(Database& database, const std::string& workspaceID,
                                            const std::string& userID, long long now);
void setInvitationStatus(Database& database, const std::string& invitationID, const std::string& status, long long now);
void deleteInvitation(Database& database, const std::string& invitationID);

// Deletes all invitations of one person to one workspace. An empty `userID` is nobody's.
void deleteInvitationsOf(Database& database, const std::string& workspaceID, const std::string& descriptor,
                         const std::string& userID);

}  // namespace service::store
