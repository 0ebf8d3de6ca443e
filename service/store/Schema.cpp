#include "service/store/Schema.h"

#include <array>
#include <stdexcept>
#include <string>

#include "service/store/Database.h"

namespace service::store {

namespace {

constexpr const char* kApplicationID = "1886807410";

// Version 1: the organisation and its users, sessions, workspaces with members, roles and tabs, invitations, things.
constexpr const char* kVersion1 = R"sql(
CREATE TABLE org (
    org_id TEXT PRIMARY KEY, name TEXT NOT NULL, namespace_id TEXT NOT NULL, namespace_name TEXT NOT NULL,
    change_password_url TEXT NOT NULL DEFAULT '', forget_password_url TEXT NOT NULL DEFAULT '',
    site_info_url TEXT NOT NULL DEFAULT '', connect_support_url TEXT NOT NULL DEFAULT '',
    domain_white_list TEXT NOT NULL DEFAULT '');
CREATE TABLE org_domain (
    org_id TEXT NOT NULL REFERENCES org ON DELETE CASCADE, name TEXT NOT NULL, PRIMARY KEY (org_id, name));
CREATE TABLE org_policy (
    org_id TEXT NOT NULL REFERENCES org ON DELETE CASCADE, feature TEXT NOT NULL, allowed INTEGER NOT NULL,
    PRIMARY KEY (org_id, feature)) WITHOUT ROWID;
CREATE TABLE user (
    user_id TEXT PRIMARY KEY, org_id TEXT NOT NULL REFERENCES org, user_name TEXT NOT NULL UNIQUE,
    email TEXT NOT NULL UNIQUE, first_name TEXT NOT NULL, middle_name TEXT NOT NULL DEFAULT '', last_name TEXT NOT NULL,
    host_name TEXT NOT NULL DEFAULT '', website_url TEXT NOT NULL DEFAULT '',
    client_build TEXT NOT NULL DEFAULT '', client_version TEXT NOT NULL DEFAULT '',
    password_hash TEXT NOT NULL, token_hash TEXT NOT NULL);
CREATE TABLE is_provider (
    user_id TEXT NOT NULL REFERENCES user ON DELETE CASCADE, provider_id TEXT NOT NULL, provider_name TEXT NOT NULL,
    user_name TEXT NOT NULL, namespace_id TEXT NOT NULL, PRIMARY KEY (user_id, provider_id));
CREATE TABLE av_account (
    user_id TEXT PRIMARY KEY REFERENCES user ON DELETE CASCADE, account_id TEXT NOT NULL, password TEXT NOT NULL,
    token TEXT NOT NULL, desktop_share_url TEXT NOT NULL, audio_visual_url TEXT NOT NULL);
CREATE TABLE session (
    cred TEXT PRIMARY KEY, user_id TEXT NOT NULL REFERENCES user ON DELETE CASCADE, workspace_id TEXT NOT NULL,
    duration INTEGER NOT NULL, expires INTEGER NOT NULL) WITHOUT ROWID;
CREATE INDEX session_expires ON session (expires);
CREATE TABLE workspace (
    number INTEGER PRIMARY KEY, workspace_id TEXT NOT NULL UNIQUE, name TEXT NOT NULL, type INTEGER NOT NULL,
    is_template INTEGER NOT NULL, owner_id TEXT NOT NULL REFERENCES user, org_id TEXT NOT NULL REFERENCES org,
    group_id TEXT NOT NULL DEFAULT '', description_icon TEXT NOT NULL DEFAULT '',
    created INTEGER NOT NULL, modified INTEGER NOT NULL);
CREATE TABLE workspace_text (
    workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE, position INTEGER NOT NULL,
    text TEXT NOT NULL, PRIMARY KEY (workspace_id, position)) WITHOUT ROWID;
CREATE TABLE workspace_icon (
    workspace_id TEXT PRIMARY KEY REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    icon_name TEXT NOT NULL UNIQUE, content BLOB NOT NULL);
CREATE TABLE tab (
    workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE, tab_id TEXT NOT NULL,
    name TEXT NOT NULL, type INTEGER NOT NULL, tab_order INTEGER NOT NULL, PRIMARY KEY (workspace_id, tab_id));
CREATE INDEX tab_by_id ON tab (tab_id);
CREATE TABLE chat_room (
    room_id TEXT PRIMARY KEY, workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    name TEXT NOT NULL);
CREATE INDEX chat_room_by_workspace ON chat_room (workspace_id);
CREATE TABLE document (
    document_id TEXT PRIMARY KEY, workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    name TEXT NOT NULL, owner_id TEXT NOT NULL REFERENCES user);
CREATE INDEX document_by_workspace ON document (workspace_id);
CREATE TABLE member (
    workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    user_id TEXT NOT NULL REFERENCES user ON DELETE CASCADE, joined INTEGER NOT NULL,
    PRIMARY KEY (workspace_id, user_id));
CREATE INDEX member_by_user ON member (user_id, workspace_id);
CREATE TABLE member_role (
    workspace_id TEXT NOT NULL, user_id TEXT NOT NULL, role_id TEXT NOT NULL,
    PRIMARY KEY (workspace_id, user_id, role_id),
    FOREIGN KEY (workspace_id, user_id) REFERENCES member ON DELETE CASCADE) WITHOUT ROWID;
CREATE TABLE invitation (
    number INTEGER PRIMARY KEY, invitation_id TEXT NOT NULL UNIQUE,
    workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    descriptor TEXT NOT NULL, user_id TEXT NOT NULL, status TEXT NOT NULL, invite_as TEXT NOT NULL,
    invite_type INTEGER NOT NULL, invite_method TEXT NOT NULL, provider_id TEXT NOT NULL, message TEXT NOT NULL,
    owner_id TEXT NOT NULL REFERENCES user, created INTEGER NOT NULL, modified INTEGER NOT NULL,
    status_changed INTEGER NOT NULL, expires INTEGER NOT NULL);
CREATE INDEX invitation_by_workspace ON invitation (workspace_id);
CREATE INDEX invitation_by_user ON invitation (user_id);
CREATE TABLE workspace_thing (
    number INTEGER PRIMARY KEY, thing_id TEXT NOT NULL UNIQUE, user_id TEXT NOT NULL REFERENCES user ON DELETE CASCADE,
    name TEXT NOT NULL, type TEXT NOT NULL, workspace_id TEXT NOT NULL,
    UNIQUE (user_id, type, name, workspace_id));
)sql";

// Version 2: libraries with templates and applications, things, events and what members report about their activity.
constexpr const char* kVersion2 = R"sql(
CREATE TABLE library (
    library_id TEXT PRIMARY KEY, org_id TEXT NOT NULL REFERENCES org, owner_id TEXT NOT NULL, name TEXT NOT NULL,
    type INTEGER NOT NULL);
CREATE TABLE library_template (
    library_id TEXT NOT NULL REFERENCES library ON DELETE CASCADE,
    workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    PRIMARY KEY (library_id, workspace_id));
CREATE TABLE app (
    number INTEGER PRIMARY KEY, app_id TEXT NOT NULL UNIQUE, library_id TEXT NOT NULL REFERENCES library,
    name TEXT NOT NULL, description TEXT NOT NULL, top_level INTEGER NOT NULL, current_dir TEXT NOT NULL,
    status TEXT NOT NULL, package TEXT NOT NULL, app_type TEXT NOT NULL, identity_name TEXT NOT NULL,
    identity_description TEXT NOT NULL, UNIQUE (library_id, name));
CREATE TABLE app_tab (
    app_id TEXT NOT NULL REFERENCES app (app_id) ON DELETE CASCADE, position INTEGER NOT NULL, name TEXT NOT NULL,
    type INTEGER NOT NULL, tab_order INTEGER NOT NULL, PRIMARY KEY (app_id, position)) WITHOUT ROWID;
CREATE TABLE thing (
    number INTEGER PRIMARY KEY, thing_id TEXT NOT NULL UNIQUE, user_id TEXT NOT NULL REFERENCES user ON DELETE CASCADE,
    workspace_id TEXT NOT NULL, name TEXT NOT NULL, extension TEXT NOT NULL, created INTEGER NOT NULL);
CREATE INDEX thing_by_workspace ON thing (workspace_id);
CREATE TABLE event (
    number INTEGER PRIMARY KEY, event_id TEXT NOT NULL UNIQUE,
    workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    sender_id TEXT NOT NULL REFERENCES user ON DELETE CASCADE, sender_name TEXT NOT NULL, type TEXT NOT NULL,
    name TEXT NOT NULL, display_name TEXT NOT NULL, message TEXT NOT NULL, tag TEXT NOT NULL, created INTEGER NOT NULL);
CREATE INDEX event_by_workspace ON event (workspace_id);
CREATE TABLE activity (
    workspace_id TEXT NOT NULL REFERENCES workspace (workspace_id) ON DELETE CASCADE,
    user_id TEXT NOT NULL REFERENCES user ON DELETE CASCADE, unread INTEGER NOT NULL, active INTEGER NOT NULL,
    PRIMARY KEY (workspace_id, user_id)) WITHOUT ROWID;
)sql";

