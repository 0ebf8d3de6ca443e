// Pages as the source of man pages.
#pragma once

#include <string>

#include "host/Command.h"

namespace host {

/// The man page of the program, or of the topic with all of its commands.
std::string manPage(const Commands& all, const std::string& topic);

}  // namespace host
