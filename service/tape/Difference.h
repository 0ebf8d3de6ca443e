#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/tape/Matcher.h"
#include "service/tape/Members.h"

namespace service::tape {

// The beginning of a text, in quotes.
std::string excerptOf(std::string_view text);

// What differs, in words: "its body differs at byte 3: the tape has ...". What is known to be a secret in the text
// is not told: it was found there, or has been bound.
std::string differenceText(std::string_view what, const Fit& fit, std::string_view text, std::vector<Found> found,
                           const Bindings& bindings);

}  // namespace service::tape
