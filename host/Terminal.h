// The terminal in front of which somebody may sit.
#pragma once

#include <cstddef>

namespace host::system {

/// Whether somebody types what standard input brings.
bool inputIsTerminal();

/// Whether somebody looks at standard output as it is written.
bool outputIsTerminal();

/// The columns of the terminal that standard output goes to; 0 where it goes to none.
std::size_t terminalWidth();

/// Makes the terminal of standard output understand the commands that make letters bold; false where it cannot.
bool prepareBold();

}  // namespace host::system
