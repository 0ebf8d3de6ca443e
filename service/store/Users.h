#pragma once

#include <optional>
#include <string>
#include <vector>

namespace service::store {

class Database;

struct User {
    std::string userID;
    std::string orgID;
    std::string userName;
    std::string email;
    std::string firstName;
    std::string middleName;
    std::string lastName;
    std::string hostName;
    std::string websiteURL;
    std::string clientBuild;
    std::string clientVersion;
};

struct Secrets {
    std::string passwordHash;
    std::string tokenHash;
};

struct Provider {
    std::string providerID;
    std::string providerName;
    std::string userName;
    std::string namespaceID;
};

struct AvAccount {
    std::string accountID;
    std::string password;
    std::string token;
    std::string desktopShareURL;
    std::string audioVisualURL;
};

void insertUser(Database& database, const User& user, const Secrets& secrets);
void insertProvider(Database& database, const std::string& userID, const Provider& provider);

std::optional<User> findUser(Database& database, const std::string& userID);

// Finds by what an invitation may say: the user's ID, name or e-mail address.
std::optional<User> findUserByDescriptor(Database& database, const std::string& descriptor);
std::optional<std::string> userIDByName(Database& database, const std::string& userName);
std::vector<std::string> userIDsOf(Database& database, const std::string& orgID);
Secrets secretsOf(Database& database, const std::string& userID);

std::vector<Provider> providersOf(Database& database, const std::string& userID);
std::optional<AvAccount> avAccountOf(Database& database, const std::string& userID);
void insertAvAccount(Database& database, const std::string& userID, const AvAccount& account);
void updateUserExtension(Database& database, const User& user);

bool hasUsers(Database& database);

}  // namespace service::store
