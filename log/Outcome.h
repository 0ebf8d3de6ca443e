// What a reply says about its call.
#pragma once

#include <string>
#include <string_view>

namespace logreader {

struct Outcome {
    enum class Kind { success, failure, noResult, notXml, noReply };

    Kind kind = Kind::noReply;
    std::string reason;
    std::string exceptionID;
};

/// As the library reads it: the last result, reason and exception identifier of the response element, up to where the
/// reply is damaged.
Outcome outcomeOf(std::string_view reply);

/// "SUCCESS", "FAILURE", "no result", "not XML", "no reply".
std::string_view nameOf(Outcome::Kind kind);

}  // namespace logreader
