#pragma once

#include <optional>
#include <string>

namespace service::store {

class Database;

// A signed-in user: who calls, and on which credential.
struct Session {
    std::string cred;
    std::string userID;
    std::string userName;
    std::string orgID;
    std::string workspaceID;  // empty unless the credential was derived for one workspace
    long long duration = 0;
    long long expires = 0;
    std::string root;  // the credential of the session that this one ends with; empty for one of its own
};

void insertSession(Database& database, const Session& session);
std::optional<Session> findSession(Database& database, const std::string& cred);

// Puts the end of a session off: it lives one duration beyond its last use.
void touchSession(Database& database, const std::string& cred, long long expires);

// Takes the sessions along that end with this one.
void deleteSession(Database& database, const std::string& cred);

// An expired session is kept for a while, so that its owner is told "expired" and not "unknown".
void deleteSessionsExpiredBefore(Database& database, long long moment);

}  // namespace service::store
