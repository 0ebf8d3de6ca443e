// A host that gives back what it holds at its exit, when the library's own has been, and leaves some of it alive.
#include <stdio.h>
#include <stdlib.h>

#include "capi/pvwapi_c.h"

static pvw_client* client;
static pvw_result* result;

static void expect(int found, int wanted, const char* what)
{
    if (found == wanted) return;
    fprintf(stderr, "%s: %d\n", what, found);
    fflush(stderr);
    _Exit(1);
}

static void cleanUp(void)
{
    pvw_client* late = NULL;
    expect(pvw_result_free(result), 1, "a result");
    expect(pvw_result_free(result), 0, "a result once more");
    expect(pvw_client_free(client), 1, "a client");
    expect(pvw_client_free(client), 0, "a client once more");
    expect(pvw_client_new(pvw_text_at(u"http://127.0.0.1:1/"), &late), 1, "a late client");
    expect(pvw_client_free(late), 1, "a late client's end");
}

int main(void)
{
    pvw_client* left = NULL;
    pvw_text text;
    expect(atexit(cleanUp), 0, "atexit");  // before the library's own, so that it runs behind that
    expect(pvw_client_new(pvw_text_at(u"http://127.0.0.1:1/"), &client), 1, "the first client");
    expect(pvw_client_copy(client, &left), 1, "one that stays");
    expect(pvw_get_op_url(client, &text, &result), 1, "an address");
    expect(pvw_on_timer(client, 1), 1, "a timer that runs");
    return 0;
}
