#include "tests/client/WireOperations.h"

WireOperations sessionOperations()
{
    return {
        {"login",
         [](CWapiClient& client, WireCall& call) {
             return client.login(call.text("userName"), call.text("token"), call.text("isp"), call.text("password"),
                                 call.number("useToken"), call.number("send"));
         }},
        {"getCredForExpired",
         [](CWapiClient& client, WireCall& call) {
             return client.getCredForExpired(call.output<CStringT>("newCred"), call.text("userName"),
                                             call.text("token"), call.text("isp"), call.text("password"),
                                             call.number("useToken"));
         }},
        {"logout", [](CWapiClient& client, WireCall& call) { return client.logout(call.text("cred")); }},
        {"getSessionInfo",
         [](CWapiClient& client, WireCall& call) { return client.getSessionInfo(call.text("cred")); }},
        {"cloneSession",
         [](CWapiClient& client, WireCall& call) {
             return client.cloneSession(call.text("cred"), call.text("workspace"), call.output<CStringT>("newCred"));
         }},
    };
}
