// The frame that every operation stands in.
#pragma once

#include <exception>
#include <utility>

#include "client/CommonResponse.h"
#include "client/FormBody.h"
#include "client/Trace.h"
#include "client/WapiClient.h"
#include "pvutil/CallControl.h"

namespace wapi {

/// Keeps every exception inside and says nothing of it but 0.
template <typename Body>
int contained(Body&& body) noexcept
{
    try {
        return std::forward<Body>(body)() != 0 ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

}  // namespace wapi

/// The whole of a call, which cancel() and the deadline can end. Keeps every exception inside and turns it into a 0 and
/// a last message.
template <typename Body>
int CWapiClient::guarded(Body&& body) noexcept
{
    const kzn::pvutil::CallScope call(callControl.get(), std::chrono::milliseconds(deadline));
    try {
        return std::forward<Body>(body)() != 0 ? 1 : 0;
    } catch (const std::exception& error) {
        keepFailure(error.what());
    } catch (...) {
        keepFailure("unknown error");
    }
    return 0;
}

/// Re-arms the timer before anything else where the operation does so, and writes Enter and Leave around it.
template <typename Body>
int CWapiClient::operation(const char* name, Timer timer, Body&& body) noexcept
{
    if (timer == Timer::rearm) rearmTimer();
    const wapi::ScopeTracer scope(name);
    return guarded(std::forward<Body>(body));
}
