// The public operations that wire examples can call, a function a topic.
#pragma once

#include "tests/support/WireCall.h"

WireOperations pipelineOperations();
WireOperations sessionOperations();
WireOperations spaceOperations();
WireOperations spaceAppOperations();
WireOperations tabOperations();
WireOperations accessOperations();
WireOperations probeOperations();
WireOperations memberOperations();
WireOperations favouriteOperations();
WireOperations userOperations();
WireOperations organisationOperations();
WireOperations libraryOperations();
WireOperations eventOperations();

/// All of the above.
const WireOperations& wireOperations();
