// Pages as text on a terminal.
#pragma once

#include <cstddef>
#include <string>

#include "host/Output.h"
#include "host/Page.h"

namespace host {

/// The page in lines that fit the look's width, or 80 columns where it has none, and 40 at least.
std::string helpText(const Page& page, const Look& look);

}  // namespace host
