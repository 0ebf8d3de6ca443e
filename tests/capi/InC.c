// Hosts in plain C: each function is one, and returns the line of what did not hold, or 0.
#include <string.h>

#include "capi/pvwapi_c.h"
#include "tests/capi/InC.h"

#define HOLDS(condition)                   \
    do {                                   \
        if (!(condition)) return __LINE__; \
    } while (0)

static int isText(pvw_text text, const pvw_char* wanted)
{
    size_t length = 0;
    while (wanted[length] != 0) ++length;
    return text.length == length && memcmp(text.units, wanted, (length + 1) * sizeof *wanted) == 0;
}

int signInInC(const pvw_char* url)
{
    pvw_client* client = NULL;
    HOLDS(pvw_abi_version() == PVW_ABI_VERSION);
    HOLDS(strlen(pvw_version()) >= 5);
    HOLDS(pvw_client_new(pvw_text_at(url), &client) == 1 && client != NULL);

    const pvw_text none = pvw_text_at(NULL);
    HOLDS(pvw_login(client, pvw_text_at(u"anna"), none, none, pvw_text_at(u"p\u00e4ss & word"), 0, 1) == 1);

    pvw_text cred;
    pvw_result* result = NULL;
    HOLDS(pvw_get_root_cred(client, &cred, &result) == 1 && result != NULL);
    HOLDS(isText(cred, u"cr\u00e9d"));
    HOLDS(pvw_logout(client, cred) == 1);
    HOLDS(pvw_result_free(result) == 1);
    HOLDS(pvw_client_free(client) == 1);
    return 0;
}

int listTabsInC(const pvw_char* url)
{
    pvw_client* client = NULL;
    HOLDS(pvw_client_new(pvw_text_at(url), &client) == 1);

    pvw_tab_list tabs;
    pvw_result* result = NULL;
    HOLDS(pvw_get_tabs(client, pvw_text_at(u"cred"), pvw_text_at(u"W1"), &tabs, &result) == 1);
    HOLDS(tabs.count == 2);
    HOLDS(tabs.items[0]->size == sizeof(pvw_tab));
    HOLDS(isText(tabs.items[0]->ID, u"T1") && isText(tabs.items[0]->name, u"Ideen \U0001F600"));
    HOLDS(isText(tabs.items[0]->type, u"1") && tabs.items[0]->position == 4);
    HOLDS(isText(tabs.items[1]->ID, u"T2") && isText(tabs.items[1]->name, u"") && tabs.items[1]->position == 0);
    HOLDS(pvw_result_free(result) == 1);
    HOLDS(pvw_client_free(client) == 1);
    return 0;
}

int orderTabsInC(const pvw_char* url)
{
    pvw_client* client = NULL;
    HOLDS(pvw_client_new(pvw_text_at(url), &client) == 1);

    // A host of a later version, whose records have grown.
    struct {
        pvw_tab tab;
        pvw_text more;
    } tabs[2];
    memset(tabs, 0, sizeof tabs);
    tabs[0].tab.size = tabs[1].tab.size = sizeof tabs[0];
    tabs[0].tab.ID = pvw_text_at(u"T2");
    tabs[0].tab.position = 1;
    tabs[1].tab.ID.units = u"T1 and more";
    tabs[1].tab.ID.length = 2;
    tabs[1].tab.position = 2;
    HOLDS(pvw_edit_tab_order(client, pvw_text_at(u"cred"), pvw_text_at(u"W1"), &tabs[0].tab, 2) == 1);
    HOLDS(pvw_client_free(client) == 1);
    return 0;
}

int failInC(const pvw_char* url)
{
    pvw_client* client = NULL;
    HOLDS(pvw_client_new(pvw_text_at(url), &client) == 1);

    pvw_tab_list tabs = {NULL, 77};
    pvw_result* result = NULL;
    HOLDS(pvw_get_tabs(client, pvw_text_at(u"cred"), pvw_text_at(u"W1"), &tabs, &result) == 0);
    HOLDS(result == NULL && tabs.items == NULL && tabs.count == 77);

    const pvw_message* message = NULL;
    HOLDS(pvw_get_lst_msg(client, &message, &result) == 1);
    HOLDS(message->size == sizeof *message);
    HOLDS(isText(message->reason, u"not allowed") && isText(message->exceptionID, u"E7"));
    HOLDS(message->response.length > 20);

    int error = 77;
    int kind = 77;
    HOLDS(pvw_get_network_error(client, &error) == 1 && error == 0);
    HOLDS(pvw_get_network_error_kind(client, &kind) == 1 && kind == PVW_NETWORK_NONE);
    HOLDS(pvw_result_free(result) == 1);
    HOLDS(pvw_client_free(client) == 1);
    return 0;
}

int meetNobodyInC(const pvw_char* url)
{
    pvw_client* client = NULL;
    HOLDS(pvw_client_new(pvw_text_at(url), &client) == 1);
    HOLDS(pvw_get_session_info(client, pvw_text_at(u"cred")) == 0);

    int error = 0;
    int kind = PVW_NETWORK_NONE;
    pvw_text text;
    pvw_result* result = NULL;
    HOLDS(pvw_get_network_error(client, &error) == 1 && error == 1);
    HOLDS(pvw_get_network_error_kind(client, &kind) == 1 && kind == PVW_NETWORK_REFUSED);
    HOLDS(pvw_get_network_error_text(client, &text, &result) == 1 && text.length > 10);
    HOLDS(pvw_result_free(result) == 1);
    HOLDS(pvw_client_free(client) == 1);
    return 0;
}

int escapeInC(void)
{
    pvw_text xml;
    pvw_result* result = NULL;
    HOLDS(pvw_xml_text(pvw_text_at(u"a & b"), &xml, &result) == 1);
    HOLDS(isText(xml, u"a &amp; b"));
    HOLDS(pvw_result_free(result) == 1);
    HOLDS(pvw_result_free(result) == 0);
    return 0;
}
