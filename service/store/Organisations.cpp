#include "service/store/Organisations.h"

#include "service/store/Database.h"

namespace service::store {

void insertOrganisation(Database& database, const Organisation& organisation)
{
    database.run(
        "INSERT INTO org (org_id, name, namespace_id, namespace_name, change_password_url,"
        " forget_password_url, site_info_url, connect_support_url, domain_white_list)"
        " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
        organisation.orgID, organisation.name, organisation.namespaceID, organisation.namespaceName,
        organisation.changePasswordURL, organisation.forgetPasswordURL, organisation.siteInfoURL,
        organisation.connectSupportURL, organisation.domainWhiteList);
}

void insertDomain(Database& database, const std::string& orgID, const std::string& name)
{
    database.run("INSERT INTO org_domain (org_id, name) VALUES (?, ?)", orgID, name);
}

std::optional<Organisation> findOrganisation(Database& database, const std::string& orgID)
{
    Rows rows = database.select(
        "SELECT org_id, name, namespace_id, namespace_name, change_password_url,"
        " forget_password_url, site_info_url, connect_support_url, domain_white_list"
        " FROM org WHERE org_id = ?",
        orgID);
    if (!rows.next()) return std::nullopt;
    return Organisation{rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4),
                        rows.text(5), rows.text(6), rows.text(7), rows.text(8)};
}

std::vector<std::string> domainsOf(Database& database, const std::string& orgID)
{
    Rows rows = database.select("SELECT name FROM org_domain WHERE org_id = ? ORDER BY rowid", orgID);
    std::vector<std::string> names;
    while (rows.next()) names.push_back(rows.text(0));
    return names;
}

bool policyAllows(Database& database, const std::string& orgID, const std::string& feature)
{
    return database.value("SELECT allowed FROM org_policy WHERE org_id = ? AND feature = ?", orgID, feature) == "1";
}

void setPolicy(Database& database, const std::string& orgID, const std::string& feature, bool allowed)
{
    database.run(
        "INSERT INTO org_policy (org_id, feature, allowed) VALUES (?, ?, ?)"
        " ON CONFLICT DO UPDATE SET allowed = excluded.allowed",
        orgID, feature, allowed);
}

}  // namespace service::store
