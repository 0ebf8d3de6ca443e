// The frame of every function of the interface: finds the client, keeps every exception inside, and makes the result.
#pragma once

#include <memory>
#include <utility>

#include "capi/Arguments.h"
#include "capi/Handles.h"
#include "capi/Memory.h"

namespace capi {

Handles<pvw_client, CWapiClient>& clients();
Handles<pvw_result, Memory>& results();

template <typename Call>
int contained(Call&& call) noexcept
{
    try {
        return call();
    } catch (...) {
        return 0;
    }
}

/// A call of a client that brings nothing back.
template <typename Call>
int asked(const pvw_client* client, Call&& call) noexcept
{
    return contained([&] {
        const std::shared_ptr<CWapiClient> live = clients().find(client);
        return live ? call(*live) : 0;
    });
}

/// One that fills a result, which the host has a handle of from then on.
template <typename Call>
int brought(pvw_result** result, Call&& call) noexcept
{
    if (result == nullptr) return 0;
    *result = nullptr;
    pvw_result* handle = nullptr;
    std::shared_ptr<Memory> memory;
    const int outcome = contained([&] {
        memory = std::make_shared<Memory>();
        handle = results().add(memory);
        return call(*memory);
    });
    if (memory && *memory) *result = handle;
    else results().take(handle);
    return outcome;
}

/// Both: a call of a client that brings something back.
template <typename Call>
int answered(const pvw_client* client, pvw_result** result, Call&& call) noexcept
{
    return brought(
        result, [&](Memory& memory) { return asked(client, [&](CWapiClient& live) { return call(live, memory); }); });
}

/// An output and what is written there.
template <typename Output>
std::pair<Output*, Output> into(Output* place, Output value)
{
    return {place, value};
}

}  // namespace capi
