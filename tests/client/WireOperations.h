// The public operations that wire examples can call, a function a topic.
#pragma once

#include "tests/support/WireCall.h"

WireOperations pipelineOperations();
WireOperations sessionOperations();
WireOperations spaceOperations();
WireOperations accessOperations();

/// All of the above.
const WireOperations& wireOperations();
