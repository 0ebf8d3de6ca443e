#include "tests/client/WireOperations.h"

WireOperations spaceOperations()
{
    return {
        {"createSpace",
         [](CWapiClient& client, WireCall& call) {
             auto fields = call.fieldValues("fields");
             return client.createSpace(call.text("cred"), call.text("name"), fields,
                                       call.output<CStringT>("workspaceID"), call.number("type"),
                                       call.number("favourite"));
         }},
    };
}