// Version 3: an invitee is found without a look at all the others; a member has a last event that needs no telling;
// every tab has a place of its own; what those reported who have left is forgotten; a
// session may end with another.
constexpr const char* kVersion3 = R"sql(
CREATE INDEX invitation_by_descriptor ON invitation (workspace_id, descriptor);
CREATE INDEX invitation_by_invitee ON invitation (workspace_id, user_id);
CREATE INDEX user_by_email ON user (email COLLATE NOCASE);
DROP INDEX invitation_by_workspace;
ALTER TABLE member ADD COLUMN seen_event INTEGER NOT NULL DEFAULT 0;
UPDATE member SET seen_event = (
    SELECT coalesce(max(number), 0) FROM event
    WHERE event.workspace_id = member.workspace_id AND created < joined);
UPDATE tab SET tab_order = place FROM (
    SELECT rowid AS id, row_number() OVER (PARTITION BY workspace_id ORDER BY tab_order, rowid) AS place FROM tab)
    AS ranked
    WHERE tab.rowid = id AND workspace_id IN (
        SELECT workspace_id FROM tab GROUP BY workspace_id, tab_order HAVING count(*) > 1);
ALTER TABLE session ADD COLUMN root TEXT NOT NULL DEFAULT '';
CREATE INDEX session_by_root ON session (root);
DELETE FROM activity WHERE NOT EXISTS (
    SELECT 1 FROM member WHERE member.workspace_id = activity.workspace_id AND member.user_id = activity.user_id);
)sql";

