// Written by capi/generate.py.
#pragma once

#include "capi/pvwapi.hpp"
#include "pvutil/StringEx.h"

using pvwapi::CZelSpaceInvite;
using pvwapi::SpaceForList;
