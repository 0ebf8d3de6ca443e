#include "service/store/Sessions.h"

#include "service/store/Database.h"

namespace service::store {

void insertSession(Database& database, const Session& session)
{
    database.run("INSERT INTO session (cred, user_id, workspace_id, duration, expires, root) VALUES (?, ?, ?, ?, ?, ?)",
                 session.cred, session.userID, session.workspaceID, session.duration, session.expires, session.root);
}

std::optional<Session> findSession(Database& database, const std::string& cred)
{
    Rows rows = database.select(
        "SELECT user_id, user_name, org_id, workspace_id, duration, expires, root"
        " FROM session JOIN user USING (user_id) WHERE cred = ?",
        cred);
    if (!rows.next()) return std::nullopt;
    return Session{cred,         rows.text(0),   rows.text(1),   rows.text(2),
                   rows.text(3), rows.number(4), rows.number(5), rows.text(6)};
}

void touchSession(Database& database, const std::string& cred, long long expires)
{
    database.run("UPDATE session SET expires = max(expires, ?) WHERE cred = ?", expires, cred);
}

void deleteSession(Database& database, const std::string& cred)
{
    database.run("DELETE FROM session WHERE cred = ?1 OR root = ?1", cred);
}

void deleteSessionsExpiredBefore(Database& database, long long moment)
{
    database.run("DELETE FROM session WHERE expires < ?", moment);
}

}  // namespace service::store
