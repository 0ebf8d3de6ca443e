// Every public operation, and whether it arms the refresh timer.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "client/WapiClient.h"

enum class Arms { never, atEntry, afterAnswer, afterSuccess };

struct TimedOperation {
    const char* name;
    Arms arms;
    std::function<int(CWapiClient&)> call;

    /// One that is called so that it sends nothing.
    bool refused() const
    {
        const std::string_view text = name;
        return text.ends_with("Refused") || text.ends_with("NotSent");
    }
};

const std::vector<TimedOperation>& timedOperations();
