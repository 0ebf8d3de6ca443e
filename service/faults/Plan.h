#pragma once

#include <chrono>
#include <string>

#include "service/faults/Fault.h"
#include "service/http/Message.h"

namespace service::faults {

// How a reply that a fault has struck goes out.
struct Plan {
    enum class End { keep, close, reset, stall };

    std::chrono::milliseconds delay{0};  // before anything is written
    std::string bytes;
    std::size_t piece = 0;  // so many at once; 0: all
    std::chrono::milliseconds pause{0};
    std::string more;  // then this again and again
    End end = End::keep;
};

// `keepAlive`: the connection would go on if there were no fault.
Plan planFor(const Fault& fault, const http::Response& response, bool keepAlive);

}  // namespace service::faults
