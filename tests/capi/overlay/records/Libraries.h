// Written by capi/generate.py.
#pragma once

#include "capi/pvwapi.hpp"
#include "pvutil/StringEx.h"

using pvwapi::CZelTemplateItem;
using pvwapi::library2_t;
using pvwapi::library_app_t;
using pvwapi::library_t;
