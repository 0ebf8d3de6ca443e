#include "service/store/Users.h"

#include "service/store/Database.h"

namespace service::store {

namespace {

std::optional<User> firstUser(Rows& rows)
{
    if (!rows.next()) return std::nullopt;
    return User{rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4), rows.text(5),
                rows.text(6), rows.text(7), rows.text(8), rows.text(9), rows.text(10)};
}

}  // namespace

void insertUser(Database& database, const User& user, const Secrets& secrets)
{
    database.run(
        "INSERT INTO user (user_id, org_id, user_name, email, first_name, middle_name, last_name, host_name,"
        " website_url, client_build, client_version, password_hash, token_hash)"
        " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        user.userID, user.orgID, user.userName, user.email, user.firstName, user.middleName, user.lastName,
        user.hostName, user.websiteURL, user.clientBuild, user.clientVersion, secrets.passwordHash, secrets.tokenHash);
}

void insertProvider(Database& database, const std::string& userID, const Provider& provider)
{
    database.run(
        "INSERT INTO is_provider (user_id, provider_id, provider_name, user_name, namespace_id)"
        " VALUES (?, ?, ?, ?, ?)",
        userID, provider.providerID, provider.providerName, provider.userName, provider.namespaceID);
}

std::optional<User> findUser(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT user_id, org_id, user_name, email, first_name, middle_name, last_name,"
        " host_name, website_url, client_build, client_version FROM user WHERE user_id = ?",
        userID);
    return firstUser(rows);
}

std::optional<User> findUserByDescriptor(Database& database, const std::string& descriptor)
{
    std::optional<std::string> userID = database.value(
        "SELECT user_id FROM user WHERE user_id = ?1 OR user_name = ?1 OR email = ?1 COLLATE NOCASE", descriptor);
    return userID ? findUser(database, *userID) : std::nullopt;
}

std::optional<std::string> userIDByName(Database& database, const std::string& userName)
{
    return database.value("SELECT user_id FROM user WHERE user_name = ?", userName);
}

std::vector<std::string> userIDsOf(Database& database, const std::string& orgID)
{
    Rows rows = database.select("SELECT user_id FROM user WHERE org_id = ? ORDER BY user_name", orgID);
    std::vector<std::string> userIDs;
    while (rows.next()) userIDs.push_back(rows.text(0));
    return userIDs;
}

Secrets secretsOf(Database& database, const std::string& userID)
{
    Rows rows = database.select("SELECT password_hash, token_hash FROM user WHERE user_id = ?", userID);
    if (!rows.next()) return {};
    return {rows.text(0), rows.text(1)};
}

std::vector<Provider> providersOf(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT provider_id, provider_name, user_name, namespace_id FROM is_provider"
        " WHERE user_id = ? ORDER BY rowid",
        userID);
    std::vector<Provider> providers;
    while (rows.next()) providers.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3)});
    return providers;
}

std::optional<AvAccount> avAccountOf(Database& database, const std::string& userID)
{
    Rows rows = database.select(
        "SELECT account_id, password, token, desktop_share_url, audio_visual_url"
        " FROM av_account WHERE user_id = ?",
        userID);
    if (!rows.next()) return std::nullopt;
    return AvAccount{rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4)};
}

void insertAvAccount(Database& database, const std::string& userID, const AvAccount& account)
{
    database.run(
        "INSERT INTO av_account (user_id, account_id, password, token, desktop_share_url, audio_visual_url)"
        " VALUES (?, ?, ?, ?, ?, ?)",
        userID, account.accountID, account.password, account.token, account.desktopShareURL, account.audioVisualURL);
}

void updateUserExtension(Database& database, const User& user)
{
    database.run(
        "UPDATE user SET host_name = ?, website_url = ?, client_build = ?, client_version = ?"
        " WHERE user_id = ?",
        user.hostName, user.websiteURL, user.clientBuild, user.clientVersion, user.userID);
}

bool hasUsers(Database& database)
{
    return database.value("SELECT 1 FROM user LIMIT 1").has_value();
}

}  // namespace service::store
