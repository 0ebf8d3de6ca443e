// Written by capi/generate.py.
#pragma once

#include "capi/pvwapi.hpp"
#include "pvutil/StringEx.h"

using pvwapi::CUserConfigInfo;
using pvwapi::CZelISProvider;
using pvwapi::USER_PROFILE;
