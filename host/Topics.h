// The subcommands, topic by topic; each topic has a source file of its name.
#pragma once

#include "host/Command.h"

namespace host {

Commands sessionCommands();
Commands spacesCommands();
Commands proxyCommands();

}  // namespace host
