#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "service/Context.h"
#include "service/base/Json.h"
#include "service/http/Form.h"
#include "service/seed/Seed.h"

namespace service::http {
class Events;
}
namespace service::journal {
class Journal;
}

// Every resource under /control/, each a small function in the file that its topic names. What they change is one
// transaction with the request.
namespace service::control {

// What cannot be done as asked: the status of the reply, and one line that says why.
class ControlError : public std::runtime_error {
public:
    // `allowed`: the methods that a resource has, where the one asked for is none of them.
    ControlError(unsigned status, const std::string& why, std::string allowed = {})
        : std::runtime_error(why), status_(status), allowed_(std::move(allowed))
    {
    }

    unsigned status() const { return status_; }
    const std::string& allowed() const { return allowed_; }

private:
    unsigned status_;
    std::string allowed_;
};

// What the resources work on.
struct Desk {
    store::Database& database;
    Settings& settings;
    const Json& seed;  // what the service was started with; null where that was nothing
    seed::SecretHashes& hashes;
    journal::Journal* journal;  // none where nothing is kept
    long long last;             // number that it has given, before the request
    bool isCleared;             // set by a resource that has cleared it
    http::Events* events;       // set by a resource whose reply goes on with these
};

// One request for a resource.
struct Call {
    std::string name;          // what stands behind the resource's own path
    std::string organisation;  // of the query; empty where it names none
    http::Form query;
    Json body;              // null where there was none
    std::string_view text;  // a body that is plain text
};

// StateResources.cpp
Json reset(Desk& desk, const Call& call);
Json seedWith(Desk& desk, const Call& call);
Json exportState(Desk& desk, const Call& call);
Json importState(Desk& desk, const Call& call);

// ClockResource.cpp
Json showClock(Desk& desk, const Call& call);
Json setClock(Desk& desk, const Call& call);
Json advanceClock(Desk& desk, const Call& call);
Json machineClock(Desk& desk, const Call& call);

// PolicyResource.cpp
Json showPolicy(Desk& desk, const Call& call);
Json changePolicy(Desk& desk, const Call& call);

// FaultResources.cpp
Json showFaults(Desk& desk, const Call& call);
Json addFaults(Desk& desk, const Call& call);
Json clearFaults(Desk& desk, const Call& call);
Json clearFault(Desk& desk, const Call& call);

// JournalResources.cpp
Json listExchanges(Desk& desk, const Call& call);
Json showExchange(Desk& desk, const Call& call);
Json clearExchanges(Desk& desk, const Call& call);
Json followExchanges(Desk& desk, const Call& call);
Json readLog(Desk& desk, const Call& call);

// OverviewResource.cpp
Json showOverview(Desk& desk, const Call& call);

}  // namespace service::control
