// What the client holds; Signing in and out; Commands of the caller's own making. Written by capi/generate.py.
#include "capi/Call.h"

using namespace capi;

int PVW_CALL pvw_get_user_id(pvw_client* client, pvw_text* userID, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(userID);
        return memory.give(into(userID, memory.of(live.getUserID())));
    });
}

int PVW_CALL pvw_get_namespace_id(pvw_client* client, pvw_text* namespaceID, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(namespaceID);
        return memory.give(into(namespaceID, memory.of(live.getNamespaceID())));
    });
}

int PVW_CALL pvw_get_root_cred(pvw_client* client, pvw_text* cred, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(cred);
        return memory.give(into(cred, memory.of(live.getRootCred())));
    });
}

int PVW_CALL pvw_set_root_cred(pvw_client* client, pvw_text cred)
{
    return asked(client, [&](CWapiClient& live) {
        live.setRootCred(textOf(cred));
        return 1;
    });
}

int PVW_CALL pvw_get_lst_msg(pvw_client* client, const pvw_message** message, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(message);
        return memory.give(into(message, memory.of(live.GetLstMsg())));
    });
}

int PVW_CALL pvw_get_network_error(pvw_client* client, int* error)
{
    return asked(client, [&](CWapiClient& live) {
        expectPlaces(error);
        *error = live.getNetworkError();
        return 1;
    });
}

int PVW_CALL pvw_get_network_error_kind(pvw_client* client, int* kind)
{
    return asked(client, [&](CWapiClient& live) {
        expectPlaces(kind);
        *kind = live.getNetworkErrorKind();
        return 1;
    });
}

int PVW_CALL pvw_get_network_error_text(pvw_client* client, pvw_text* text, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(text);
        return memory.give(into(text, memory.of(live.getNetworkErrorText())));
    });
}

int PVW_CALL pvw_get_refresh_interval(pvw_client* client, unsigned int* milliseconds)
{
    return asked(client, [&](CWapiClient& live) {
        expectPlaces(milliseconds);
        *milliseconds = live.getRefreshInterval();
        return 1;
    });
}

int PVW_CALL pvw_get_op_url(pvw_client* client, pvw_text* url, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(url);
        return memory.give(into(url, memory.of(live.getOpURL())));
    });
}

int PVW_CALL pvw_get_null_session_url(pvw_client* client, pvw_text* url, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(url);
        return memory.give(into(url, memory.of(live.getNullSessionURL())));
    });
}

int PVW_CALL pvw_get_upload_url(pvw_client* client, pvw_text* url, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(url);
        return memory.give(into(url, memory.of(live.getUploadURL())));
    });
}

int PVW_CALL pvw_get_dms_url(pvw_client* client, pvw_text* url, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(url);
        return memory.give(into(url, memory.of(live.getDmsURL())));
    });
}

int PVW_CALL pvw_login(pvw_client* client, pvw_text userName, pvw_text token, pvw_text isp, pvw_text password,
                       int useToken, int send)
{
    return asked(client, [&](CWapiClient& live) {
        return live.login(textOf(userName), textOf(token), textOf(isp), textOf(password), useToken, send);
    });
}

int PVW_CALL pvw_get_cred_for_expired(pvw_client* client, pvw_text* newCred, pvw_text userName, pvw_text token,
                                      pvw_text isp, pvw_text password, int useToken, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(newCred);
        CStringT theNewCred;
        if (live.getCredForExpired(theNewCred, textOf(userName), textOf(token), textOf(isp), textOf(password),
                                   useToken) == 0)
            return 0;
        return memory.give(into(newCred, memory.of(theNewCred)));
    });
}

int PVW_CALL pvw_logout(pvw_client* client, pvw_text cred)
{
    return asked(client, [&](CWapiClient& live) { return live.logout(textOf(cred)); });
}

int PVW_CALL pvw_get_session_info(pvw_client* client, pvw_text cred)
{
    return asked(client, [&](CWapiClient& live) { return live.getSessionInfo(textOf(cred)); });
}

int PVW_CALL pvw_clone_session(pvw_client* client, pvw_text cred, pvw_text workspace, pvw_text* newCred,
                               pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(newCred);
        CStringT theNewCred;
        if (live.cloneSession(textOf(cred), textOf(workspace), theNewCred) == 0) return 0;
        return memory.give(into(newCred, memory.of(theNewCred)));
    });
}

int PVW_CALL pvw_call_wapi(pvw_client* client, pvw_text cred, pvw_text command)
{
    return asked(client, [&](CWapiClient& live) { return live.callWapi(textOf(cred), textOf(command)); });
}

int PVW_CALL pvw_wapi_proxy_call(pvw_client* client, pvw_text cred, pvw_text command, int method, pvw_text url,
                                 pvw_text headers, int withCred, pvw_text* reply, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(reply);
        CStringT theReply;
        const int outcome =
            live.WapiProxyCall(textOf(cred), textOf(command), static_cast<CWapiClient::METHOD_TYPE>(method),
                               textOf(url), textOf(headers), withCred, theReply);
        memory.give(into(reply, memory.of(theReply)));
        return outcome;
    });
}
