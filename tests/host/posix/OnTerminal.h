// Runs the program on a terminal that the test holds the other end of.
#pragma once

#include <string>
#include <vector>

#include "tests/host/Program.h"

/// The terminal takes these columns; `typed` is what somebody types there. All that the program writes, and the echo of
/// what is typed, comes back as `out`.
Ended onTerminal(std::vector<std::string> words, const Environment& environment, const std::string& typed = {},
                 unsigned short columns = 80);
