// The subcommands, topic by topic; each topic has a source file of its name.
#pragma once

#include "host/Command.h"

namespace host {

Commands sessionCommands();
Commands spacesCommands();
Commands tabsCommands();
Commands iconCommands();
Commands appsCommands();
Commands accessCommands();
Commands membersCommands();
Commands invitationsCommands();
Commands rolesCommands();
Commands favouritesCommands();
Commands userCommands();
Commands organisationCommands();
Commands librariesCommands();
Commands eventsCommands();
Commands proxyCommands();
Commands selfCommands();

}  // namespace host
