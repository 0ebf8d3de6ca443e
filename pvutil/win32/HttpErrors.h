// What the system's errors mean: the causes that a host is told, and the system's own words.
#pragma once

#include <string>

#include "pvutil/HttpFailure.h"

namespace kzn::pvutil {

/// The cause that an error of WinHTTP or of Winsock stands for; none where it stands for no certain one. What only the
/// moment tells is not in it: a timeout is silence, a broken connection is cut off.
HttpFault faultOf(unsigned long error) noexcept;

/// The error that says the same as WinHTTP's flags of a connection that could not be secured.
unsigned long secureErrorOf(unsigned long flags) noexcept;

/// The system's own words, in one line without a stop; empty where it has none.
std::string wordsOf(unsigned long error);

}  // namespace kzn::pvutil
