// Roles as the service names them, and the scale that hosts see.
#pragma once

#include <vector>

#include "pvutil/StringEx.h"

/// What a member of a workspace is, and what an invitee is to become. 32 bits wide; any int may be carried in it.
enum WAPI_INVITEAS_TYPE : int { WAPI_INVITEAS_MEMBER = 1, WAPI_INVITEAS_ADMIN = 2 };

/// One entry of the list of roles that a member has in a workspace.
struct MemberRole {
    CStringT roleID;
    CStringT roleName;
};
