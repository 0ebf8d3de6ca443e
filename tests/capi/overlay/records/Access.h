// Written by capi/generate.py.
#pragma once

#include "capi/pvwapi.hpp"
#include "pvutil/StringEx.h"

using pvwapi::DOC_ACCESS;
using pvwapi::RoleItem;
using pvwapi::ROOM_ACCESS;
using pvwapi::SPACE_ACCESS;
