// Written by capi/generate.py.
#pragma once

#include "capi/pvwapi.hpp"
#include "pvutil/StringEx.h"

using pvwapi::EVENT_NAME;
using pvwapi::SPACE_COUNT_ITEM;
