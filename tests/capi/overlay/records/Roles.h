// Written by capi/generate.py.
#pragma once

#include "capi/pvwapi.hpp"
#include "pvutil/StringEx.h"

using pvwapi::WAPI_INVITEAS_TYPE;

/// One entry of the list of roles that a member has in a workspace.
struct MemberRole {
    CStringT roleID;
    CStringT roleName;
};
