#include "service/control/Handlers.h"
#include "service/faults/Fault.h"
#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "service/store/FaultRows.h"
#include "service/store/Schema.h"
#include "service/store/ServiceSettings.h"
#include "service/store/State.h"
#include "service/store/Users.h"

namespace service::control {

namespace {

Json summary(Desk& desk)
{
    const auto count = [&desk](std::string_view sql) { return std::stoll(desk.database.value(sql).value_or("0")); };
    return Json{{"users", count("SELECT count(*) FROM user")},
                {"workspaces", count("SELECT count(*) FROM workspace")},
                {"sessions", count("SELECT count(*) FROM session")}};
}

}  // namespace

// Back to what the service was started with, or to nothing at all.
Json reset(Desk& desk, const Call& call)
{
    bool empty = false;
    if (!call.body.is_null()) {
        JsonObject body(call.body, "the request");
        empty = body.truth("empty", false);
        body.end();
    }
    store::clearState(desk.database);
    desk.settings.clock.setOffset(0);
    if (!empty && !desk.seed.is_null()) seed::fill(desk.database, desk.settings, desk.seed, desk.hashes);
    return summary(desk);
}

Json seedWith(Desk& desk, const Call& call)
{
    if (store::hasUsers(desk.database)) {
        throw ControlError(409, "there are users already; a reset with {\"empty\": true} takes them away");
    }
    seed::fill(desk.database, desk.settings, call.body);
    return summary(desk);
}

Json exportState(Desk& desk, const Call& /*call*/)
{
    return store::stateOf(desk.database);
}

Json importState(Desk& desk, const Call& call)
{
    const bool newer = call.body.is_object() && call.body.contains("schema") &&
                       call.body.at("schema").is_number_integer() &&
                       call.body.at("schema").get<long long>() > store::schemaVersion();
    if (newer) throw ControlError(409, "a newer service has written this state");
    store::replaceState(desk.database, call.body);
    for (const store::FaultRow& row : store::faultRows(desk.database)) faults::faultOf(parseJson(row.description));
    return summary(desk);
}

}  // namespace service::control
