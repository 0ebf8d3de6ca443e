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

/// Keeps every exception inside: the result is 0 then, and `told` hears the reason.
template <typename Body, typename Told>
int contained(Body&& body, Told&& told) noexcept
{
    try {
        return std::forward<Body>(body)() != 0 ? 1 : 0;
    } catch (const std::exception& error) {
        told(error.what());
    } catch (...) {
        told("unknown error");
    }
    return 0;
}

/// The same, and nobody hears why.
template <typename Body>
int contained(Body&& body) noexcept
{
    return contained(std::forward<Body>(body), [](const char*) {});
}

/// What a client says that was made, or copied, without enough memory for it. It sends nothing: it would not know to
/// whom.
constexpr const char* kNotMade = "not enough memory for the client";

}  // namespace wapi

/// The whole of a call, which cancel() and the deadline can end. Keeps every exception inside and turns it into a 0 and
/// a last message.
template <typename Body>
int CWapiClient::guarded(Body&& body) noexcept
{
    const kzn::pvutil::CallScope call(callControl.get(), std::chrono::milliseconds(deadline));
    const auto keep = [this](const char* reason) { keepFailure(reason); };
    if (callControl) return wapi::contained(std::forward<Body>(body), keep);
    keepFailure(wapi::kNotMade);
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
