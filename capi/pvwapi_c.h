// The client of the workspace service's XML web API for C, and for every language that can call C.
#pragma once

// What is said here of an operation is what client/WapiClient.h, the class beneath, says of it. Written by
// capi/generate.py out of that header, the records and capi/operations.toml.

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#define PVW_CALL __cdecl
#else
#define PVW_CALL
#endif
#if defined(_WIN32) && !defined(PVW_BUILDING)
#define PVW_API __declspec(dllimport)
#elif defined(_WIN32)
#define PVW_API
#else
#define PVW_API __attribute__((visibility("default")))
#endif

/// Grows where functions or members are added; whatever was there before stays as it was.
#define PVW_ABI_VERSION 1

#ifdef __cplusplus
extern "C" {
typedef char16_t pvw_char;
#else
/// One unit of UTF-16; u"..." is text of it.
typedef uint_least16_t pvw_char;
#endif

// Every function returns 1 on success and 0 on failure, but for the few that say what else. Those of a client block
// until the reply is read; pvw_get_lst_msg then says why it was a 0. Outputs are written on success only, unless a
// function says otherwise.
//
// What comes back belongs to a result: the last parameter receives its handle, and pvw_result_free gives back texts,
// records and lists together. On failure the handle is null. A null pointer where something is needed, a handle that is
// not or no longer alive, and a record of no known size are answered with 0, and nothing is sent.
//
// Thread: a client belongs to the thread that made it, and so do its calls; two calls at once on one client are not
// allowed. pvw_cancel may be called from any thread, and results may be freed by any. Every client is freed before the
// library is unloaded.
//
// Texts go out as UTF-8, percent-encoded, so that the service receives any text whole, unless an operation names one of
// these:
//   in XML    The text is part of the request's XML as it stands, percent-encoded with it: pvw_xml_text makes any text
//             safe there.
//   in CDATA  The same, but in a CDATA section, where nothing but "]]>" has a meaning: it ends the section early.
//   raw       The text is part of the form or of the address as it stands: it comes percent-encoded from the host, or
//             has nothing in it that needs it.

/// A text. What comes back has a zero behind its last unit too. A text of no length may have no units.
typedef struct pvw_text {
    const pvw_char* units;
    size_t length;
} pvw_text;

/// The length of a text that goes in and ends with a zero.
#define PVW_ZERO_TERMINATED SIZE_MAX

/// The text at `units` that ends with a zero; the empty one for a null pointer.
static inline pvw_text pvw_text_at(const pvw_char* units)
{
    pvw_text text;
    text.units = units;
    text.length = units ? PVW_ZERO_TERMINATED : 0;
    return text;
}

/// One user's connection to the service.
typedef struct pvw_client pvw_client;

/// What a call has brought back.
typedef struct pvw_result pvw_result;

// ---- Constants ------------------------------------------------------------------------------------------------------

enum {
    PVW_NETWORK_NONE = 0,
    PVW_NETWORK_BAD_ADDRESS = 1,  ///< no URL, or neither http nor https
    PVW_NETWORK_NO_SUCH_HOST = 2,
    PVW_NETWORK_REFUSED = 3,
    PVW_NETWORK_UNREACHABLE = 4,
    PVW_NETWORK_CONNECT_TIMEOUT = 5,
    PVW_NETWORK_PROXY = 6,           ///< the proxy is not there, or refused
    PVW_NETWORK_TLS_UNTRUSTED = 7,   ///< unknown or self-signed authority
    PVW_NETWORK_TLS_WRONG_NAME = 8,  ///< the certificate is another host's
    PVW_NETWORK_TLS_EXPIRED = 9,     ///< or not yet valid
    PVW_NETWORK_TLS_FAILED = 10,     ///< no common version, broken handshake
    PVW_NETWORK_CLOSED = 11,         ///< the connection ended before the first byte of a reply
    PVW_NETWORK_CUT_OFF = 12,        ///< it ended inside the reply
    PVW_NETWORK_NOT_HTTP = 13,       ///< what came is no reply
    PVW_NETWORK_TOO_LARGE = 14,
    PVW_NETWORK_SILENCE = 15,  ///< 60 s without a byte
    PVW_NETWORK_DEADLINE = 16,
    PVW_NETWORK_CANCELLED = 17,  ///< by pvw_cancel, or by a listener that returned 0
    PVW_NETWORK_LOCAL = 18       ///< memory, descriptors
};

enum { PVW_METHOD_GET = 0, PVW_METHOD_POST = 1 };

/// What a member of a workspace is, and what an invitee is to become.
enum { PVW_INVITEAS_MEMBER = 1, PVW_INVITEAS_ADMIN = 2 };

enum {
    PVW_START_MEETING = 0,
    PVW_START_VOICE = 1,
    PVW_START_TELEPHONY = 2,
    PVW_END_MEETING = 3,
    PVW_END_VOICE = 4,
    PVW_END_TELEPHONY = 5
};

// ---- Records --------------------------------------------------------------------------------------------------------

// Each record begins with its size, as the side knows it that filled it: new members go to the end. A list that comes
// back is one of pointers, so that a host finds its way in records that have grown; one that goes in is an array whose
// items all have the size that the first one says.

typedef struct pvw_message {
    size_t size;
    int code;
    pvw_text reason;       ///< the service's reason, or the library's own text
    pvw_text exceptionID;  ///< the service's exception identifier
    pvw_text response;     ///< the whole reply of the failed request
    int reserved;
} pvw_message;

/// One attribute of a workspace. Field 0 is the description, which stands in CDATA; entries with any other field are
/// skipped.
typedef struct pvw_workspace_field {
    size_t size;
    int field;
    pvw_text value;
} pvw_workspace_field;

/// One extension field of a user: 0 the host name, 1 the web-site URL, 2 the client's build, 3 its version; any other
/// is skipped. The value stands in XML.
typedef struct pvw_user_field {
    size_t size;
    int type;
    pvw_text value;
} pvw_user_field;

typedef struct pvw_tab {
    size_t size;
    pvw_text ID;
    pvw_text name;
    pvw_text type;  ///< The service's tab type, a number as text: 0 plain, 1 discussion, 2 files.
    int position;   ///< The tab's place in the order of tabs.
} pvw_tab;

typedef struct pvw_tab_list {
    const pvw_tab* const* items;
    size_t count;
} pvw_tab_list;

typedef struct pvw_member {
    size_t size;
    pvw_text userID;
    pvw_text userName;
    pvw_text status;  ///< always "accepted" for a member read from a workspace
    int reserved;
    pvw_text email;
    int role;  ///< 1 member, 2 administrator; 0 while unknown
} pvw_member;

typedef struct pvw_member_list {
    const pvw_member* const* items;
    size_t count;
} pvw_member_list;

/// One line of the list of the user's workspaces.
typedef struct pvw_listed_space {
    size_t size;
    pvw_text workspaceID;
    pvw_text workspaceName;
    pvw_text status;  ///< always "accepted": the user is a member of what is listed
    pvw_text userID;  ///< the owner's
    pvw_text userName;
    pvw_text type;
    pvw_text isTemplate;  ///< "true" or "false", as the service sent it
    pvw_text namespaceID;
    pvw_text description;
    pvw_text spaceIconURL;
    int role;  ///< 1 member, 2 administrator; 0 while unknown
} pvw_listed_space;

typedef struct pvw_listed_space_list {
    const pvw_listed_space* const* items;
    size_t count;
} pvw_listed_space_list;

/// An invitation to a workspace.
typedef struct pvw_space_invite {
    size_t size;
    pvw_text spaceInviteID;
    pvw_text expires;
    pvw_text lastModifiedTime;
    pvw_text status;
    pvw_text workspaceID;
    pvw_text createTime;
    pvw_text statusChanged;
    pvw_text userDescriptor;  ///< the invitee: a user ID, a user name or an e-mail address
    pvw_text userName;
    pvw_text workspaceName;
    pvw_text ownerID;
    pvw_text ownerName;
    int inviteType;
    int inviteAsType;  ///< a WAPI_INVITEAS_TYPE
} pvw_space_invite;

typedef struct pvw_space_invite_list {
    const pvw_space_invite* const* items;
    size_t count;
} pvw_space_invite_list;

typedef struct pvw_space {
    size_t size;
    pvw_text workspaceID;
    pvw_text workspaceName;
    pvw_text type;
    pvw_text isTemplate;
    pvw_text userID;  ///< the owner's
    pvw_text userName;
    pvw_text namespaceID;
    pvw_text namespaceName;
    pvw_text createTime;
    pvw_text lastModifiedTime;
    pvw_text groupName;
    pvw_text groupID;
    pvw_text descriptionText;
    pvw_text descriptionIcon;
    pvw_text discussionTab;
    pvw_text filesTab;
    pvw_text spaceIconURL;
    pvw_member_list members;
    pvw_tab_list tabs;
    int kind;  ///< the type in the low bits, 16 for a template; 0 while unknown
} pvw_space;

typedef struct pvw_space_list {
    const pvw_space* const* items;
    size_t count;
} pvw_space_list;

typedef struct pvw_space_access {
    size_t size;
    pvw_text setWorkspaceAccess;
    pvw_text deleteWorkspaceAccess;
    pvw_text bulkSpaceInviteAccess;
    pvw_text createChatRoomAccess;
    pvw_text joinSpaceAccess;
    pvw_text createDocAccess;
    pvw_text setWorkspaceReason;
    pvw_text deleteWorkspaceReason;
    pvw_text bulkSpaceInviteReason;
    pvw_text createChatRoomReason;
    pvw_text joinSpaceReason;
    pvw_text createDocReason;
} pvw_space_access;

typedef struct pvw_doc_access {
    size_t size;
    pvw_text setDocAccess;
    pvw_text deleteDocAccess;
    pvw_text setDocReason;
    pvw_text deleteDocReason;
} pvw_doc_access;

typedef struct pvw_room_access {
    size_t size;
    pvw_text setChatRoomAccess;
    pvw_text deleteChatRoomAccess;
    pvw_text createChatEntryAccess;
    pvw_text setChatRoomReason;
    pvw_text deleteChatRoomReason;
    pvw_text createChatEntryReason;
} pvw_room_access;

/// One answered question: may the user `cmd` ("get" or "set") the workspace `id`?
typedef struct pvw_role_item {
    size_t size;
    pvw_text cmd;
    pvw_text id;
    pvw_text access;
} pvw_role_item;

typedef struct pvw_role_item_list {
    const pvw_role_item* const* items;
    size_t count;
} pvw_role_item_list;

/// One invitation to send; the last five are the reply's own.
typedef struct pvw_invitation {
    size_t size;
    pvw_text workspaceID;
    pvw_text user;          ///< a user ID or an e-mail address
    pvw_text inviteMethod;  ///< "EMAIL" for one that carries a personal message
    pvw_text status;
    pvw_text isproviderID;  ///< the invitee's instant-messaging provider
    int inviteAs;
    pvw_text userID;
    pvw_text userName;
    pvw_text inviteType;
    pvw_text emailSent;
    pvw_text email;
} pvw_invitation;

typedef struct pvw_invitation_list {
    const pvw_invitation* const* items;
    size_t count;
} pvw_invitation_list;

/// An identity provider of the user.
typedef struct pvw_is_provider {
    size_t size;
    pvw_text ISProviderID;
    pvw_text ISProviderName;
    pvw_text userName;  ///< the user's name there
    pvw_text namespaceID;
} pvw_is_provider;

typedef struct pvw_is_provider_list {
    const pvw_is_provider* const* items;
    size_t count;
} pvw_is_provider_list;

typedef struct pvw_user_config_info {
    size_t size;
    pvw_text userID;
    pvw_text userName;
    pvw_text email;
    pvw_text firstName;
    pvw_text lastName;
    pvw_text namespaceID;
    pvw_text ISProviderID;  ///< of the last provider
    pvw_text QueltID;       ///< the audio/video account, with the password as the service returns it
    pvw_text Password;
    pvw_text QueltAVToken;
    pvw_text QueltDesktopShareURL;
    pvw_text QueltAudioOrVisualURL;
    pvw_text hostName;
    pvw_text websiteURL;
    pvw_is_provider_list ISProviders;
} pvw_user_config_info;

typedef struct pvw_user_profile {
    size_t size;
    pvw_text userID;
    pvw_text firstName;
    pvw_text lastName;
    pvw_text middleName;
} pvw_user_profile;

typedef struct pvw_user_profile_list {
    const pvw_user_profile* const* items;
    size_t count;
} pvw_user_profile_list;

/// 1 where a feature is allowed, 0 elsewhere.
typedef struct pvw_policy {
    size_t size;
    int AutomaticUpdates;
    int PremiumServices;
    int SecureCollaboration;
    int IMInt;
    int IMExt;
    int DisableIMCatchInt;
    int DisableIMCatchExt;
    int LocalArchive;
    int VoIPInt;
    int VoIPExt;
    int VideoInt;
    int VideoExt;
    int DesktopShareInt;
    int DesktopShareExt;
    int RemoteControlInt;
    int RemoteControlExt;
    int FileTransferInt;
    int FileTransferExt;
    int FileXferVirusScan;
    int HasSpaces;
    int CreateWorkspace;
} pvw_policy;

typedef struct pvw_template_item {
    size_t size;
    pvw_text name;
    pvw_text ID;
    pvw_text description;
    int type;
} pvw_template_item;

typedef struct pvw_template_item_list {
    const pvw_template_item* const* items;
    size_t count;
} pvw_template_item_list;

typedef struct pvw_library {
    size_t size;
    pvw_text name;
    pvw_text ID;
    int type;  ///< 1, 2 or 3; 0 for any other
    pvw_template_item_list templates;
} pvw_library;

typedef struct pvw_library_list {
    const pvw_library* const* items;
    size_t count;
} pvw_library_list;

typedef struct pvw_library_app {
    size_t size;
    pvw_text name;
    pvw_text ID;
    pvw_text currentDir;
    pvw_text status;
    pvw_text package;
    pvw_text appType;  ///< this and the identity are told of top-level applications only
    pvw_text identityDescription;
    pvw_text identityName;
    int topLevel;
} pvw_library_app;

typedef struct pvw_library_app_list {
    const pvw_library_app* const* items;
    size_t count;
} pvw_library_app_list;

typedef struct pvw_app_library {
    size_t size;
    pvw_text name;
    pvw_text ID;
    pvw_text type;
    pvw_library_app_list apps;
} pvw_app_library;

typedef struct pvw_app_library_list {
    const pvw_app_library* const* items;
    size_t count;
} pvw_app_library_list;

typedef struct pvw_space_count_item {
    size_t size;
    pvw_text workspaceID;
    int count;  ///< read back: the notification count, or the activity value
    int activeMembersCount;
    int unreadMessageCount;
} pvw_space_count_item;

typedef struct pvw_space_count_item_list {
    const pvw_space_count_item* const* items;
    size_t count;
} pvw_space_count_item_list;

// ---- The library ----------------------------------------------------------------------------------------------------

/// PVW_ABI_VERSION of the binary.
PVW_API unsigned int PVW_CALL pvw_abi_version(void);

/// The version of the binary, such as "1.0.0".
PVW_API const char* PVW_CALL pvw_version(void);

/// What the process's log takes from now on: 0 or less nothing, 1 errors, 2 warnings too, 3 information too, 4 or more
/// everything, as at first.
PVW_API int PVW_CALL pvw_set_log(int maximumLevel);

/// The text as an XML document can carry it: "&", "<" and ">" become references, and what XML has no place for is
/// dropped.
PVW_API int PVW_CALL pvw_xml_text(pvw_text text, pvw_text* xml, pvw_result** result);

/// Gives back everything that a call has brought.
PVW_API int PVW_CALL pvw_result_free(pvw_result* result);

/// A descriptor that becomes readable when a tick of the calling thread is due, to be watched with poll or epoll, never
/// read or closed. -1 on Windows, where the thread's message queue serves.
PVW_API int PVW_CALL pvw_message_loop_fd(void);

/// Delivers what is due on the calling thread, without waiting, and returns how many ticks (on Windows: messages) that
/// were.
PVW_API int PVW_CALL pvw_dispatch_pending_messages(void);

// ---- Life -----------------------------------------------------------------------------------------------------------

/// `baseURL` is the operation endpoint, such as "http://host/kznconnect/op.do"; the other endpoints follow from it.
/// Empty selects the stand-in service's own address. Nothing is sent, and no timer runs yet.
PVW_API int PVW_CALL pvw_client_new(pvw_text baseURL, pvw_client** client);

/// A further client that shares the timer and the sign-in handler, and holds everything else for itself. They may be
/// freed in any order, and the ticks go to the oldest that is left.
PVW_API int PVW_CALL pvw_client_copy(pvw_client* client, pvw_client** copy);

PVW_API int PVW_CALL pvw_client_free(pvw_client* client);

// ---- Control --------------------------------------------------------------------------------------------------------

/// Ends the call that is running, wherever it is until its reply has been read whole: it fails as
/// PVW_NETWORK_CANCELLED, its outputs stay as they are, and the client is good for the next one. Without a running call
/// nothing happens. From any thread.
PVW_API int PVW_CALL pvw_cancel(pvw_client* client);

/// How long each call from now on may take as a whole, redirects and repeats included; one that takes longer fails as
/// PVW_NETWORK_DEADLINE. 0, the default, is no such limit.
PVW_API int PVW_CALL pvw_set_deadline(pvw_client* client, unsigned int milliseconds);

/// Told after each refresh by the timer, on the loop's thread, with its result: after a 0 pvw_get_lst_msg says why. It
/// may do anything: sign in again, replace or clear itself, even free the client. A copy of the client has it too. A
/// null pointer clears it.
typedef void(PVW_CALL* pvw_refresh_listener)(void* context, int result);
PVW_API int PVW_CALL pvw_on_refresh(pvw_client* client, pvw_refresh_listener listener, void* context);

/// Told of the bytes done and the whole (0 while unknown) as a picture goes up or comes down. 0 ends the transfer,
/// which then fails like one whose connection broke. A copy of the client has it too. A null pointer clears it.
typedef int(PVW_CALL* pvw_transfer_progress)(void* context, size_t done, size_t whole);
PVW_API int PVW_CALL pvw_on_transfer_progress(pvw_client* client, pvw_transfer_progress progress, void* context);

/// Bytes, without a zero behind them.
typedef struct pvw_bytes {
    const char* bytes;
    size_t length;
} pvw_bytes;

/// One exchange as it goes over the wire. What it points at lasts as long as the listener's call.
typedef struct pvw_exchange {
    size_t size;
    int method;                ///< PVW_METHOD_GET or PVW_METHOD_POST
    pvw_bytes url;             ///< where it goes, each redirect by itself
    const pvw_bytes* headers;  ///< "Name: value" each; the system adds host and length
    size_t headerCount;
    const pvw_bytes* body;  ///< of a post, one piece behind the other
    size_t bodyCount;
    int status;                 ///< 0 before it begins, -1 where no whole reply came
    pvw_bytes reply;            ///< the reply's body as it came
    unsigned int milliseconds;  ///< how long it took
} pvw_exchange;

/// Told of each exchange before it begins and when it is over, on the thread of the call. 0 before it begins sends
/// nothing, and the call fails as one that was cancelled. It must not call the client but for pvw_cancel; a copy of the
/// client has it too. A null pointer clears it.
typedef int(PVW_CALL* pvw_exchange_listener)(void* context, const pvw_exchange* exchange);
PVW_API int PVW_CALL pvw_on_exchange(pvw_client* client, pvw_exchange_listener listener, void* context);

/// The refresh tick: reads the session with the root credential and re-arms the timer. Called by the timer itself.
PVW_API int PVW_CALL pvw_on_timer(pvw_client* client, unsigned int timerID);

// ---- What the client holds ------------------------------------------------------------------------------------------

/// The signed-in user's ID, empty until the user's configuration has been read.
PVW_API int PVW_CALL pvw_get_user_id(pvw_client* client, pvw_text* userID, pvw_result** result);

/// The same for the namespace's ID.
PVW_API int PVW_CALL pvw_get_namespace_id(pvw_client* client, pvw_text* namespaceID, pvw_result** result);

/// The session credential that login obtained and that the timer refreshes.
PVW_API int PVW_CALL pvw_get_root_cred(pvw_client* client, pvw_text* cred, pvw_result** result);

/// Replaces it.
PVW_API int PVW_CALL pvw_set_root_cred(pvw_client* client, pvw_text cred);

/// Why the last request failed; cleared by one that succeeds.
PVW_API int PVW_CALL pvw_get_lst_msg(pvw_client* client, const pvw_message** message, pvw_result** result);

/// `error` becomes 1 when the last request got no whole reply: no server was reached, the connection broke, or the host
/// stopped the transfer itself. 0 when it got any reply.
PVW_API int PVW_CALL pvw_get_network_error(pvw_client* client, int* error);

/// The cause of it, one of PVW_NETWORK_...: PVW_NETWORK_NONE where the last request got a reply, and whenever there is
/// no network error, but for pvw_wapi_proxy_call, which leaves that alone and still says here what it met. pvw_logout
/// touches neither.
PVW_API int PVW_CALL pvw_get_network_error_kind(pvw_client* client, int* kind);

/// The same in the system's own words, with the host and port that were meant; empty for PVW_NETWORK_NONE.
PVW_API int PVW_CALL pvw_get_network_error_text(pvw_client* client, pvw_text* text, pvw_result** result);

/// The period of the timer: one hour until pvw_get_session_info has read half the session's duration.
PVW_API int PVW_CALL pvw_get_refresh_interval(pvw_client* client, unsigned int* milliseconds);

/// The endpoint of operations.
PVW_API int PVW_CALL pvw_get_op_url(pvw_client* client, pvw_text* url, pvw_result** result);

/// That of calls without a session.
PVW_API int PVW_CALL pvw_get_null_session_url(pvw_client* client, pvw_text* url, pvw_result** result);

/// That of uploads.
PVW_API int PVW_CALL pvw_get_upload_url(pvw_client* client, pvw_text* url, pvw_result** result);

/// That of documents.
PVW_API int PVW_CALL pvw_get_dms_url(pvw_client* client, pvw_text* url, pvw_result** result);

// ---- Signing in and out ---------------------------------------------------------------------------------------------

/// Sends cmd=login with the token where `useToken` is not 0, with the password otherwise. On success the root
/// credential is replaced and the timer starts; on failure both stay. With `send` 0 nothing is sent and 0 returned.
PVW_API int PVW_CALL pvw_login(pvw_client* client, pvw_text userName, pvw_text token, pvw_text isp, pvw_text password,
                               int useToken, int send);

/// The same request for a session that has expired: the credential goes to `newCred`, and neither the client's own nor
/// its timer is touched.
PVW_API int PVW_CALL pvw_get_cred_for_expired(pvw_client* client, pvw_text* newCred, pvw_text userName, pvw_text token,
                                              pvw_text isp, pvw_text password, int useToken, pvw_result** result);

/// Sends cmd=logout. Always 1, whatever comes of it; the credential, the timer and the last message stay.
PVW_API int PVW_CALL pvw_logout(pvw_client* client, pvw_text cred);

/// Sends cmd=get for sessionInfo, which also keeps the session alive. On success the refresh interval becomes half the
/// session's duration, or one hour where the reply names none. The timer is not re-armed.
PVW_API int PVW_CALL pvw_get_session_info(pvw_client* client, pvw_text cred);

/// Sends cmd=cloneSession: a further credential of the session, for one workspace unless `workspace` is empty. Re-arms
/// the timer.
PVW_API int PVW_CALL pvw_clone_session(pvw_client* client, pvw_text cred, pvw_text workspace, pvw_text* newCred,
                                       pvw_result** result);

// ---- Commands of the caller's own making ----------------------------------------------------------------------------

/// Sends `command`, raw, with the credential behind it. 1 where the reply's result is SUCCESS. The timer is not
/// re-armed.
PVW_API int PVW_CALL pvw_call_wapi(pvw_client* client, pvw_text cred, pvw_text command);

/// Sends `command` to `url` with the header lines of `headers`: as a form by PVW_METHOD_POST, joined to the URL behind
/// "?" otherwise; where `withCred` is not 0 the credential follows it and the reply's result decides, else the result
/// is 0. `reply` receives whatever came back also where the result is 0, and nothing without a connection. A command
/// that contains "cmd=login" is not sent. The last message and the timer are left alone. Raw: command, address and
/// header lines; where the command is joined to the URL, a "#" in it is encoded and that of the URL is cut off.
PVW_API int PVW_CALL pvw_wapi_proxy_call(pvw_client* client, pvw_text cred, pvw_text command, int method, pvw_text url,
                                         pvw_text headers, int withCred, pvw_text* reply, pvw_result** result);

// ---- Workspaces -----------------------------------------------------------------------------------------------------

/// Sends cmd=execute, task=AddTabs: a new workspace with its first tabs; a discussion room too where `type` is 0.
/// `workspaceID` receives its ID. An empty name is refused without a request, with a last message. Re-arms the timer.
/// In XML: the name.
PVW_API int PVW_CALL pvw_create_space(pvw_client* client, pvw_text cred, pvw_text name,
                                      const pvw_workspace_field* fields, size_t fieldCount, pvw_text* workspaceID,
                                      int type, int favourite, pvw_result** result);

/// Sends cmd=execute, task=CloneWorkspace: a new workspace, or a template, with the tabs of another one. The low four
/// bits of `typeAndFlags` are the type, bit 4 makes a template; a discussion room is made where the whole is 0.
/// `workspaceID` receives its ID. An empty name is refused without a request or a message. Re-arms the timer. In XML:
/// the name; raw, and in XML: the ID of the source.
PVW_API int PVW_CALL pvw_clone_wksp(pvw_client* client, pvw_text cred, pvw_text name, pvw_text sourceWorkspaceID,
                                    int typeAndFlags, const pvw_workspace_field* fields, size_t fieldCount,
                                    pvw_text* workspaceID, int favourite, pvw_result** result);

/// Sends cmd=set, type=workspace: the description, and the name where `changeName` is not 0. Refused without a request:
/// an empty ID, and no name to change with no fields at all. Re-arms the timer. In XML: the name.
PVW_API int PVW_CALL pvw_edit_ext_wksp(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text name,
                                       int changeName, const pvw_workspace_field* fields, size_t fieldCount);

/// Sends cmd=execute, task=DeleteWorkspace. An empty ID is refused without a request. Re-arms the timer. In XML: the
/// ID.
PVW_API int PVW_CALL pvw_delete_wksp(pvw_client* client, pvw_text cred, pvw_text workspaceID);

/// Sends cmd=execute, task=LeaveSpace: the user leaves the workspace. An empty credential or ID is refused without a
/// request. Re-arms the timer. In XML: the ID.
PVW_API int PVW_CALL pvw_leave_workspace(pvw_client* client, pvw_text cred, pvw_text workspaceID);

/// Sends cmd=execute, task=CreateWorkspaceUsingApp: a new workspace made from an application, or blank where `appName`
/// is exactly "Blank". `workspaceID` receives its ID. Nothing is refused. Re-arms the timer. In XML: both names; in
/// CDATA: the description.
PVW_API int PVW_CALL pvw_create_space_using_app(pvw_client* client, pvw_text cred, pvw_text name, pvw_text appName,
                                                pvw_text* workspaceID, pvw_text description, int favourite, int type,
                                                pvw_result** result);

/// Sends cmd=execute, task=SaveWorkspaceAsApp: the workspace becomes an application of the library `groupID`.
/// `widgetID` receives the application's ID. Nothing is refused. Re-arms the timer. In XML: both IDs and the name; in
/// CDATA: the description.
PVW_API int PVW_CALL pvw_save_workspace_as_app(pvw_client* client, pvw_text cred, pvw_text workspaceID,
                                               pvw_text appName, pvw_text groupID, pvw_text* widgetID,
                                               pvw_text description, pvw_result** result);

// ---- Tabs -----------------------------------------------------------------------------------------------------------

/// Sends cmd=execute, task=AddTabs: a new plain tab; `tabID` receives its ID. An empty workspace ID or name is refused
/// without a request. The timer is not re-armed. In XML: the workspace's ID; in CDATA: the name.
PVW_API int PVW_CALL pvw_create_tab(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text tabName,
                                    int tabOrder, pvw_text* tabID, pvw_result** result);

/// Sends cmd=get, type=workspace for the tabs. Re-arms the timer.
PVW_API int PVW_CALL pvw_get_tabs(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_tab_list* tabs,
                                  pvw_result** result);

/// Sends cmd=delete, type=tab. An empty ID, and the fixed tabs "commTab" and "docTab", are refused without a request.
/// The timer is not re-armed. The workspace's ID is not sent.
PVW_API int PVW_CALL pvw_delete_tab(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text tabID);

/// Sends cmd=set, type=tab: the tab of that ID takes the name of `tab`. An empty tab or workspace ID is refused without
/// a request. The timer is not re-armed. In CDATA: the name. The workspace's ID is not sent.
PVW_API int PVW_CALL pvw_edit_tab(pvw_client* client, pvw_text cred, pvw_text workspaceID, const pvw_tab* tab);

/// Sends cmd=set, type=wksp: each tab takes its place. An empty list is refused without a request. The timer is not
/// re-armed. In XML: the IDs of the tabs.
PVW_API int PVW_CALL pvw_edit_tab_order(pvw_client* client, pvw_text cred, pvw_text workspaceID, const pvw_tab* tabs,
                                        size_t tabCount);

// ---- Icons ----------------------------------------------------------------------------------------------------------

/// Posts the picture to the upload endpoint, task=ManageSpaceIcon; `url` receives the address it is kept under. A
/// picture that cannot be read or is larger than 64 MiB is refused without a request, with a last message. Re-arms the
/// timer. Credential, path and ID go into a multipart form, where nothing is encoded; the ID stands in XML, and a
/// quotation mark in the path would end the file's name.
PVW_API int PVW_CALL pvw_set_space_icon(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text filePath,
                                        pvw_text* url, pvw_result** result);

/// Fetches the picture into a file of the temporary folder, named after the last component of its address; `localPath`
/// receives the file's path. Any status but 200, and a file that cannot be written, is a failure. The timer is not
/// re-armed. Raw: the address and the credential, which is put behind "?cred=".
PVW_API int PVW_CALL pvw_get_space_icon(pvw_client* client, pvw_text cred, pvw_text iconURL, pvw_text* localPath,
                                        pvw_result** result);

// ---- Listings -------------------------------------------------------------------------------------------------------

/// Sends cmd=execute, task=RunScript: the user's workspaces with the user's role in each, and the invitations addressed
/// to the user. Re-arms the timer.
PVW_API int PVW_CALL pvw_get_wksp_list(pvw_client* client, pvw_text cred, pvw_listed_space_list* spaces,
                                       pvw_space_invite_list* invitations, pvw_result** result);

/// Sends cmd=execute, task=RunScript: one workspace, its invitations and the user's rights on it. Its kind is 0 where
/// the type is none that hosts know. Re-arms the timer. In XML: the ID.
PVW_API int PVW_CALL pvw_get_space_batch(pvw_client* client, pvw_text cred, pvw_text workspaceID,
                                         const pvw_space** space, pvw_space_invite_list* invitations,
                                         const pvw_space_access** access, pvw_result** result);

/// Does nothing and returns 1.
PVW_API int PVW_CALL pvw_get_spaces_test(pvw_client* client);

// ---- Rights ---------------------------------------------------------------------------------------------------------

/// Sends cmd=execute, task=ProbeAccess for a workspace: bits 0x01 and 0x02 of `tests` ask for changing and deleting it,
/// 0x20 for joining. `access` has the texts as received. Re-arms the timer. In XML: the ID.
PVW_API int PVW_CALL pvw_probe_space_access(pvw_client* client, pvw_text cred, pvw_text workspaceID,
                                            const pvw_space_access** access, unsigned int tests, pvw_result** result);

/// The same for the rights of no workspace: inviting in bulk, making discussion rooms and documents. The timer is not
/// re-armed.
PVW_API int PVW_CALL pvw_probe_space_access2(pvw_client* client, pvw_text cred, const pvw_space_access** access,
                                             pvw_result** result);

/// The same for a document. Re-arms the timer. In XML: the ID.
PVW_API int PVW_CALL pvw_probe_doc_access(pvw_client* client, pvw_text cred, pvw_text docID,
                                          const pvw_doc_access** access, pvw_result** result);

/// The same for a discussion room. The timer is not re-armed. In XML: the ID.
PVW_API int PVW_CALL pvw_probe_chat_room_access(pvw_client* client, pvw_text cred, pvw_text roomID,
                                                const pvw_room_access** access, pvw_result** result);

/// Sends cmd=execute, task=ProbeAccess: may the user get and set each workspace? `roles` has the answers, one for each
/// question. Re-arms the timer. In XML: the IDs.
PVW_API int PVW_CALL pvw_get_role(pvw_client* client, pvw_text cred, const pvw_text* workspaceIDs,
                                  size_t workspaceIDCount, pvw_role_item_list* roles, pvw_result** result);

/// Sends cmd=execute, task=RunScript: the same for every workspace that the user shares with another. Re-arms the
/// timer. In XML: the other user's ID.
PVW_API int PVW_CALL pvw_probe_access_all_space(pvw_client* client, pvw_text cred, pvw_text otherUserID,
                                                pvw_role_item_list* roles, pvw_result** result);

// ---- Members and invitations ----------------------------------------------------------------------------------------

/// Sends cmd=get, type=workspace for the members. Re-arms the timer.
PVW_API int PVW_CALL pvw_get_members(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_member_list* members,
                                     pvw_result** result);

/// Sends cmd=remove, type=workspace for one member. Re-arms the timer. The member's ID stands between apostrophes in a
/// path, where an apostrophe would end it.
PVW_API int PVW_CALL pvw_remove_space_member(pvw_client* client, pvw_text cred, pvw_text workspaceID,
                                             pvw_text memberID);

/// Sends cmd=execute, task=ChangeRole: administrator for PVW_INVITEAS_ADMIN, member for anything else. The timer is not
/// re-armed. In XML: both IDs.
PVW_API int PVW_CALL pvw_change_member_role(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text memberID,
                                            int role);

/// Sends cmd=execute, task=BulkSpaceInvite. The message goes along with each invitation of method "EMAIL". What comes
/// back are the invitations with each result in the first one of its workspace and invitee that has none yet; a result
/// without a status leaves that of the invitation. The timer is not re-armed. In CDATA: the message and each invitee;
/// in XML: the other texts of the invitations.
PVW_API int PVW_CALL pvw_invite_members(pvw_client* client, pvw_text cred, const pvw_invitation* invitations,
                                        size_t invitationCount, pvw_invitation_list* invitationsBack, pvw_text message,
                                        pvw_result** result);

/// Sends cmd=delete, type=spaceInvite: withdraws the invitation of one invitee to one workspace. Re-arms the timer. In
/// XML: the ID; in CDATA: the invitee.
PVW_API int PVW_CALL pvw_del_invt(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text userDescriptor);

/// Sends cmd=execute, task=JoinSpace: takes the invitation where `accept` is not 0, refuses it otherwise. Re-arms the
/// timer. In XML: the ID.
PVW_API int PVW_CALL pvw_response_invitation(pvw_client* client, pvw_text cred, pvw_text workspaceID, int accept);

// ---- Favourites -----------------------------------------------------------------------------------------------------

/// Sends cmd=execute, task=RunScript: the workspaces that are favourites under that name, with their members. One whose
/// workspace is gone is left out. Re-arms the timer. In XML: the name.
PVW_API int PVW_CALL pvw_get_favorite_space_list(pvw_client* client, pvw_text cred, pvw_text thingName,
                                                 pvw_space_list* spaces, pvw_result** result);

/// Sends cmd=create, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID.
PVW_API int PVW_CALL pvw_create_favorite_space(pvw_client* client, pvw_text cred, pvw_text thingName,
                                               pvw_text workspaceID);

/// Sends cmd=delete, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID.
PVW_API int PVW_CALL pvw_delete_favorite_space(pvw_client* client, pvw_text cred, pvw_text thingName,
                                               pvw_text workspaceID);

// ---- The user and other users ---------------------------------------------------------------------------------------

/// Sends cmd=get, type=user for the user, and keeps user ID and namespace ID in the client. Re-arms the timer.
PVW_API int PVW_CALL pvw_get_user_configure_info(pvw_client* client, pvw_text cred, const pvw_user_config_info** info,
                                                 pvw_result** result);

/// Sends cmd=execute, task=GetUserProfile for the user IDs in `users`; the profiles come back. Re-arms the timer. In
/// XML: the IDs.
PVW_API int PVW_CALL pvw_get_user_profile(pvw_client* client, pvw_text cred, const pvw_user_profile* users,
                                          size_t userCount, pvw_user_profile_list* usersBack, pvw_result** result);

/// Sends cmd=set, type=user: the user's extension fields. An empty list is refused without a request. Re-arms the
/// timer.
PVW_API int PVW_CALL pvw_edit_ext_user(pvw_client* client, pvw_text cred, pvw_text user, const pvw_user_field* fields,
                                       size_t fieldCount);

/// Sends cmd=execute, task=CreateRDQAVAccounts: makes the user's audio/video account, which pvw_get_user_configure_info
/// then reads. Re-arms the timer. In XML: the ID.
PVW_API int PVW_CALL pvw_create_rdqav_account(pvw_client* client, pvw_text cred, pvw_text user);

// ---- The organisation -----------------------------------------------------------------------------------------------

/// Sends cmd=get, type=org for the organisation's addresses. The timer is not re-armed.
PVW_API int PVW_CALL pvw_get_org_info(pvw_client* client, pvw_text cred, pvw_text* changePasswordURL,
                                      pvw_text* forgetPasswordURL, pvw_text* siteInfoURL, pvw_text* connectSupportURL,
                                      pvw_result** result);

/// Sends cmd=get, type=org: `domains` becomes the white list, a comma, and each domain with a comma behind it. Re-arms
/// the timer.
PVW_API int PVW_CALL pvw_get_domain_list(pvw_client* client, pvw_text cred, pvw_text* domains, pvw_result** result);

/// Sends cmd=execute, task=ProbeAccess for 21 features: the flag of each that is allowed is 1, every other 0. Re-arms
/// the timer.
PVW_API int PVW_CALL pvw_get_policy_data(pvw_client* client, pvw_text cred, const pvw_policy** policy,
                                         pvw_result** result);

// ---- Libraries ------------------------------------------------------------------------------------------------------

/// Sends cmd=execute, task=GetUserLibraries: the libraries with their templates. Re-arms the timer.
PVW_API int PVW_CALL pvw_get_libraries(pvw_client* client, pvw_text cred, int withTemplates, int withWidgets,
                                       int readOnly, pvw_library_list* libraries, pvw_result** result);

/// Sends cmd=add, type=grp: one template more in a library. Re-arms the timer. In XML: the template's ID.
PVW_API int PVW_CALL pvw_add_template_to_library(pvw_client* client, pvw_text cred, pvw_text groupID,
                                                 pvw_text templateID);

/// Sends cmd=execute, task=GetUserLibrariesWithApps: the libraries with their applications. Re-arms the timer.
PVW_API int PVW_CALL pvw_get_user_libraries_with_apps(pvw_client* client, pvw_text cred, int readOnly,
                                                      int withTopLevelApps, pvw_app_library_list* libraries,
                                                      pvw_result** result);

// ---- Counters, events and meetings ----------------------------------------------------------------------------------

/// Sends cmd=execute, task=GetWorkspaceNotificationCount for the workspaces in `items`; the counts come back. Re-arms
/// the timer. Raw: the credential; in XML: the IDs.
PVW_API int PVW_CALL pvw_get_space_notify(pvw_client* client, pvw_text cred, const pvw_space_count_item* items,
                                          size_t itemCount, pvw_space_count_item_list* itemsBack, pvw_result** result);

/// The same task with the unread messages and active members of each workspace: the activity values come back. Re-arms
/// the timer. Raw: the credential; in XML: the IDs.
PVW_API int PVW_CALL pvw_get_space_activity(pvw_client* client, pvw_text cred, const pvw_space_count_item* items,
                                            size_t itemCount, pvw_space_count_item_list* itemsBack,
                                            pvw_result** result);

/// Sends cmd=execute, task=SendNotificationEvent. A value that is no event is refused without a request, with a last
/// message. Re-arms the timer. In XML: the ID, the tag and the sender; in CDATA: the workspace's name and the message.
PVW_API int PVW_CALL pvw_send_notification_event(pvw_client* client, pvw_text cred, int event, pvw_text workspaceID,
                                                 pvw_text workspaceName, pvw_text message, pvw_text specificTag,
                                                 pvw_text senderUserName);

/// Sends cmd=create, type=thng: the record of a meeting. Re-arms the timer. In XML: all five texts.
PVW_API int PVW_CALL pvw_write_meeting_record(pvw_client* client, pvw_text cred, pvw_text workspaceID,
                                              pvw_text siteName, pvw_text meetingID, pvw_text hostID,
                                              pvw_text sessionName);

#ifdef __cplusplus
}
#endif
