// Why a request came to nothing, from what the system said about it.
#pragma once

#include "pvutil/win32/HttpCall.h"

namespace kzn::pvutil {

/// Keeps the cause with the exchange; waits a moment for a second opinion where the system's error says too little, and
/// is stopped by the signal then. Always false.
bool failBy(HttpExchange& exchange, const HttpReport& report, const HttpSignal& signal);

}  // namespace kzn::pvutil
