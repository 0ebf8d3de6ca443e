#pragma once

#include <string>
#include <string_view>

#include "service/base/JsonForward.h"

namespace service::faults {

enum class Kind {
    refuse,
    close,
    reset,
    stall,
    rate,
    endless,
    length,
    chunks,
    headers,
    interim,
    redirect,
    charset,
    failure,
    delay
};

// What goes wrong, and with which calls. docs/service-control.md says of each kind what a client sees.
struct Fault {
    Kind kind = Kind::refuse;
    long long byte = 0;            // reset, stall: of the reply with its head
    long long bytesPerSecond = 1;  // rate
    long long by = 0;              // length: how much is announced too much
    long long count = 0;           // headers, interim
    long long ms = 0;              // delay
    unsigned status = 302;         // redirect
    std::string url;               // redirect
    std::string charset;
    std::string reason;       // failure
    std::string exceptionID;  // failure

    std::string operation;   // a command or a task; empty: any
    long long call = 0;      // the how manieth of those; 0: any
    double probability = 1;  // of each of those
    long long seed = 0;      // what chance begins with
    long long times = 0;     // how often at most; 0: again and again
};

// Throws JsonError where the description is none.
Fault faultOf(const Json& description);

std::string_view kindName(Kind kind);

// True where the call is answered so in the place of being carried out.
bool isInstead(Kind kind);

}  // namespace service::faults
