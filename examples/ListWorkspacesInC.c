// Signs in and prints the names of the user's workspaces, one a line: what ListWorkspaces.cpp does, in C.
#include <pvwapi_c.h>

#include "examples/TextInC.h"

static int failed(pvw_client* client)
{
    const pvw_message* message = NULL;
    pvw_result* result = NULL;
    if (pvw_get_lst_msg(client, &message, &result)) print(stderr, message->reason);
    pvw_result_free(result);
    return 1;
}

static int listWorkspaces(pvw_client* client, pvw_text cred)
{
    pvw_listed_space_list spaces;
    pvw_space_invite_list invitations;
    pvw_result* result = NULL;
    if (!pvw_get_wksp_list(client, cred, &spaces, &invitations, &result)) return failed(client);

    for (size_t at = 0; at < spaces.count; ++at) {
        print(stdout, spaces.items[at]->workspaceName);
        printf("\n");
    }
    printf("%u workspaces\n", (unsigned)spaces.count);
    pvw_result_free(result);  // the texts and records are gone with it
    return 0;
}

int main(void)
{
    pvw_char url[200];
    pvw_char user[100];
    pvw_char password[100];
    pvw_client* client = NULL;
    if (!pvw_client_new(environment("PVWAPI_BASE_URL", url, 200), &client)) return 1;

    const pvw_text none = pvw_text_at(NULL);
    int status = 0;
    if (pvw_login(client, environment("PVWAPI_USER", user, 100), none, none,
                  environment("PVWAPI_PASSWORD", password, 100), /*useToken=*/0, /*send=*/1)) {
        pvw_text cred;
        pvw_result* result = NULL;
        pvw_get_root_cred(client, &cred, &result);
        status = listWorkspaces(client, cred);
        pvw_logout(client, cred);
        pvw_result_free(result);
    } else {
        status = failed(client);
    }
    pvw_client_free(client);
    return status;
}
