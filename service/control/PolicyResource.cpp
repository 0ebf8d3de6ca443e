#include <algorithm>
#include <vector>

#include "service/base/Text.h"
#include "service/control/Handlers.h"
#include "service/store/Database.h"
#include "service/store/Organisations.h"

namespace service::control {

namespace {

Json switchesOf(Desk& desk, const std::string& orgID)
{
    Json switches = Json::object();
    store::Rows rows =
        desk.database.select("SELECT feature, allowed FROM org_policy WHERE org_id = ? ORDER BY feature", orgID);
    while (rows.next()) switches[rows.text(0)] = rows.number(1) != 0;
    return switches;
}

std::vector<std::string> organisations(Desk& desk)
{
    std::vector<std::string> ids;
    store::Rows rows = desk.database.select("SELECT org_id FROM org ORDER BY rowid");
    while (rows.next()) ids.push_back(rows.text(0));
    return ids;
}

// The one that the call names, or the only one that there is.
std::string organisationOf(Desk& desk, const Call& call)
{
    const std::vector<std::string> ids = organisations(desk);
    if (!call.organisation.empty()) {
        if (std::ranges::find(ids, call.organisation) != ids.end()) return call.organisation;
        throw ControlError(404, "there is no organisation " + service::inQuotes(call.organisation));
    }
    if (ids.size() == 1) return ids.front();
    throw ControlError(409, std::string(ids.empty() ? "there is no organisation" : "there are several organisations") +
                                ": name one with ?organisation=ID");
}

bool isFeatureName(std::string_view name)
{
    constexpr std::size_t kLongest = 64;
    return !name.empty() && name.size() <= kLongest && std::ranges::all_of(name, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
    });
}

}  // namespace

Json showPolicy(Desk& desk, const Call& call)
{
    if (!call.organisation.empty()) return switchesOf(desk, organisationOf(desk, call));
    Json all = Json::object();
    for (const std::string& orgID : organisations(desk)) all[orgID] = switchesOf(desk, orgID);
    return all;
}

Json changePolicy(Desk& desk, const Call& call)
{
    JsonObject body(call.body, "the request");
    const std::string orgID = organisationOf(desk, call);
    for (const auto& [feature, allowed] : call.body.items()) {
        if (!isFeatureName(feature))
            throw ControlError(400, service::inQuotes(feature) + " cannot be the name of a feature");
        store::setPolicy(desk.database, orgID, feature, body.truth(feature.c_str(), false));
    }
    return switchesOf(desk, orgID);
}

}  // namespace service::control
