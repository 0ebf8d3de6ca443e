// A module that a test loads and unloads, and the library with it: a host's plug-in in small.
#include "client/WapiClient.h"

/// One call at the ASCII address; whether the service took it. The test finds it by its name.
extern "C" int callOnce(const char* address)
{
    CWapiClient client(kzn::pvutil::stringex::FromUtf8(address));
    CStringT cred;
    return client.cloneSession({}, {}, cred);
}
