#pragma once

#include <optional>
#include <string>
#include <vector>

namespace service::store {

class Database;

struct Organisation {
    std::string orgID;
    std::string name;
    std::string namespaceID;
    std::string namespaceName;
    std::string changePasswordURL;
    std::string forgetPasswordURL;
    std::string siteInfoURL;
    std::string connectSupportURL;
    std::string domainWhiteList;
};

void insertOrganisation(Database& database, const Organisation& organisation);
void insertDomain(Database& database, const std::string& orgID, const std::string& name);
std::optional<Organisation> findOrganisation(Database& database, const std::string& orgID);
std::vector<std::string> domainsOf(Database& database, const std::string& orgID);

// Whether the organisation allows a feature. A feature it says nothing about is allowed to nobody.
bool policyAllows(Database& database, const std::string& orgID, const std::string& feature);
void setPolicy(Database& database, const std::string& orgID, const std::string& feature, bool allowed);

}  // namespace service::store
