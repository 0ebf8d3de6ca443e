// Every public operation that sends something, called with the arguments of one of its wire examples.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "client/WapiClient.h"

namespace kzn::test {

/// What a call gave.
struct Done {
    int result = 0;
    std::string outputs;  // all of them, as lines
    bool isUntouched = true;
};

struct HostileOperation {
    enum class Reads {
        document,  // as nearly all do
        nothing,   // whatever comes is as good as anything
        anything,  // hands over what came and leaves the message alone
        picture,   // posts a file
        file       // gets one
    };
    std::string name;
    Reads reads = Reads::document;
    std::function<Done(CWapiClient&)> call;
};

/// `server` is the address that stands for "{server}" in the examples.
std::vector<HostileOperation> hostileOperations(const std::string& server);

}  // namespace kzn::test
