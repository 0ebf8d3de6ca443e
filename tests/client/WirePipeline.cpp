#include "tests/client/WireOperations.h"

WireOperations pipelineOperations()
{
    return {
        {"callWapi",
         [](CWapiClient& client, WireCall& call) { return client.callWapi(call.text("cred"), call.text("command")); }},
        {"WapiProxyCall",
         [](CWapiClient& client, WireCall& call) {
             const auto method = static_cast<CWapiClient::METHOD_TYPE>(call.number("method"));
             return client.WapiProxyCall(call.text("cred"), call.text("command"), method, call.text("url"),
                                         call.text("headers"), call.number("withCred"), call.output<CStringT>("reply"));
         }},
    };
}
