// Every public operation, and whether it arms the refresh timer.
#pragma once

#include <functional>
#include <vector>

#include "client/WapiClient.h"

struct TimedOperation {
    const char* name;
    bool arms;
    std::function<void(CWapiClient&)> call;
};

const std::vector<TimedOperation>& timedOperations();
