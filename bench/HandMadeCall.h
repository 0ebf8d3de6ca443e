// What a host's engineers would write for one small call instead, with care: one libcurl handle and one parser that are
// kept, the body in a string that keeps its room, two lines in a log, the answer's text in UTF-16.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "pvutil/StringEx.h"

namespace kzn::bench {

class HandMadeCall {
public:
    /// The log is made anew at `log`.
    HandMadeCall(const std::string& url, const std::string& log);
    HandMadeCall(const HandMadeCall&) = delete;
    HandMadeCall& operator=(const HandMadeCall&) = delete;
    ~HandMadeCall();

    /// Asks for the session; whether it succeeded, with its duration in `duration`.
    bool getSessionInfo(const CStringT& cred, CStringT& duration);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace kzn::bench
