// What the examples are told: PVWAPI_BASE_URL, PVWAPI_USER and PVWAPI_PASSWORD, in ASCII.
#pragma once

#include <cstdlib>
#include <string>

#include "client/WapiClient.h"

inline CStringT fromEnvironment(const char* name)
{
    const char* const value = std::getenv(name);
    return kzn::pvutil::stringex::FromUtf8(value != nullptr ? value : "");
}

/// Signs in with user and password, without a token and with the service's own identity provider.
inline int signIn(CWapiClient& client)
{
    return client.login(fromEnvironment("PVWAPI_USER"), {}, {}, fromEnvironment("PVWAPI_PASSWORD"), 0, 1);
}