// Version 4: what is decided about the service itself while it runs.
constexpr const char* kVersion4 = R"sql(
CREATE TABLE service_setting (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE fault (
    fault_id INTEGER PRIMARY KEY, description TEXT NOT NULL, seen INTEGER NOT NULL, struck INTEGER NOT NULL);
)sql";

// Version 5: what was asked and answered. The texts come last, so that a listing does not read them.
constexpr const char* kVersion5 = R"sql(
CREATE TABLE exchange (
    number INTEGER PRIMARY KEY, time INTEGER NOT NULL, microseconds INTEGER NOT NULL, user TEXT NOT NULL,
    method TEXT NOT NULL, path TEXT NOT NULL, operation TEXT NOT NULL, status INTEGER NOT NULL, result TEXT NOT NULL,
    reason TEXT NOT NULL, exception_id TEXT NOT NULL, fault TEXT NOT NULL, bytes_out INTEGER NOT NULL,
    bytes_in INTEGER NOT NULL, size INTEGER NOT NULL, fields TEXT NOT NULL, reply TEXT NOT NULL);
CREATE INDEX exchange_size ON exchange (size);
)sql";

constexpr std::array kVersions{kVersion1, kVersion2, kVersion3, kVersion4, kVersion5};

long long pragma(Database& database, std::string_view sql)
{
    Rows rows = database.select(sql);
    rows.next();
    return rows.number(0);
}

void checkOwnership(Database& database, long long version)
{
    if (version == 0 && pragma(database, "SELECT count(*) FROM sqlite_schema") == 0) return;
    if (std::to_string(pragma(database, "PRAGMA application_id")) != kApplicationID) {
        throw std::runtime_error("it is the database of another program");
    }
    if (version > static_cast<long long>(kVersions.size())) throw std::runtime_error("a newer service has written it");
}

// Once passwords were hashed by a method that only one of the systems knows.
void checkHashes(Database& database)
{
    if (pragma(database, "SELECT count(*) FROM user WHERE password_hash LIKE '$y$%' OR token_hash LIKE '$y$%'") == 0) {
        return;
    }
    throw std::runtime_error("an older service hashed its passwords in another way; begin with a new file");
}

}  // namespace

long long schemaVersion()
{
    return static_cast<long long>(kVersions.size());
}

void upgradeSchema(Database& database)
{
    const long long version = pragma(database, "PRAGMA user_version");
    checkOwnership(database, version);
    for (auto next = static_cast<std::size_t>(version); next < kVersions.size(); ++next) {
        Transaction transaction(database);
        database.script(kVersions.at(next));
        const std::string marks = std::string("PRAGMA application_id = ") + kApplicationID +
                                  "; PRAGMA user_version = " + std::to_string(next + 1);
        database.script(marks.c_str());
        transaction.commit();
    }
    checkHashes(database);
}

}  // namespace service::store
