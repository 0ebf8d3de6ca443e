// The one line on standard error that a command ends with when it does not succeed.
#pragma once

#include <string>
#include <vector>

#include "host/Errors.h"
#include "host/Output.h"

namespace host {

/// With its line break. In JSON an object with the members that exist. No credential stands in it.
std::string errorLine(const std::string& command, const Failure& failure, Format format);

/// The format that the words ask for, as far as it can be told from words that may make no command.
Format wantedFormat(const std::vector<std::string>& words);

}  // namespace host
