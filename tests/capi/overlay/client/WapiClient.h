// The class as pvwapi.hpp has it, for what was written for the class itself. Written by capi/generate.py.
#pragma once

#include "capi/pvwapi.hpp"
#include "records/Access.h"
#include "records/Events.h"
#include "records/Libraries.h"
#include "records/Members.h"
#include "records/Policy.h"
#include "records/Roles.h"
#include "records/SpaceDetails.h"
#include "records/Spaces.h"
#include "records/Tabs.h"
#include "records/Users.h"
#include "records/WapiMessage.h"

using pvwapi::CWapiClient;
