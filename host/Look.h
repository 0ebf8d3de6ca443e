// How results and help are to look where they go.
#pragma once

#include <string>

#include "host/Output.h"

namespace host {

/// The width of a line is what COLUMNS says, else the terminal's; `color` is always, never, or auto.
Look lookFor(const std::string& color);

}  // namespace host
