#include <limits>

#include "service/base/Text.h"
#include "service/control/Handlers.h"
#include "service/faults/Fault.h"
#include "service/store/FaultRows.h"

namespace service::control {

namespace {

constexpr std::size_t kMostFaults = 1000;

Json listed(Desk& desk)
{
    Json list = Json::array();
    for (const store::FaultRow& row : store::faultRows(desk.database)) {
        Json fault{{"id", row.id}};
        fault.update(parseJson(row.description));
        fault["seen"] = row.seen;
        fault["struck"] = row.struck;
        list.push_back(std::move(fault));
    }
    return Json{{"faults", std::move(list)}};
}

void add(Desk& desk, const Json& description)
{
    faults::faultOf(description);
    if (store::faultRows(desk.database).size() >= kMostFaults) throw ControlError(409, "there are too many faults");
    store::insertFault(desk.database, description.dump());
}

}  // namespace

Json showFaults(Desk& desk, const Call& /*call*/)
{
    return listed(desk);
}

// One, or a list of them.
Json addFaults(Desk& desk, const Call& call)
{
    if (call.body.is_array()) {
        for (const Json& each : call.body) add(desk, each);
    } else {
        add(desk, call.body);
    }
    return listed(desk);
}

Json clearFaults(Desk& desk, const Call& /*call*/)
{
    store::deleteFaults(desk.database);
    return listed(desk);
}

Json clearFault(Desk& desk, const Call& call)
{
    const auto id = wholeNumber(call.name, 1, std::numeric_limits<long long>::max());
    if (!id || !store::deleteFault(desk.database, *id)) {
        throw ControlError(404, "there is no fault " + service::inQuotes(call.name));
    }
    return listed(desk);
}

}  // namespace service::control
