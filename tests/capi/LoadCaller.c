// A module in C that a test loads and unloads, and both libraries with it: a host's plug-in in small.
#include "capi/pvwapi_c.h"

/// One call at the ASCII address; whether the service took it. The test finds it by its name.
int callOnce(const char* address)
{
    pvw_char url[200];
    pvw_text at = {url, 0};
    for (; address[at.length] != 0 && at.length < sizeof url / sizeof *url; ++at.length) {
        url[at.length] = (unsigned char)address[at.length];
    }

    pvw_client* client = NULL;
    pvw_result* result = NULL;
    pvw_text cred;
    const pvw_text none = pvw_text_at(NULL);
    if (!pvw_client_new(at, &client)) return 0;
    const int outcome = pvw_clone_session(client, none, none, &cred, &result);
    pvw_result_free(result);
    pvw_client_free(client);
    return outcome;
}
