#pragma once

#include <string>

#include "service/Context.h"
#include "service/xml/Node.h"

namespace service::rules {

// The answer to a question for a right. A refusal has a reason.
struct Right {
    bool access = false;
    std::string reason;
};

// What the caller may do, computed from the real role in the workspace and from what the organisation allows; what no
// command does, nobody may. `test` is one element of a list of tests.
Right rightOf(const Context& context, const xml::Node& test);

}  // namespace service::rules
