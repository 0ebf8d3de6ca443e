#pragma once

#include <string>

#include "service/Context.h"
#include "service/store/Invitations.h"

namespace service::rules {

// A pending invitation of the caller's, as member, that begins now and has its whole life before it. The descriptor is
// the invitee as the caller wrote it.
store::Invitation newInvitation(const Context& context, const std::string& workspaceID, const std::string& descriptor);

}  // namespace service::rules
