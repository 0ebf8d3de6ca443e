// The first steps of a host, in C: signs in, lists, renames, stops a call, and learns why another one is refused.
#include <pvwapi_c.h>

#include "examples/TextInC.h"

enum { ADMINISTRATOR = 2 };

/// The credential of the session; it belongs to `result`.
static pvw_text credOf(pvw_client* client, pvw_result** result)
{
    pvw_text cred = {NULL, 0};
    pvw_get_root_cred(client, &cred, result);
    return cred;
}

static int callIt(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text name)
{
    pvw_text xml;
    pvw_result* result = NULL;
    if (!pvw_xml_text(name, &xml, &result)) return 0;  // the name goes into XML as it stands
    const int outcome = pvw_edit_ext_wksp(client, cred, workspaceID, xml, /*changeName=*/1, NULL, 0);
    pvw_result_free(result);
    return outcome;
}

static int PVW_CALL stop(void* client, const pvw_exchange* exchange)
{
    (void)exchange;
    pvw_cancel(client);  // as any other thread may do
    return 1;
}

static void stopACall(pvw_client* client, pvw_text cred)
{
    int kind = PVW_NETWORK_NONE;
    pvw_on_exchange(client, stop, client);
    if (!pvw_get_session_info(client, cred)) pvw_get_network_error_kind(client, &kind);
    pvw_on_exchange(client, NULL, NULL);
    if (kind == PVW_NETWORK_CANCELLED) printf("a call was stopped\n");
}

static void learnWhy(pvw_client* client)
{
    const pvw_message* message = NULL;
    pvw_result* result = NULL;
    if (!pvw_get_lst_msg(client, &message, &result)) return;
    print(stdout, message->reason);
    printf(" (");
    print(stdout, message->exceptionID);
    printf(")\n");
    pvw_result_free(result);
}

static void work(pvw_client* client, pvw_text cred, const pvw_listed_space_list* spaces)
{
    for (size_t at = 0; at < spaces->count; ++at) {
        const pvw_listed_space* space = spaces->items[at];
        print(stdout, space->workspaceName);
        if (space->role != ADMINISTRATOR) {
            printf(" cannot be deleted: ");
            if (!pvw_delete_wksp(client, cred, space->workspaceID)) learnWhy(client);
        } else if (callIt(client, cred, space->workspaceID, pvw_text_at(u"Ideas & plans"))) {
            printf(" was called Ideas & plans for a moment\n");
            callIt(client, cred, space->workspaceID, space->workspaceName);
        }
    }
}

int main(void)
{
    pvw_char url[200];
    pvw_char user[100];
    pvw_char password[100];
    pvw_client* client = NULL;
    const pvw_text none = pvw_text_at(NULL);
    if (!pvw_client_new(environment("PVWAPI_BASE_URL", url, 200), &client) ||
        !pvw_login(client, environment("PVWAPI_USER", user, 100), none, none,
                   environment("PVWAPI_PASSWORD", password, 100), /*useToken=*/0, /*send=*/1)) {
        learnWhy(client);
        pvw_client_free(client);
        return 1;
    }

    pvw_result* session = NULL;
    pvw_result* listing = NULL;
    const pvw_text cred = credOf(client, &session);
    pvw_listed_space_list spaces;
    pvw_space_invite_list invitations;
    if (pvw_get_wksp_list(client, cred, &spaces, &invitations, &listing)) work(client, cred, &spaces);
    stopACall(client, cred);
    pvw_logout(client, cred);
    pvw_result_free(listing);
    pvw_result_free(session);
    pvw_client_free(client);
    return 0;
}
