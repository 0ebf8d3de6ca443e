// Everything of a client that a call can change, by the names that the wire examples use.
#pragma once

#include <map>
#include <string>

#include "client/WapiClient.h"
#include "tests/support/Text.h"

using ClientState = std::map<std::string, std::string>;

inline ClientState stateOf(CWapiClient& client)
{
    const WAPIMESSAGE last = client.GetLstMsg();
    return {{"rootCred", narrow(client.getRootCred())},
            {"userID", narrow(client.getUserID())},
            {"namespaceID", narrow(client.getNamespaceID())},
            {"refreshInterval", std::to_string(client.getRefreshInterval())},
            {"networkError", std::to_string(client.getNetworkError())},
            {"code", std::to_string(last.code)},
            {"reason", narrow(last.reason)},
            {"exceptionID", narrow(last.exceptionID)},
            {"response", narrow(last.response)}};
}
