// The client of the workspace service's XML web API for C++17, of any compiler and any standard library. Written by
// capi/generate.py.
#pragma once

// The class and the records of client/WapiClient.h once more, on top of the C interface: what crosses the library's
// boundary is C, and every string and vector is the host's own. Nothing but this header, pvwapi_c.h and the library
// pvwapi_c is needed.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <pvwapi_c.h>

namespace pvwapi {

/// UTF-16, in the system's own wide strings where these are of it.
using CStringT = std::conditional_t<sizeof(wchar_t) == 2, std::wstring, std::u16string>;

namespace detail {
struct Records;
template <typename Listener>
struct Held;
}  // namespace detail

// ---- Records --------------------------------------------------------------------------------------------------------

enum EVENT_NAME : int { START_MEETING = 0, START_VOICE, START_TELEPHONY, END_MEETING, END_VOICE, END_TELEPHONY };

/// What a member of a workspace is, and what an invitee is to become. 32 bits wide; any int may be carried in it.
enum WAPI_INVITEAS_TYPE : int { WAPI_INVITEAS_MEMBER = 1, WAPI_INVITEAS_ADMIN = 2 };

struct WAPIMESSAGE {
    int code = 0;
    CStringT reason;       ///< the service's reason, or the library's own text
    CStringT exceptionID;  ///< the service's exception identifier
    CStringT response;     ///< the whole reply of the failed request
    int reserved = 0;
};

class CZelTab {
public:
    void SetID(CStringT value) { ID_ = std::move(value); }
    CStringT GetID() const { return ID_; }

    void SetName(CStringT value) { name_ = std::move(value); }
    CStringT GetName() const { return name_; }

    /// The service's tab type, a number as text: 0 plain, 1 discussion, 2 files.
    void SetType(CStringT value) { type_ = std::move(value); }
    CStringT GetType() const { return type_; }

    /// The tab's place in the order of tabs.
    void SetTabPos(int value) { position_ = value; }
    int GetTabPos() const { return position_; }

private:
    friend struct detail::Records;

    CStringT ID_;
    CStringT name_;
    CStringT type_;
    int position_ = 0;
};

struct CZelMember {
    CStringT userID;
    CStringT userName;
    CStringT status;  ///< always "accepted" for a member read from a workspace
    int reserved = 0;
    CStringT email;
    int role = 0;  ///< 1 member, 2 administrator; 0 while unknown
};

/// One line of the list of the user's workspaces.
struct SpaceForList {
    CStringT workspaceID;
    CStringT workspaceName;
    CStringT status;  ///< always "accepted": the user is a member of what is listed
    CStringT userID;  ///< the owner's
    CStringT userName;
    CStringT type;
    CStringT isTemplate;  ///< "true" or "false", as the service sent it
    CStringT namespaceID;
    CStringT description;
    CStringT spaceIconURL;
    int role = 0;  ///< 1 member, 2 administrator; 0 while unknown
};

/// An invitation to a workspace.
struct CZelSpaceInvite {
    CStringT spaceInviteID;
    CStringT expires;
    CStringT lastModifiedTime;
    CStringT status;
    CStringT workspaceID;
    CStringT createTime;
    CStringT statusChanged;
    CStringT userDescriptor;  ///< the invitee: a user ID, a user name or an e-mail address
    CStringT userName;
    CStringT workspaceName;
    CStringT ownerID;
    CStringT ownerName;
    int inviteType = 0;
    int inviteAsType = 0;  ///< a WAPI_INVITEAS_TYPE
};

struct space_t {
    CStringT workspaceID;
    CStringT workspaceName;
    CStringT type;
    CStringT isTemplate;
    CStringT userID;  ///< the owner's
    CStringT userName;
    CStringT namespaceID;
    CStringT namespaceName;
    CStringT createTime;
    CStringT lastModifiedTime;
    CStringT groupName;
    CStringT groupID;
    CStringT descriptionText;
    CStringT descriptionIcon;
    CStringT discussionTab;
    CStringT filesTab;
    CStringT spaceIconURL;
    std::vector<CZelMember> members;
    std::vector<CZelTab> tabs;
    int kind = 0;  ///< the type in the low bits, 16 for a template; 0 while unknown
};

struct SPACE_ACCESS {
    CStringT setWorkspaceAccess;
    CStringT deleteWorkspaceAccess;
    CStringT bulkSpaceInviteAccess;
    CStringT createChatRoomAccess;
    CStringT joinSpaceAccess;
    CStringT createDocAccess;
    CStringT setWorkspaceReason;
    CStringT deleteWorkspaceReason;
    CStringT bulkSpaceInviteReason;
    CStringT createChatRoomReason;
    CStringT joinSpaceReason;
    CStringT createDocReason;
};

struct DOC_ACCESS {
    CStringT setDocAccess;
    CStringT deleteDocAccess;
    CStringT setDocReason;
    CStringT deleteDocReason;
};

struct ROOM_ACCESS {
    CStringT setChatRoomAccess;
    CStringT deleteChatRoomAccess;
    CStringT createChatEntryAccess;
    CStringT setChatRoomReason;
    CStringT deleteChatRoomReason;
    CStringT createChatEntryReason;
};

/// One answered question: may the user `cmd` ("get" or "set") the workspace `id`?
struct RoleItem {
    CStringT cmd;
    CStringT id;
    CStringT access;
};

/// One invitation to send; the last five are the reply's own.
struct SPACEINVT {
    CStringT workspaceID;
    CStringT user;          ///< a user ID or an e-mail address
    CStringT inviteMethod;  ///< "EMAIL" for one that carries a personal message
    CStringT status;
    CStringT isproviderID;  ///< the invitee's instant-messaging provider
    WAPI_INVITEAS_TYPE inviteAs = WAPI_INVITEAS_TYPE{};
    CStringT userID;
    CStringT userName;
    CStringT inviteType;
    CStringT emailSent;
    CStringT email;
};

/// An identity provider of the user.
struct CZelISProvider {
    CStringT ISProviderID;
    CStringT ISProviderName;
    CStringT userName;  ///< the user's name there
    CStringT namespaceID;
};

struct CUserConfigInfo {
    CStringT userID;
    CStringT userName;
    CStringT email;
    CStringT firstName;
    CStringT lastName;
    CStringT namespaceID;
    CStringT ISProviderID;  ///< of the last provider
    CStringT QueltID;       ///< the audio/video account, with the password as the service returns it
    CStringT Password;
    CStringT QueltAVToken;
    CStringT QueltDesktopShareURL;
    CStringT QueltAudioOrVisualURL;
    CStringT hostName;
    CStringT websiteURL;
    std::vector<CZelISProvider> ISProviders;
};

struct USER_PROFILE {
    CStringT userID;
    CStringT firstName;
    CStringT lastName;
    CStringT middleName;
};

/// 1 where a feature is allowed. A reply only ever sets flags: the caller clears the record first.
struct CZelPolicy {
    int AutomaticUpdates = 0;
    int PremiumServices = 0;
    int SecureCollaboration = 0;
    int IMInt = 0;
    int IMExt = 0;
    int DisableIMCatchInt = 0;
    int DisableIMCatchExt = 0;
    int LocalArchive = 0;
    int VoIPInt = 0;
    int VoIPExt = 0;
    int VideoInt = 0;
    int VideoExt = 0;
    int DesktopShareInt = 0;
    int DesktopShareExt = 0;
    int RemoteControlInt = 0;
    int RemoteControlExt = 0;
    int FileTransferInt = 0;
    int FileTransferExt = 0;
    int FileXferVirusScan = 0;
    int HasSpaces = 0;
    int CreateWorkspace = 0;
};

class CZelTemplateItem {
public:
    int GetType() const { return type_; }

    CStringT name;
    CStringT ID;
    CStringT description;

private:
    friend struct detail::Records;

    int type_ = 0;
};

struct library_t {
    CStringT name;
    CStringT ID;
    int type = 0;  ///< 1, 2 or 3; 0 for any other
    std::vector<CZelTemplateItem> templates;
};

struct library_app_t {
    CStringT name;
    CStringT ID;
    CStringT currentDir;
    CStringT status;
    CStringT package;
    CStringT appType;  ///< this and the identity are told of top-level applications only
    CStringT identityDescription;
    CStringT identityName;
    bool topLevel = false;
};

struct library2_t {
    CStringT name;
    CStringT ID;
    CStringT type;
    std::vector<library_app_t> apps;
};

struct SPACE_COUNT_ITEM {
    CStringT workspaceID;
    int count = 0;  ///< read back: the notification count, or the activity value
    int activeMembersCount = 0;
    int unreadMessageCount = 0;
};

// ---- The class ------------------------------------------------------------------------------------------------------

/// One user's connection to the service.
///
/// Every operation blocks until its reply is read and returns 1 on success and 0 on failure; GetLstMsg then says
/// why. Outputs are written on success only, unless an operation says otherwise. No exception leaves an operation;
/// whoever makes or copies a client, or asks for what it holds, may meet std::bad_alloc.
///
/// Thread: a client belongs to the thread that made it, and so do its calls; two calls at once on one client are
/// not allowed. The timer that keeps the session alive ticks on that thread too, through its message loop.
///
/// Copies share the timer with the original and hold everything else for themselves; they may die in any order, and the
/// ticks go to the oldest that is left. Every client dies before the library is unloaded.
///
/// Texts go out as UTF-8, percent-encoded, so that the service receives any text whole, unless an operation names
/// one of these:
///   in XML    The text is part of the request's XML as it stands, percent-encoded with it: XmlText makes any text safe
///             there.
///   in CDATA  The same, but in a CDATA section, where nothing but "]]>" has a meaning: it ends the section early.
///             XmlText would be seen in what the service keeps.
///   raw       The text is part of the form or of the address as it stands: it comes percent-encoded from the host, or
///             has nothing in it that needs it.
class CWapiClient {
public:
    enum METHOD_TYPE : int { METHOD_GET = 0, METHOD_POST = 1 };

    /// One attribute of a workspace. Field 0 is the description, which stands in CDATA; entries with any other field
    /// are skipped.
    struct WKSP_Field_Value {
        int field = 0;
        CStringT value;
    };

    /// One extension field of a user: 0 the host name, 1 the web-site URL, 2 the client's build, 3 its version; any
    /// other is skipped. The value stands in XML.
    struct USER_Field_Value {
        int type = 0;
        CStringT value;
    };

    /// Why the last request got no whole reply. The numbers never change; new kinds go to the end.
    enum NETWORK_ERROR : int {
        NETWORK_NONE = 0,
        NETWORK_BAD_ADDRESS = 1,  ///< no URL, or neither http nor https
        NETWORK_NO_SUCH_HOST = 2,
        NETWORK_REFUSED = 3,
        NETWORK_UNREACHABLE = 4,
        NETWORK_CONNECT_TIMEOUT = 5,
        NETWORK_PROXY = 6,           ///< the proxy is not there, or refused
        NETWORK_TLS_UNTRUSTED = 7,   ///< unknown or self-signed authority
        NETWORK_TLS_WRONG_NAME = 8,  ///< the certificate is another host's
        NETWORK_TLS_EXPIRED = 9,     ///< or not yet valid
        NETWORK_TLS_FAILED = 10,     ///< no common version, broken handshake
        NETWORK_CLOSED = 11,         ///< the connection ended before the first byte of a reply
        NETWORK_CUT_OFF = 12,        ///< it ended inside the reply
        NETWORK_NOT_HTTP = 13,       ///< what came is no reply
        NETWORK_TOO_LARGE = 14,
        NETWORK_SILENCE = 15,  ///< 60 s without a byte
        NETWORK_DEADLINE = 16,
        NETWORK_CANCELLED = 17,  ///< by cancel(), or by a listener that returned false
        NETWORK_LOCAL = 18       ///< memory, descriptors
    };

    /// One exchange as it goes over the wire. What it points at lasts as long as the listener's call.
    struct Exchange {
        METHOD_TYPE method = METHOD_GET;
        std::string_view url;                   ///< where it goes, each redirect by itself
        std::vector<std::string_view> headers;  ///< "Name: value" each; the system adds host and length
        std::vector<std::string_view> body;     ///< of a post, one piece behind the other
        int status = 0;                         ///< 0 before it begins, -1 where no whole reply came
        std::string_view reply;                 ///< the reply's body as it came
        unsigned int milliseconds = 0;          ///< how long it took
    };

    // ---- Life ----------------------------------------------------------------------------------------------------

    /// `baseURL` is the operation endpoint, such as "http://host/kznconnect/op.do"; the other endpoints follow from
    /// it. Empty selects the stand-in service's own address. Nothing is sent, and no timer runs yet.
    CWapiClient(CStringT baseURL);
    CWapiClient(const CWapiClient& other);
    CWapiClient& operator=(const CWapiClient& other);
    virtual ~CWapiClient();

    // ---- What the client holds -----------------------------------------------------------------------------------

    /// The signed-in user's ID and namespace ID, empty until the user's configuration has been read.
    CStringT getUserID();
    CStringT getNamespaceID();

    /// The session credential that login obtained and that the timer refreshes.
    CStringT getRootCred() const;
    void setRootCred(const CStringT& cred);

    /// Why the last request failed; cleared by one that succeeds.
    WAPIMESSAGE GetLstMsg();

    /// 1 when the last request got no whole reply: no server was reached, the connection broke, or the host stopped
    /// the transfer itself. 0 when it got any reply.
    int getNetworkError() const;

    /// The cause of it: NETWORK_NONE where the last request got a reply, and whenever getNetworkError() is 0, but for
    /// WapiProxyCall, which leaves getNetworkError() alone and still says here what it met. logout touches neither.
    NETWORK_ERROR getNetworkErrorKind() const;

    /// The same in the system's own words, with the host and port that were meant; empty for NETWORK_NONE.
    CStringT getNetworkErrorText() const;

    /// The period of the timer in milliseconds: one hour until getSessionInfo has read half the session's duration.
    unsigned int getRefreshInterval() const;

    CStringT getOpURL() const;
    CStringT getNullSessionURL() const;
    CStringT getUploadURL() const;
    CStringT getDmsURL() const;

    // ---- Control -------------------------------------------------------------------------------------------------

    /// Ends the call that is running, wherever it is until its reply has been read whole: it fails as
    /// NETWORK_CANCELLED, its outputs stay as they are, and the client is good for the next one. Without a running call
    /// nothing happens. From any thread while the client lives.
    void cancel() noexcept;

    /// How long each call from now on may take as a whole, redirects and repeats included; one that takes longer fails
    /// as NETWORK_DEADLINE. 0, the default, is no such limit.
    void setDeadline(unsigned int milliseconds);

    /// Told after each refresh by the timer, on the loop's thread, with its result: after a 0 GetLstMsg says why. The
    /// call is over and the timer runs again by then, so that it may do anything: sign in again, replace or clear
    /// itself, even destroy the client. In a message loop of its own it may be told again. It must not throw; on
    /// Windows that ends the process. A copy of the client has it too, and is told once the ticks go there.
    using RefreshListener = std::function<void(int result)>;
    void onRefresh(RefreshListener listener);

    /// Told of each exchange before it begins and when it is over, on the thread of the call. False before it begins
    /// sends nothing, and the call fails as one that was cancelled. It must not throw, nor call the client but for
    /// cancel(); a copy of the client has it too.
    using ExchangeListener = std::function<bool(const Exchange& exchange)>;
    void onExchange(ExchangeListener listener);

    /// What the process's log takes from now on, whichever client writes: 0 or less nothing, 1 errors, 2 warnings too,
    /// 3 information too, 4 or more everything, as at first. Requests and replies are of level 4.
    static void setLog(int maximumLevel);

    /// The version of the binary, such as "1.0.0"; PVWAPI_VERSION is that of the header.
    static const char* version();

    // ---- Signing in and out --------------------------------------------------------------------------------------

    /// Sends cmd=login with the token where `useToken` is not 0, with the password otherwise. On success the root
    /// credential is replaced and the timer starts; on failure both stay. With `send` 0 nothing is sent and 0
    /// returned.
    int login(CStringT userName, CStringT token, CStringT isp, CStringT password, int useToken, int send);

    /// The same request for a session that has expired: the credential goes to `newCred`, and neither the client's
    /// own nor its timer is touched.
    int getCredForExpired(CStringT& newCred, CStringT userName, CStringT token, CStringT isp, CStringT password,
                          int useToken);

    /// Sends cmd=logout. Always 1, whatever comes of it; the credential, the timer and the last message stay.
    int logout(const CStringT& cred);

    /// Sends cmd=get for sessionInfo, which also keeps the session alive. On success the refresh interval becomes
    /// half the session's duration, or one hour where the reply names none. The timer is not re-armed.
    int getSessionInfo(const CStringT& cred);

    /// Sends cmd=cloneSession: a further credential of the session, for one workspace unless `workspace` is empty.
    /// Re-arms the timer.
    int cloneSession(const CStringT& cred, const CStringT& workspace, CStringT& newCred);

    /// The refresh tick: reads the session with the root credential and re-arms the timer. Called by the timer
    /// window.
    void OnTimer(unsigned int timerID);

    // ---- Commands of the caller's own making ---------------------------------------------------------------------

    /// Sends `command`, raw, with the credential behind it. 1 where the reply's result is SUCCESS.
    /// The timer is not re-armed.
    int callWapi(const CStringT& cred, const CStringT& command);

    /// Sends `command` to `url` with the header lines of `headers`: as a form by METHOD_POST, joined to the URL
    /// behind "?" otherwise; where `withCred` is not 0 the credential follows it and the reply's result decides,
    /// else the result is 0. `reply` receives whatever came back, and nothing without a connection. A command that
    /// contains "cmd=login" is not sent. The last message and the timer are left alone. Raw: command, address and
    /// header lines; where the command is joined to the URL, a "#" in it is encoded and that of the URL is cut off.
    int WapiProxyCall(const CStringT& cred, const CStringT& command, METHOD_TYPE method, const CStringT& url,
                      const CStringT& headers, int withCred, CStringT& reply);

    // ---- Workspaces ----------------------------------------------------------------------------------------------

    /// Sends cmd=execute, task=AddTabs: a new workspace with its first tabs; a discussion room too where `type` is 0.
    /// `workspaceID` receives its ID. An empty name is refused without a request, with a last message. Re-arms the
    /// timer. In XML: the name.
    int createSpace(const CStringT& cred, const CStringT& name, std::vector<WKSP_Field_Value>& fields,
                    CStringT& workspaceID, int type, int favourite);

    /// Sends cmd=execute, task=CloneWorkspace: a new workspace, or a template, with the tabs of another one. The low
    /// four bits of `typeAndFlags` are the type, bit 4 makes a template; a discussion room is made where the whole is
    /// 0. `workspaceID` receives its ID. An empty name is refused without a request or a message. Re-arms the timer. In
    /// XML: the name; raw, and in XML: the ID of the source.
    int cloneWksp(const CStringT& cred, const CStringT& name, CStringT sourceWorkspaceID, int typeAndFlags,
                  std::vector<WKSP_Field_Value>& fields, CStringT& workspaceID, int favourite);

    /// Sends cmd=set, type=workspace: the description, and the name where `changeName` is not 0. Refused without a
    /// request: an empty ID, and no name to change with no fields at all. Re-arms the timer. In XML: the name.
    int editExtWksp(const CStringT& cred, const CStringT& workspaceID, const CStringT& name, int changeName,
                    std::vector<WKSP_Field_Value>& fields);

    /// Sends cmd=execute, task=DeleteWorkspace. An empty ID is refused without a request. Re-arms the timer. In XML:
    /// the ID.
    int deleteWksp(const CStringT& cred, const CStringT& workspaceID);

    /// Sends cmd=execute, task=LeaveSpace: the user leaves the workspace. An empty credential or ID is refused without
    /// a request. Re-arms the timer. In XML: the ID.
    int leaveWorkspace(const CStringT& cred, const CStringT& workspaceID);

    /// Sends cmd=execute, task=CreateWorkspaceUsingApp: a new workspace made from an application, or blank where
    /// `appName` is exactly "Blank". `workspaceID` receives its ID. Nothing is refused. Re-arms the timer. In XML: both
    /// names; in CDATA: the description.
    int createSpaceUsingApp(const CStringT& cred, const CStringT& name, const CStringT& appName, CStringT& workspaceID,
                            const CStringT& description, int favourite, int type);

    /// Sends cmd=execute, task=SaveWorkspaceAsApp: the workspace becomes an application of the library `groupID`.
    /// `widgetID` receives the application's ID. Nothing is refused. Re-arms the timer. In XML: both IDs and the name;
    /// in CDATA: the description.
    int saveWorkspaceAsApp(const CStringT& cred, const CStringT& workspaceID, const CStringT& appName,
                           const CStringT& groupID, CStringT& widgetID, const CStringT& description);

    // ---- Tabs ----------------------------------------------------------------------------------------------------

    /// Sends cmd=execute, task=AddTabs: a new plain tab; `tabID` receives its ID. An empty workspace ID or name is
    /// refused without a request. The timer is not re-armed. In XML: the workspace's ID; in CDATA: the name.
    int createTab(const CStringT& cred, const CStringT& workspaceID, const CStringT& tabName, int tabOrder,
                  CStringT& tabID);

    /// Sends cmd=get, type=workspace for the tabs; they replace those in `tabs`. Re-arms the timer.
    int getTabs(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelTab>& tabs);

    /// Sends cmd=delete, type=tab. An empty ID, and the fixed tabs "commTab" and "docTab", are refused without a
    /// request. The timer is not re-armed. The workspace's ID is not sent.
    int deleteTab(const CStringT& cred, const CStringT& workspaceID, const CStringT& tabID);

    /// Sends cmd=set, type=tab: the tab of that ID takes the name of `tab`. An empty tab or workspace ID is refused
    /// without a request. The timer is not re-armed. In CDATA: the name. The workspace's ID is not sent.
    int editTab(const CStringT& cred, const CStringT& workspaceID, CZelTab& tab);

    /// Sends cmd=set, type=wksp: each tab takes its place. An empty list is refused without a request. The timer is not
    /// re-armed. In XML: the IDs of the tabs.
    int editTabOrder(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelTab>& tabs);

    // ---- Icons ---------------------------------------------------------------------------------------------------

    /// Posts the picture to the upload endpoint, task=ManageSpaceIcon; `url` receives the address it is kept under. A
    /// picture that cannot be read or is larger than 64 MiB is refused without a request, with a last message. Re-arms
    /// the timer. Credential, path and ID go into a multipart form, where nothing is encoded; the ID stands in XML, and
    /// a quotation mark in the path would end the file's name.
    int SetSpaceIcon(const CStringT& cred, const CStringT& workspaceID, const CStringT& filePath, CStringT& url);

    /// Fetches the picture into a file of the temporary folder, named after the last component of its address;
    /// `localPath` receives the file's path. Any status but 200, and a file that cannot be written, is a failure. The
    /// timer is not re-armed. Raw: the address and the credential, which is put behind "?cred=".
    int GetSpaceIcon(const CStringT& cred, const CStringT& iconURL, CStringT& localPath);

    /// Told of the bytes done and the whole (0 while unknown) as a picture goes up or comes down. False ends the
    /// transfer, which then fails like one whose connection broke. It must not throw; a copy of the client has it too.
    using TransferProgress = std::function<bool(std::size_t done, std::size_t whole)>;
    void onTransferProgress(TransferProgress progress);

    // ---- Listings ------------------------------------------------------------------------------------------------

    /// Sends cmd=execute, task=RunScript: the user's workspaces with the user's role in each are appended to
    /// `spaces`, and the invitations addressed to the user replace those in `invitations`. The second and third
    /// text are not used. Re-arms the timer.
    int GetWkspList(const CStringT& cred, const CStringT& extra1, const CStringT& extra2,
                    std::vector<SpaceForList>& spaces, std::vector<CZelSpaceInvite>& invitations);

    /// Sends cmd=execute, task=RunScript: one workspace, its invitations and the user's rights on it replace what the
    /// three outputs hold; the kind stays where the type is none that hosts know. The last text is left as it is.
    /// Re-arms the timer. In XML: the ID.
    int getSpaceBatch(const CStringT& cred, const CStringT& workspaceID, space_t& space,
                      std::vector<CZelSpaceInvite>& invitations, SPACE_ACCESS& access, CStringT& out);

    /// Does nothing and returns 1.
    int GetSpacesTest(const CStringT& extra1, const CStringT& extra2);

    // ---- Rights --------------------------------------------------------------------------------------------------

    /// Sends cmd=execute, task=ProbeAccess for a workspace: bits 0x01 and 0x02 of `tests` ask for changing and deleting
    /// it, 0x20 for joining. `access` is replaced whole, with the texts as received. Re-arms the timer. In XML: the ID.
    int probeSpaceAccess(const CStringT& cred, const CStringT& workspaceID, SPACE_ACCESS& access, unsigned long tests);

    /// The same for the rights of no workspace: inviting in bulk, making discussion rooms and documents. The timer
    /// is not re-armed.
    int probeSpaceAccess2(const CStringT& cred, SPACE_ACCESS& access);

    /// The same for a document. Re-arms the timer. In XML: the ID.
    int probeDocAccess(const CStringT& cred, const CStringT& docID, DOC_ACCESS& access);

    /// The same for a discussion room. The timer is not re-armed. In XML: the ID.
    int probeChatRoomAccess(const CStringT& cred, const CStringT& roomID, ROOM_ACCESS& access);

    /// Sends cmd=execute, task=ProbeAccess: may the user get and set each workspace? `roles` is replaced by the
    /// answers, one for each question. Re-arms the timer. In XML: the IDs.
    int getRole(const CStringT& cred, std::vector<CStringT> workspaceIDs, std::vector<RoleItem>& roles);

    /// Sends cmd=execute, task=RunScript: the same for every workspace that the user shares with another. The third
    /// text is not used. Re-arms the timer. In XML: the other user's ID.
    int ProbeAccessAllSpace(const CStringT& cred, const CStringT& otherUserID, const CStringT& extra,
                            std::vector<RoleItem>& roles);

    // ---- Members and invitations ---------------------------------------------------------------------------------

    /// Sends cmd=get, type=workspace for the members; they replace those in `members`. Re-arms the timer.
    int getMembers(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelMember>& members);

    /// Sends cmd=remove, type=workspace for one member. Re-arms the timer. The member's ID stands between apostrophes
    /// in a path, where an apostrophe would end it.
    int removeSpaceMember(const CStringT& cred, const CStringT& workspaceID, const CStringT& memberID);

    /// Sends cmd=execute, task=ChangeRole: administrator for WAPI_INVITEAS_ADMIN, member for anything else. The timer
    /// is not re-armed. In XML: both IDs.
    int changeMemberRole(const CStringT& cred, const CStringT& workspaceID, const CStringT& memberID,
                         WAPI_INVITEAS_TYPE role);

    /// Sends cmd=execute, task=BulkSpaceInvite. The message goes along with each invitation of method "EMAIL". Each
    /// result is written into the first invitation of its workspace and invitee that has none yet; a result without a
    /// status leaves that of the invitation. The timer is not re-armed. In CDATA: the message and each invitee; in XML:
    /// the other texts of the invitations.
    int inviteMembers(const CStringT& cred, std::vector<SPACEINVT>& invitations, CStringT message);

    /// Sends cmd=delete, type=spaceInvite: withdraws the invitation of one invitee to one workspace. Re-arms the timer.
    /// In XML: the ID; in CDATA: the invitee.
    int delInvt(const CStringT& cred, const CStringT& workspaceID, const CStringT& userDescriptor);

    /// Sends cmd=execute, task=JoinSpace: takes the invitation where `accept` is not 0, refuses it otherwise. Re-arms
    /// the timer. In XML: the ID.
    int responseInvitation(const CStringT& cred, const CStringT& workspaceID, int accept);

    // ---- Favourites ----------------------------------------------------------------------------------------------

    /// Sends cmd=execute, task=RunScript: the workspaces that are favourites under that name, with their members,
    /// replace those in `spaces`. One whose workspace is gone is left out. Re-arms the timer. In XML: the name.
    int GetFavoriteSpaceList(const CStringT& cred, const CStringT& thingName, std::vector<space_t>& spaces);

    /// Sends cmd=create, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID.
    int createFavoriteSpace(const CStringT& cred, const CStringT& thingName, const CStringT& workspaceID);

    /// Sends cmd=delete, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID.
    int deleteFavoriteSpace(const CStringT& cred, const CStringT& thingName, const CStringT& workspaceID);

    // ---- The user and other users --------------------------------------------------------------------------------

    /// Sends cmd=get, type=user for the user: replaces `info`, and keeps user ID and namespace ID in the client.
    /// Re-arms the timer.
    int getUserConfigureInfo(const CStringT& cred, CUserConfigInfo& info);

    /// Sends cmd=execute, task=GetUserProfile for the user IDs in `users`, which is replaced by the profiles that come
    /// back. Re-arms the timer. In XML: the IDs.
    int getUserProfile(const CStringT& cred, std::vector<USER_PROFILE>& users);

    /// Sends cmd=set, type=user: the user's extension fields. An empty list is refused without a request. Re-arms
    /// the timer.
    int editExtUser(const CStringT& cred, const CStringT& user, std::vector<USER_Field_Value>& fields);

    /// Sends cmd=execute, task=CreateRDQAVAccounts: makes the user's audio/video account, which getUserConfigureInfo
    /// then reads. Re-arms the timer. In XML: the ID.
    int createRDQAVAccount(const CStringT& cred, const CStringT& user);

    // ---- The organisation ----------------------------------------------------------------------------------------

    /// Sends cmd=get, type=org for the organisation's addresses. The timer is not re-armed.
    int getOrgInfo(const CStringT& cred, CStringT& changePasswordURL, CStringT& forgetPasswordURL,
                   CStringT& siteInfoURL, CStringT& connectSupportURL);

    /// Sends cmd=get, type=org: `domains` becomes the white list, a comma, and each domain with a comma behind it.
    /// Re-arms the timer.
    int getDomainList(const CStringT& cred, CStringT& domains);

    /// Sends cmd=execute, task=ProbeAccess for 21 features: the flag of each that is allowed becomes 1, every other
    /// flag stays as it is. Re-arms the timer.
    int getPolicyData(const CStringT& cred, CZelPolicy& policy);

    // ---- Libraries -----------------------------------------------------------------------------------------------

    /// Sends cmd=execute, task=GetUserLibraries: the libraries with their templates replace those in `libraries`,
    /// unless there are none at all. Re-arms the timer.
    int getLibraries(const CStringT& cred, int withTemplates, int withWidgets, int readOnly,
                     std::vector<library_t>& libraries);

    /// Sends cmd=add, type=grp: one template more in a library. Re-arms the timer. In XML: the template's ID.
    int addTemplateToLibrary(const CStringT& cred, const CStringT& groupID, const CStringT& templateID);

    /// Sends cmd=execute, task=GetUserLibrariesWithApps: the libraries with their applications replace those in
    /// `libraries`. Re-arms the timer.
    int getUserLibrariesWithApps(const CStringT& cred, int readOnly, int withTopLevelApps,
                                 std::vector<library2_t>& libraries);

    // ---- Counters, events and meetings ---------------------------------------------------------------------------

    /// Sends cmd=execute, task=GetWorkspaceNotificationCount for the workspaces in `items`, which is replaced by the
    /// counts that come back. Re-arms the timer. Raw: the credential; in XML: the IDs.
    int getSpaceNotify(const CStringT& cred, std::vector<SPACE_COUNT_ITEM>& items);

    /// The same task with the unread messages and active members of each workspace: the activity values come back.
    /// Re-arms the timer. Raw: the credential; in XML: the IDs.
    int getSpaceActivity(const CStringT& cred, std::vector<SPACE_COUNT_ITEM>& items);

    /// Sends cmd=execute, task=SendNotificationEvent. A value that is no event is refused without a request, with a
    /// last message. Re-arms the timer. In XML: the ID, the tag and the sender; in CDATA: the workspace's name and the
    /// message.
    int sendNotificationEvent(const CStringT& cred, EVENT_NAME event, const CStringT& workspaceID,
                              const CStringT& workspaceName, const CStringT& message, const CStringT& specificTag,
                              const CStringT& senderUserName);

    /// Sends cmd=create, type=thng: the record of a meeting. Re-arms the timer. In XML: all five texts.
    int writeMeetingRecord(const CStringT& cred, const CStringT& workspaceID, const CStringT& siteName,
                           const CStringT& meetingID, const CStringT& hostID, const CStringT& sessionName);

private:
    void swap(CWapiClient& other) noexcept;

    pvw_client* client_ = nullptr;
    std::shared_ptr<detail::Held<RefreshListener>> refreshListener_;
    std::shared_ptr<detail::Held<ExchangeListener>> exchangeListener_;
    std::shared_ptr<detail::Held<TransferProgress>> transferProgress_;
};

/// The same by its short name.
using Client = CWapiClient;

// ---- Around the class -----------------------------------------------------------------------------------------------

/// The text as an XML document can carry it: "&", "<" and ">" become references, and what XML has no place for is
/// dropped.
CStringT XmlText(const CStringT& text);

/// UTF-8 of a UTF-16 text. A surrogate without its partner becomes U+FFFD.
std::string ToUtf8(const CStringT& text);

/// UTF-16 of a UTF-8 text. Each byte of an ill-formed sequence becomes U+FFFD.
CStringT FromUtf8(std::string_view utf8);

/// A descriptor that becomes readable when a tick of the calling thread is due, to be watched with poll or epoll, never
/// read or closed. -1 on Windows, where the thread's message queue serves.
inline int MessageLoopFd()
{
    return pvw_message_loop_fd();
}

/// Delivers what is due on the calling thread, without waiting, and returns how many ticks (on Windows: messages) that
/// were.
inline int DispatchPendingMessages()
{
    return pvw_dispatch_pending_messages();
}

/// PVW_ABI_VERSION of the library that was loaded: a host that was built with a newer header looks at it first.
inline unsigned int AbiVersion()
{
    return pvw_abi_version();
}

// ---- What follows is no host's business -----------------------------------------------------------------------------

namespace detail {

/// What stands for a record in C.
template <typename Record>
struct InC;

template <>
struct InC<WAPIMESSAGE> {
    using type = pvw_message;
};

template <>
struct InC<CWapiClient::WKSP_Field_Value> {
    using type = pvw_workspace_field;
};

template <>
struct InC<CWapiClient::USER_Field_Value> {
    using type = pvw_user_field;
};

template <>
struct InC<CZelTab> {
    using type = pvw_tab;
};

template <>
struct InC<CZelMember> {
    using type = pvw_member;
};

template <>
struct InC<SpaceForList> {
    using type = pvw_listed_space;
};

template <>
struct InC<CZelSpaceInvite> {
    using type = pvw_space_invite;
};

template <>
struct InC<space_t> {
    using type = pvw_space;
};

template <>
struct InC<SPACE_ACCESS> {
    using type = pvw_space_access;
};

template <>
struct InC<DOC_ACCESS> {
    using type = pvw_doc_access;
};

template <>
struct InC<ROOM_ACCESS> {
    using type = pvw_room_access;
};

template <>
struct InC<RoleItem> {
    using type = pvw_role_item;
};

template <>
struct InC<SPACEINVT> {
    using type = pvw_invitation;
};

template <>
struct InC<CZelISProvider> {
    using type = pvw_is_provider;
};

template <>
struct InC<CUserConfigInfo> {
    using type = pvw_user_config_info;
};

template <>
struct InC<USER_PROFILE> {
    using type = pvw_user_profile;
};

template <>
struct InC<CZelPolicy> {
    using type = pvw_policy;
};

template <>
struct InC<CZelTemplateItem> {
    using type = pvw_template_item;
};

template <>
struct InC<library_t> {
    using type = pvw_library;
};

template <>
struct InC<library_app_t> {
    using type = pvw_library_app;
};

template <>
struct InC<library2_t> {
    using type = pvw_app_library;
};

template <>
struct InC<SPACE_COUNT_ITEM> {
    using type = pvw_space_count_item;
};

/// What a call has brought, until it has been taken over.
class Result {
public:
    Result() = default;
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
    ~Result() { pvw_result_free(result_); }

    pvw_result** place() { return &result_; }
    bool isThere() const { return result_ != nullptr; }

private:
    pvw_result* result_ = nullptr;
};

template <typename Call>
int contained(Call&& call) noexcept
{
    try {
        return call();
    } catch (...) {
        return 0;
    }
}

/// Only memory can be missing where a client is asked for what it holds.
inline void expect(int outcome)
{
    if (outcome == 0) throw std::bad_alloc();
}

inline pvw_text given(const CStringT& text)
{
    return {reinterpret_cast<const pvw_char*>(text.data()), text.size()};
}

inline CStringT taken(pvw_text text)
{
    const auto* const units = reinterpret_cast<const CStringT::value_type*>(text.units);
    return text.length == 0 ? CStringT() : CStringT(units, text.length);
}

/// An older library's record is the shorter one; what it does not have is empty.
template <typename Record>
Record whole(const Record& from)
{
    Record record{};
    std::memcpy(&record, &from, (std::min)(from.size, sizeof record));
    return record;
}

template <typename Record, typename List>
std::vector<Record> listOf(const List& from);

struct Records {
    static void toC(const CWapiClient::WKSP_Field_Value& from, pvw_workspace_field& to)
    {
        to.field = from.field;
        to.value = given(from.value);
    }

    static void toC(const CWapiClient::USER_Field_Value& from, pvw_user_field& to)
    {
        to.type = from.type;
        to.value = given(from.value);
    }

    static void toC(const CZelTab& from, pvw_tab& to)
    {
        to.ID = given(from.ID_);
        to.name = given(from.name_);
        to.type = given(from.type_);
        to.position = from.position_;
    }

    static void toC(const SPACEINVT& from, pvw_invitation& to)
    {
        to.workspaceID = given(from.workspaceID);
        to.user = given(from.user);
        to.inviteMethod = given(from.inviteMethod);
        to.status = given(from.status);
        to.isproviderID = given(from.isproviderID);
        to.inviteAs = static_cast<int>(from.inviteAs);
        to.userID = given(from.userID);
        to.userName = given(from.userName);
        to.inviteType = given(from.inviteType);
        to.emailSent = given(from.emailSent);
        to.email = given(from.email);
    }

    static void toC(const USER_PROFILE& from, pvw_user_profile& to)
    {
        to.userID = given(from.userID);
        to.firstName = given(from.firstName);
        to.lastName = given(from.lastName);
        to.middleName = given(from.middleName);
    }

    static void toC(const SPACE_COUNT_ITEM& from, pvw_space_count_item& to)
    {
        to.workspaceID = given(from.workspaceID);
        to.count = from.count;
        to.activeMembersCount = from.activeMembersCount;
        to.unreadMessageCount = from.unreadMessageCount;
    }

    static void fromC(const pvw_message& from, WAPIMESSAGE& to)
    {
        to.code = from.code;
        to.reason = taken(from.reason);
        to.exceptionID = taken(from.exceptionID);
        to.response = taken(from.response);
        to.reserved = from.reserved;
    }

    static void fromC(const pvw_tab& from, CZelTab& to)
    {
        to.ID_ = taken(from.ID);
        to.name_ = taken(from.name);
        to.type_ = taken(from.type);
        to.position_ = from.position;
    }

    static void fromC(const pvw_member& from, CZelMember& to)
    {
        to.userID = taken(from.userID);
        to.userName = taken(from.userName);
        to.status = taken(from.status);
        to.reserved = from.reserved;
        to.email = taken(from.email);
        to.role = from.role;
    }

    static void fromC(const pvw_listed_space& from, SpaceForList& to)
    {
        to.workspaceID = taken(from.workspaceID);
        to.workspaceName = taken(from.workspaceName);
        to.status = taken(from.status);
        to.userID = taken(from.userID);
        to.userName = taken(from.userName);
        to.type = taken(from.type);
        to.isTemplate = taken(from.isTemplate);
        to.namespaceID = taken(from.namespaceID);
        to.description = taken(from.description);
        to.spaceIconURL = taken(from.spaceIconURL);
        to.role = from.role;
    }

    static void fromC(const pvw_space_invite& from, CZelSpaceInvite& to)
    {
        to.spaceInviteID = taken(from.spaceInviteID);
        to.expires = taken(from.expires);
        to.lastModifiedTime = taken(from.lastModifiedTime);
        to.status = taken(from.status);
        to.workspaceID = taken(from.workspaceID);
        to.createTime = taken(from.createTime);
        to.statusChanged = taken(from.statusChanged);
        to.userDescriptor = taken(from.userDescriptor);
        to.userName = taken(from.userName);
        to.workspaceName = taken(from.workspaceName);
        to.ownerID = taken(from.ownerID);
        to.ownerName = taken(from.ownerName);
        to.inviteType = from.inviteType;
        to.inviteAsType = from.inviteAsType;
    }

    static void fromC(const pvw_space& from, space_t& to)
    {
        to.workspaceID = taken(from.workspaceID);
        to.workspaceName = taken(from.workspaceName);
        to.type = taken(from.type);
        to.isTemplate = taken(from.isTemplate);
        to.userID = taken(from.userID);
        to.userName = taken(from.userName);
        to.namespaceID = taken(from.namespaceID);
        to.namespaceName = taken(from.namespaceName);
        to.createTime = taken(from.createTime);
        to.lastModifiedTime = taken(from.lastModifiedTime);
        to.groupName = taken(from.groupName);
        to.groupID = taken(from.groupID);
        to.descriptionText = taken(from.descriptionText);
        to.descriptionIcon = taken(from.descriptionIcon);
        to.discussionTab = taken(from.discussionTab);
        to.filesTab = taken(from.filesTab);
        to.spaceIconURL = taken(from.spaceIconURL);
        to.members = listOf<CZelMember>(from.members);
        to.tabs = listOf<CZelTab>(from.tabs);
        to.kind = from.kind;
    }

    static void fromC(const pvw_space_access& from, SPACE_ACCESS& to)
    {
        to.setWorkspaceAccess = taken(from.setWorkspaceAccess);
        to.deleteWorkspaceAccess = taken(from.deleteWorkspaceAccess);
        to.bulkSpaceInviteAccess = taken(from.bulkSpaceInviteAccess);
        to.createChatRoomAccess = taken(from.createChatRoomAccess);
        to.joinSpaceAccess = taken(from.joinSpaceAccess);
        to.createDocAccess = taken(from.createDocAccess);
        to.setWorkspaceReason = taken(from.setWorkspaceReason);
        to.deleteWorkspaceReason = taken(from.deleteWorkspaceReason);
        to.bulkSpaceInviteReason = taken(from.bulkSpaceInviteReason);
        to.createChatRoomReason = taken(from.createChatRoomReason);
        to.joinSpaceReason = taken(from.joinSpaceReason);
        to.createDocReason = taken(from.createDocReason);
    }

    static void fromC(const pvw_doc_access& from, DOC_ACCESS& to)
    {
        to.setDocAccess = taken(from.setDocAccess);
        to.deleteDocAccess = taken(from.deleteDocAccess);
        to.setDocReason = taken(from.setDocReason);
        to.deleteDocReason = taken(from.deleteDocReason);
    }

    static void fromC(const pvw_room_access& from, ROOM_ACCESS& to)
    {
        to.setChatRoomAccess = taken(from.setChatRoomAccess);
        to.deleteChatRoomAccess = taken(from.deleteChatRoomAccess);
        to.createChatEntryAccess = taken(from.createChatEntryAccess);
        to.setChatRoomReason = taken(from.setChatRoomReason);
        to.deleteChatRoomReason = taken(from.deleteChatRoomReason);
        to.createChatEntryReason = taken(from.createChatEntryReason);
    }

    static void fromC(const pvw_role_item& from, RoleItem& to)
    {
        to.cmd = taken(from.cmd);
        to.id = taken(from.id);
        to.access = taken(from.access);
    }

    static void fromC(const pvw_invitation& from, SPACEINVT& to)
    {
        to.workspaceID = taken(from.workspaceID);
        to.user = taken(from.user);
        to.inviteMethod = taken(from.inviteMethod);
        to.status = taken(from.status);
        to.isproviderID = taken(from.isproviderID);
        to.inviteAs = static_cast<WAPI_INVITEAS_TYPE>(from.inviteAs);
        to.userID = taken(from.userID);
        to.userName = taken(from.userName);
        to.inviteType = taken(from.inviteType);
        to.emailSent = taken(from.emailSent);
        to.email = taken(from.email);
    }

    static void fromC(const pvw_is_provider& from, CZelISProvider& to)
    {
        to.ISProviderID = taken(from.ISProviderID);
        to.ISProviderName = taken(from.ISProviderName);
        to.userName = taken(from.userName);
        to.namespaceID = taken(from.namespaceID);
    }

    static void fromC(const pvw_user_config_info& from, CUserConfigInfo& to)
    {
        to.userID = taken(from.userID);
        to.userName = taken(from.userName);
        to.email = taken(from.email);
        to.firstName = taken(from.firstName);
        to.lastName = taken(from.lastName);
        to.namespaceID = taken(from.namespaceID);
        to.ISProviderID = taken(from.ISProviderID);
        to.QueltID = taken(from.QueltID);
        to.Password = taken(from.Password);
        to.QueltAVToken = taken(from.QueltAVToken);
        to.QueltDesktopShareURL = taken(from.QueltDesktopShareURL);
        to.QueltAudioOrVisualURL = taken(from.QueltAudioOrVisualURL);
        to.hostName = taken(from.hostName);
        to.websiteURL = taken(from.websiteURL);
        to.ISProviders = listOf<CZelISProvider>(from.ISProviders);
    }

    static void fromC(const pvw_user_profile& from, USER_PROFILE& to)
    {
        to.userID = taken(from.userID);
        to.firstName = taken(from.firstName);
        to.lastName = taken(from.lastName);
        to.middleName = taken(from.middleName);
    }

    static void fromC(const pvw_policy& from, CZelPolicy& to)
    {
        to.AutomaticUpdates = from.AutomaticUpdates;
        to.PremiumServices = from.PremiumServices;
        to.SecureCollaboration = from.SecureCollaboration;
        to.IMInt = from.IMInt;
        to.IMExt = from.IMExt;
        to.DisableIMCatchInt = from.DisableIMCatchInt;
        to.DisableIMCatchExt = from.DisableIMCatchExt;
        to.LocalArchive = from.LocalArchive;
        to.VoIPInt = from.VoIPInt;
        to.VoIPExt = from.VoIPExt;
        to.VideoInt = from.VideoInt;
        to.VideoExt = from.VideoExt;
        to.DesktopShareInt = from.DesktopShareInt;
        to.DesktopShareExt = from.DesktopShareExt;
        to.RemoteControlInt = from.RemoteControlInt;
        to.RemoteControlExt = from.RemoteControlExt;
        to.FileTransferInt = from.FileTransferInt;
        to.FileTransferExt = from.FileTransferExt;
        to.FileXferVirusScan = from.FileXferVirusScan;
        to.HasSpaces = from.HasSpaces;
        to.CreateWorkspace = from.CreateWorkspace;
    }

    static void fromC(const pvw_template_item& from, CZelTemplateItem& to)
    {
        to.name = taken(from.name);
        to.ID = taken(from.ID);
        to.description = taken(from.description);
        to.type_ = from.type;
    }

    static void fromC(const pvw_library& from, library_t& to)
    {
        to.name = taken(from.name);
        to.ID = taken(from.ID);
        to.type = from.type;
        to.templates = listOf<CZelTemplateItem>(from.templates);
    }

    static void fromC(const pvw_library_app& from, library_app_t& to)
    {
        to.name = taken(from.name);
        to.ID = taken(from.ID);
        to.currentDir = taken(from.currentDir);
        to.status = taken(from.status);
        to.package = taken(from.package);
        to.appType = taken(from.appType);
        to.identityDescription = taken(from.identityDescription);
        to.identityName = taken(from.identityName);
        to.topLevel = from.topLevel != 0;
    }

    static void fromC(const pvw_app_library& from, library2_t& to)
    {
        to.name = taken(from.name);
        to.ID = taken(from.ID);
        to.type = taken(from.type);
        to.apps = listOf<library_app_t>(from.apps);
    }

    static void fromC(const pvw_space_count_item& from, SPACE_COUNT_ITEM& to)
    {
        to.workspaceID = taken(from.workspaceID);
        to.count = from.count;
        to.activeMembersCount = from.activeMembersCount;
        to.unreadMessageCount = from.unreadMessageCount;
    }
};

template <typename Record>
typename InC<Record>::type given(const Record& record)
{
    typename InC<Record>::type to{};
    to.size = sizeof to;
    Records::toC(record, to);
    return to;
}

inline std::vector<pvw_text> given(const std::vector<CStringT>& texts)
{
    std::vector<pvw_text> to;
    for (const CStringT& text : texts) to.push_back(given(text));
    return to;
}

template <typename Record>
std::vector<typename InC<Record>::type> given(const std::vector<Record>& records)
{
    std::vector<typename InC<Record>::type> to;
    for (const Record& record : records) to.push_back(given(record));
    return to;
}

template <typename Record>
Record recordOf(const typename InC<Record>::type* from)
{
    Record record;
    Records::fromC(whole(*from), record);
    return record;
}

template <typename Record, typename List>
std::vector<Record> listOf(const List& from)
{
    std::vector<Record> records;
    records.reserve(from.count);
    for (std::size_t at = 0; at < from.count; ++at) records.push_back(recordOf<Record>(from.items[at]));
    return records;
}

// What comes back replaces what an output held, but for the outputs that the class does not replace; the C interface
// knows nothing of what was there before.

template <typename Value>
void put(Value& place, Value& found)
{
    place = std::move(found);
}

inline void put(std::vector<SpaceForList>& place, std::vector<SpaceForList>& found)
{
    place.insert(place.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
}

inline void put(std::vector<library_t>& place, std::vector<library_t>& found)
{
    if (!found.empty()) place = std::move(found);
}

/// A type that nobody knows, and one without a word on templates, leaves the kind that was there before.
inline void put(space_t& place, space_t& found)
{
    const bool isPlain = found.type == CStringT(1, CStringT::value_type{'0'}) && !found.isTemplate.empty();
    if (found.kind == 0 && !isPlain) found.kind = place.kind;
    place = std::move(found);
}

/// A flag is only ever set.
inline void put(CZelPolicy& place, CZelPolicy& found)
{
    if (found.AutomaticUpdates != 0) place.AutomaticUpdates = found.AutomaticUpdates;
    if (found.PremiumServices != 0) place.PremiumServices = found.PremiumServices;
    if (found.SecureCollaboration != 0) place.SecureCollaboration = found.SecureCollaboration;
    if (found.IMInt != 0) place.IMInt = found.IMInt;
    if (found.IMExt != 0) place.IMExt = found.IMExt;
    if (found.DisableIMCatchInt != 0) place.DisableIMCatchInt = found.DisableIMCatchInt;
    if (found.DisableIMCatchExt != 0) place.DisableIMCatchExt = found.DisableIMCatchExt;
    if (found.LocalArchive != 0) place.LocalArchive = found.LocalArchive;
    if (found.VoIPInt != 0) place.VoIPInt = found.VoIPInt;
    if (found.VoIPExt != 0) place.VoIPExt = found.VoIPExt;
    if (found.VideoInt != 0) place.VideoInt = found.VideoInt;
    if (found.VideoExt != 0) place.VideoExt = found.VideoExt;
    if (found.DesktopShareInt != 0) place.DesktopShareInt = found.DesktopShareInt;
    if (found.DesktopShareExt != 0) place.DesktopShareExt = found.DesktopShareExt;
    if (found.RemoteControlInt != 0) place.RemoteControlInt = found.RemoteControlInt;
    if (found.RemoteControlExt != 0) place.RemoteControlExt = found.RemoteControlExt;
    if (found.FileTransferInt != 0) place.FileTransferInt = found.FileTransferInt;
    if (found.FileTransferExt != 0) place.FileTransferExt = found.FileTransferExt;
    if (found.FileXferVirusScan != 0) place.FileXferVirusScan = found.FileXferVirusScan;
    if (found.HasSpaces != 0) place.HasSpaces = found.HasSpaces;
    if (found.CreateWorkspace != 0) place.CreateWorkspace = found.CreateWorkspace;
}

/// A listener outlives its own call, whatever that does to the client.
template <typename Listener>
struct Held : std::enable_shared_from_this<Held<Listener>> {
    explicit Held(Listener listener) : function(std::move(listener)) {}

    Listener function;
};

template <typename Listener>
std::shared_ptr<Held<Listener>> hold(Listener listener)
{
    return listener ? std::make_shared<Held<Listener>>(std::move(listener)) : nullptr;
}

template <typename Listener, typename... Arguments>
auto tell(void* context, Arguments&&... arguments) noexcept
{
    const auto held = static_cast<Held<Listener>*>(context)->shared_from_this();
    return held->function(std::forward<Arguments>(arguments)...);
}

inline void PVW_CALL refreshed(void* context, int result)
{
    tell<CWapiClient::RefreshListener>(context, result);
}

inline int PVW_CALL transferred(void* context, std::size_t done, std::size_t size)
{
    return tell<CWapiClient::TransferProgress>(context, done, size) ? 1 : 0;
}

inline std::string_view taken(pvw_bytes bytes)
{
    return {bytes.bytes, bytes.length};
}

inline int exchangeTold(void* context, const pvw_exchange& from) noexcept
{
    CWapiClient::Exchange exchange;
    exchange.method = static_cast<CWapiClient::METHOD_TYPE>(from.method);
    exchange.url = taken(from.url);
    for (std::size_t at = 0; at < from.headerCount; ++at) exchange.headers.push_back(taken(from.headers[at]));
    for (std::size_t at = 0; at < from.bodyCount; ++at) exchange.body.push_back(taken(from.body[at]));
    exchange.status = from.status;
    exchange.reply = taken(from.reply);
    exchange.milliseconds = from.milliseconds;
    return tell<CWapiClient::ExchangeListener>(context, exchange) ? 1 : 0;
}

inline int PVW_CALL exchanged(void* context, const pvw_exchange* from)
{
    return exchangeTold(context, whole(*from));
}

inline void appendUtf8(std::string& utf8, char32_t point)
{
    const auto append = [&utf8](char32_t byte) { utf8 += static_cast<char>(byte); };
    if (point < 0x80) {
        append(point);
        return;
    }
    int shift = point < 0x800 ? 6 : point < 0x10000 ? 12 : 18;
    append((shift == 6 ? 0xC0U : shift == 12 ? 0xE0U : 0xF0U) | point >> shift);
    while ((shift -= 6) >= 0) append(0x80U | (point >> shift & 0x3FU));
}

/// The code point at the text's begin, which moves behind it.
inline char32_t takePoint(std::string_view& utf8)
{
    const auto byte = [&utf8](std::size_t at) { return static_cast<char32_t>(static_cast<unsigned char>(utf8[at])); };
    const char32_t first = byte(0);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    char32_t point = length < 2 ? first : first & (0x7FU >> length);
    bool isGood = length != 0 && length <= utf8.size();
    for (std::size_t at = 1; isGood && at < length; ++at) {
        isGood = (byte(at) & 0xC0U) == 0x80;
        point = point << 6 | (byte(at) & 0x3FU);
    }
    isGood = isGood && point >= kLeast[length] && point < 0x110000 && (point & 0xFFFFF800U) != 0xD800;
    utf8.remove_prefix(isGood ? length : 1);
    return isGood ? point : 0xFFFD;
}

}  // namespace detail

inline CStringT XmlText(const CStringT& text)
{
    detail::Result result;
    pvw_text xml{};
    detail::expect(pvw_xml_text(detail::given(text), &xml, result.place()));
    return detail::taken(xml);
}

inline std::string ToUtf8(const CStringT& text)
{
    std::string utf8;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t point = text[at];
        const bool isPair = (point & 0xFC00U) == 0xD800 && at + 1 < text.size() && (text[at + 1] & 0xFC00U) == 0xDC00;
        if (isPair) point = 0x10000U + ((point & 0x3FFU) << 10) + (text[++at] & 0x3FFU);
        detail::appendUtf8(utf8, (point & 0xFFFFF800U) == 0xD800 ? 0xFFFD : point);
    }
    return utf8;
}

inline CStringT FromUtf8(std::string_view utf8)
{
    CStringT text;
    const auto append = [&text](char32_t unit) { text += static_cast<CStringT::value_type>(unit); };
    while (!utf8.empty()) {
        const char32_t point = detail::takePoint(utf8);
        if (point >= 0x10000) append(0xD800U + ((point - 0x10000U) >> 10));
        append(point < 0x10000 ? point : 0xDC00U + (point & 0x3FFU));
    }
    return text;
}

// ---- Life and control -----------------------------------------------------------------------------------------------

inline CWapiClient::CWapiClient(CStringT baseURL)
{
    detail::expect(pvw_client_new(detail::given(baseURL), &client_));
}

inline CWapiClient::CWapiClient(const CWapiClient& other)
    : refreshListener_(other.refreshListener_),
      exchangeListener_(other.exchangeListener_),
      transferProgress_(other.transferProgress_)
{
    detail::expect(pvw_client_copy(other.client_, &client_));
}

inline CWapiClient& CWapiClient::operator=(const CWapiClient& other)
{
    if (this == &other) return *this;
    CWapiClient copy(other);
    swap(copy);
    return *this;
}

inline CWapiClient::~CWapiClient()
{
    pvw_client_free(client_);
}

inline void CWapiClient::swap(CWapiClient& other) noexcept
{
    std::swap(client_, other.client_);
    refreshListener_.swap(other.refreshListener_);
    exchangeListener_.swap(other.exchangeListener_);
    transferProgress_.swap(other.transferProgress_);
}

inline void CWapiClient::cancel() noexcept
{
    pvw_cancel(client_);
}

inline void CWapiClient::setDeadline(unsigned int milliseconds)
{
    pvw_set_deadline(client_, milliseconds);
}

inline void CWapiClient::onRefresh(RefreshListener listener)
{
    auto held = detail::hold(std::move(listener));
    pvw_on_refresh(client_, held ? &detail::refreshed : nullptr, held.get());
    refreshListener_.swap(held);
}

inline void CWapiClient::onExchange(ExchangeListener listener)
{
    auto held = detail::hold(std::move(listener));
    pvw_on_exchange(client_, held ? &detail::exchanged : nullptr, held.get());
    exchangeListener_.swap(held);
}

inline void CWapiClient::onTransferProgress(TransferProgress progress)
{
    auto held = detail::hold(std::move(progress));
    pvw_on_transfer_progress(client_, held ? &detail::transferred : nullptr, held.get());
    transferProgress_.swap(held);
}

inline void CWapiClient::setLog(int maximumLevel)
{
    pvw_set_log(maximumLevel);
}

inline const char* CWapiClient::version()
{
    return pvw_version();
}

inline void CWapiClient::OnTimer(unsigned int timerID)
{
    pvw_on_timer(client_, timerID);
}

// ---- What the client holds ------------------------------------------------------------------------------------------

inline CStringT CWapiClient::getUserID()
{
    detail::Result result;
    pvw_text userIDBack{};
    detail::expect(pvw_get_user_id(client_, &userIDBack, result.place()));
    return detail::taken(userIDBack);
}

inline CStringT CWapiClient::getNamespaceID()
{
    detail::Result result;
    pvw_text namespaceIDBack{};
    detail::expect(pvw_get_namespace_id(client_, &namespaceIDBack, result.place()));
    return detail::taken(namespaceIDBack);
}

inline CStringT CWapiClient::getRootCred() const
{
    detail::Result result;
    pvw_text credBack{};
    detail::expect(pvw_get_root_cred(client_, &credBack, result.place()));
    return detail::taken(credBack);
}

inline void CWapiClient::setRootCred(const CStringT& cred)
{
    pvw_set_root_cred(client_, detail::given(cred));
}

inline WAPIMESSAGE CWapiClient::GetLstMsg()
{
    detail::Result result;
    const pvw_message* messageBack = nullptr;
    detail::expect(pvw_get_lst_msg(client_, &messageBack, result.place()));
    return detail::recordOf<WAPIMESSAGE>(messageBack);
}

inline int CWapiClient::getNetworkError() const
{
    int errorBack{};
    pvw_get_network_error(client_, &errorBack);
    return static_cast<int>(errorBack);
}

inline CWapiClient::NETWORK_ERROR CWapiClient::getNetworkErrorKind() const
{
    int kindBack{};
    pvw_get_network_error_kind(client_, &kindBack);
    return static_cast<CWapiClient::NETWORK_ERROR>(kindBack);
}

inline CStringT CWapiClient::getNetworkErrorText() const
{
    detail::Result result;
    pvw_text textBack{};
    detail::expect(pvw_get_network_error_text(client_, &textBack, result.place()));
    return detail::taken(textBack);
}

inline unsigned int CWapiClient::getRefreshInterval() const
{
    unsigned int millisecondsBack{};
    pvw_get_refresh_interval(client_, &millisecondsBack);
    return millisecondsBack;
}

inline CStringT CWapiClient::getOpURL() const
{
    detail::Result result;
    pvw_text urlBack{};
    detail::expect(pvw_get_op_url(client_, &urlBack, result.place()));
    return detail::taken(urlBack);
}

inline CStringT CWapiClient::getNullSessionURL() const
{
    detail::Result result;
    pvw_text urlBack{};
    detail::expect(pvw_get_null_session_url(client_, &urlBack, result.place()));
    return detail::taken(urlBack);
}

inline CStringT CWapiClient::getUploadURL() const
{
    detail::Result result;
    pvw_text urlBack{};
    detail::expect(pvw_get_upload_url(client_, &urlBack, result.place()));
    return detail::taken(urlBack);
}

inline CStringT CWapiClient::getDmsURL() const
{
    detail::Result result;
    pvw_text urlBack{};
    detail::expect(pvw_get_dms_url(client_, &urlBack, result.place()));
    return detail::taken(urlBack);
}

// ---- Signing in and out ---------------------------------------------------------------------------------------------

inline int CWapiClient::login(CStringT userName, CStringT token, CStringT isp, CStringT password, int useToken,
                              int send)
{
    return pvw_login(client_, detail::given(userName), detail::given(token), detail::given(isp),
                     detail::given(password), useToken, send);
}

inline int CWapiClient::getCredForExpired(CStringT& newCred, CStringT userName, CStringT token, CStringT isp,
                                          CStringT password, int useToken)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text newCredBack{};
        if (pvw_get_cred_for_expired(client_, &newCredBack, detail::given(userName), detail::given(token),
                                     detail::given(isp), detail::given(password), useToken, result.place()) == 0)
            return 0;
        auto newCredTaken = detail::taken(newCredBack);
        detail::put(newCred, newCredTaken);
        return 1;
    });
}

inline int CWapiClient::logout(const CStringT& cred)
{
    return pvw_logout(client_, detail::given(cred));
}

inline int CWapiClient::getSessionInfo(const CStringT& cred)
{
    return pvw_get_session_info(client_, detail::given(cred));
}

inline int CWapiClient::cloneSession(const CStringT& cred, const CStringT& workspace, CStringT& newCred)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text newCredBack{};
        if (pvw_clone_session(client_, detail::given(cred), detail::given(workspace), &newCredBack, result.place()) ==
            0)
            return 0;
        auto newCredTaken = detail::taken(newCredBack);
        detail::put(newCred, newCredTaken);
        return 1;
    });
}

// ---- Commands of the caller's own making ----------------------------------------------------------------------------

inline int CWapiClient::callWapi(const CStringT& cred, const CStringT& command)
{
    return pvw_call_wapi(client_, detail::given(cred), detail::given(command));
}

inline int CWapiClient::WapiProxyCall(const CStringT& cred, const CStringT& command, METHOD_TYPE method,
                                      const CStringT& url, const CStringT& headers, int withCred, CStringT& reply)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text replyBack{};
        const int outcome =
            pvw_wapi_proxy_call(client_, detail::given(cred), detail::given(command), method, detail::given(url),
                                detail::given(headers), withCred, &replyBack, result.place());
        if (!result.isThere()) return outcome;
        auto replyTaken = detail::taken(replyBack);
        detail::put(reply, replyTaken);
        return outcome;
    });
}

// ---- Workspaces -----------------------------------------------------------------------------------------------------

inline int CWapiClient::createSpace(const CStringT& cred, const CStringT& name, std::vector<WKSP_Field_Value>& fields,
                                    CStringT& workspaceID, int type, int favourite)
{
    return detail::contained([&] {
        detail::Result result;
        const auto fieldsGiven = detail::given(fields);
        pvw_text workspaceIDBack{};
        if (pvw_create_space(client_, detail::given(cred), detail::given(name), fieldsGiven.data(), fieldsGiven.size(),
                             &workspaceIDBack, type, favourite, result.place()) == 0)
            return 0;
        auto workspaceIDTaken = detail::taken(workspaceIDBack);
        detail::put(workspaceID, workspaceIDTaken);
        return 1;
    });
}

inline int CWapiClient::cloneWksp(const CStringT& cred, const CStringT& name, CStringT sourceWorkspaceID,
                                  int typeAndFlags, std::vector<WKSP_Field_Value>& fields, CStringT& workspaceID,
                                  int favourite)
{
    return detail::contained([&] {
        detail::Result result;
        const auto fieldsGiven = detail::given(fields);
        pvw_text workspaceIDBack{};
        if (pvw_clone_wksp(client_, detail::given(cred), detail::given(name), detail::given(sourceWorkspaceID),
                           typeAndFlags, fieldsGiven.data(), fieldsGiven.size(), &workspaceIDBack, favourite,
                           result.place()) == 0)
            return 0;
        auto workspaceIDTaken = detail::taken(workspaceIDBack);
        detail::put(workspaceID, workspaceIDTaken);
        return 1;
    });
}

inline int CWapiClient::editExtWksp(const CStringT& cred, const CStringT& workspaceID, const CStringT& name,
                                    int changeName, std::vector<WKSP_Field_Value>& fields)
{
    return detail::contained([&] {
        const auto fieldsGiven = detail::given(fields);
        return pvw_edit_ext_wksp(client_, detail::given(cred), detail::given(workspaceID), detail::given(name),
                                 changeName, fieldsGiven.data(), fieldsGiven.size());
    });
}

inline int CWapiClient::deleteWksp(const CStringT& cred, const CStringT& workspaceID)
{
    return pvw_delete_wksp(client_, detail::given(cred), detail::given(workspaceID));
}

inline int CWapiClient::leaveWorkspace(const CStringT& cred, const CStringT& workspaceID)
{
    return pvw_leave_workspace(client_, detail::given(cred), detail::given(workspaceID));
}

inline int CWapiClient::createSpaceUsingApp(const CStringT& cred, const CStringT& name, const CStringT& appName,
                                            CStringT& workspaceID, const CStringT& description, int favourite, int type)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text workspaceIDBack{};
        if (pvw_create_space_using_app(client_, detail::given(cred), detail::given(name), detail::given(appName),
                                       &workspaceIDBack, detail::given(description), favourite, type,
                                       result.place()) == 0)
            return 0;
        auto workspaceIDTaken = detail::taken(workspaceIDBack);
        detail::put(workspaceID, workspaceIDTaken);
        return 1;
    });
}

inline int CWapiClient::saveWorkspaceAsApp(const CStringT& cred, const CStringT& workspaceID, const CStringT& appName,
                                           const CStringT& groupID, CStringT& widgetID, const CStringT& description)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text widgetIDBack{};
        if (pvw_save_workspace_as_app(client_, detail::given(cred), detail::given(workspaceID), detail::given(appName),
                                      detail::given(groupID), &widgetIDBack, detail::given(description),
                                      result.place()) == 0)
            return 0;
        auto widgetIDTaken = detail::taken(widgetIDBack);
        detail::put(widgetID, widgetIDTaken);
        return 1;
    });
}

// ---- Tabs -----------------------------------------------------------------------------------------------------------

inline int CWapiClient::createTab(const CStringT& cred, const CStringT& workspaceID, const CStringT& tabName,
                                  int tabOrder, CStringT& tabID)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text tabIDBack{};
        if (pvw_create_tab(client_, detail::given(cred), detail::given(workspaceID), detail::given(tabName), tabOrder,
                           &tabIDBack, result.place()) == 0)
            return 0;
        auto tabIDTaken = detail::taken(tabIDBack);
        detail::put(tabID, tabIDTaken);
        return 1;
    });
}

inline int CWapiClient::getTabs(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelTab>& tabs)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_tab_list tabsBack{};
        if (pvw_get_tabs(client_, detail::given(cred), detail::given(workspaceID), &tabsBack, result.place()) == 0)
            return 0;
        auto tabsTaken = detail::listOf<CZelTab>(tabsBack);
        detail::put(tabs, tabsTaken);
        return 1;
    });
}

inline int CWapiClient::deleteTab(const CStringT& cred, const CStringT& workspaceID, const CStringT& tabID)
{
    return pvw_delete_tab(client_, detail::given(cred), detail::given(workspaceID), detail::given(tabID));
}

inline int CWapiClient::editTab(const CStringT& cred, const CStringT& workspaceID, CZelTab& tab)
{
    return detail::contained([&] {
        const auto tabGiven = detail::given(tab);
        return pvw_edit_tab(client_, detail::given(cred), detail::given(workspaceID), &tabGiven);
    });
}

inline int CWapiClient::editTabOrder(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelTab>& tabs)
{
    return detail::contained([&] {
        const auto tabsGiven = detail::given(tabs);
        return pvw_edit_tab_order(client_, detail::given(cred), detail::given(workspaceID), tabsGiven.data(),
                                  tabsGiven.size());
    });
}

// ---- Icons ----------------------------------------------------------------------------------------------------------

inline int CWapiClient::SetSpaceIcon(const CStringT& cred, const CStringT& workspaceID, const CStringT& filePath,
                                     CStringT& url)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text urlBack{};
        if (pvw_set_space_icon(client_, detail::given(cred), detail::given(workspaceID), detail::given(filePath),
                               &urlBack, result.place()) == 0)
            return 0;
        auto urlTaken = detail::taken(urlBack);
        detail::put(url, urlTaken);
        return 1;
    });
}

inline int CWapiClient::GetSpaceIcon(const CStringT& cred, const CStringT& iconURL, CStringT& localPath)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text localPathBack{};
        if (pvw_get_space_icon(client_, detail::given(cred), detail::given(iconURL), &localPathBack, result.place()) ==
            0)
            return 0;
        auto localPathTaken = detail::taken(localPathBack);
        detail::put(localPath, localPathTaken);
        return 1;
    });
}

// ---- Listings -------------------------------------------------------------------------------------------------------

inline int CWapiClient::GetWkspList(const CStringT& cred, const CStringT&, const CStringT&,
                                    std::vector<SpaceForList>& spaces, std::vector<CZelSpaceInvite>& invitations)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_listed_space_list spacesBack{};
        pvw_space_invite_list invitationsBack{};
        if (pvw_get_wksp_list(client_, detail::given(cred), &spacesBack, &invitationsBack, result.place()) == 0)
            return 0;
        auto spacesTaken = detail::listOf<SpaceForList>(spacesBack);
        auto invitationsTaken = detail::listOf<CZelSpaceInvite>(invitationsBack);
        detail::put(spaces, spacesTaken);
        detail::put(invitations, invitationsTaken);
        return 1;
    });
}

inline int CWapiClient::getSpaceBatch(const CStringT& cred, const CStringT& workspaceID, space_t& space,
                                      std::vector<CZelSpaceInvite>& invitations, SPACE_ACCESS& access, CStringT&)
{
    return detail::contained([&] {
        detail::Result result;
        const pvw_space* spaceBack = nullptr;
        pvw_space_invite_list invitationsBack{};
        const pvw_space_access* accessBack = nullptr;
        if (pvw_get_space_batch(client_, detail::given(cred), detail::given(workspaceID), &spaceBack, &invitationsBack,
                                &accessBack, result.place()) == 0)
            return 0;
        auto spaceTaken = detail::recordOf<space_t>(spaceBack);
        auto invitationsTaken = detail::listOf<CZelSpaceInvite>(invitationsBack);
        auto accessTaken = detail::recordOf<SPACE_ACCESS>(accessBack);
        detail::put(space, spaceTaken);
        detail::put(invitations, invitationsTaken);
        detail::put(access, accessTaken);
        return 1;
    });
}

inline int CWapiClient::GetSpacesTest(const CStringT&, const CStringT&)
{
    return pvw_get_spaces_test(client_);
}

// ---- Rights ---------------------------------------------------------------------------------------------------------

inline int CWapiClient::probeSpaceAccess(const CStringT& cred, const CStringT& workspaceID, SPACE_ACCESS& access,
                                         unsigned long tests)
{
    return detail::contained([&] {
        detail::Result result;
        const pvw_space_access* accessBack = nullptr;
        if (pvw_probe_space_access(client_, detail::given(cred), detail::given(workspaceID), &accessBack,
                                   static_cast<unsigned int>(tests), result.place()) == 0)
            return 0;
        auto accessTaken = detail::recordOf<SPACE_ACCESS>(accessBack);
        detail::put(access, accessTaken);
        return 1;
    });
}

inline int CWapiClient::probeSpaceAccess2(const CStringT& cred, SPACE_ACCESS& access)
{
    return detail::contained([&] {
        detail::Result result;
        const pvw_space_access* accessBack = nullptr;
        if (pvw_probe_space_access2(client_, detail::given(cred), &accessBack, result.place()) == 0) return 0;
        auto accessTaken = detail::recordOf<SPACE_ACCESS>(accessBack);
        detail::put(access, accessTaken);
        return 1;
    });
}

inline int CWapiClient::probeDocAccess(const CStringT& cred, const CStringT& docID, DOC_ACCESS& access)
{
    return detail::contained([&] {
        detail::Result result;
        const pvw_doc_access* accessBack = nullptr;
        if (pvw_probe_doc_access(client_, detail::given(cred), detail::given(docID), &accessBack, result.place()) == 0)
            return 0;
        auto accessTaken = detail::recordOf<DOC_ACCESS>(accessBack);
        detail::put(access, accessTaken);
        return 1;
    });
}

inline int CWapiClient::probeChatRoomAccess(const CStringT& cred, const CStringT& roomID, ROOM_ACCESS& access)
{
    return detail::contained([&] {
        detail::Result result;
        const pvw_room_access* accessBack = nullptr;
        if (pvw_probe_chat_room_access(client_, detail::given(cred), detail::given(roomID), &accessBack,
                                       result.place()) == 0)
            return 0;
        auto accessTaken = detail::recordOf<ROOM_ACCESS>(accessBack);
        detail::put(access, accessTaken);
        return 1;
    });
}

inline int CWapiClient::getRole(const CStringT& cred, std::vector<CStringT> workspaceIDs, std::vector<RoleItem>& roles)
{
    return detail::contained([&] {
        detail::Result result;
        const auto workspaceIDsGiven = detail::given(workspaceIDs);
        pvw_role_item_list rolesBack{};
        if (pvw_get_role(client_, detail::given(cred), workspaceIDsGiven.data(), workspaceIDsGiven.size(), &rolesBack,
                         result.place()) == 0)
            return 0;
        auto rolesTaken = detail::listOf<RoleItem>(rolesBack);
        detail::put(roles, rolesTaken);
        return 1;
    });
}

inline int CWapiClient::ProbeAccessAllSpace(const CStringT& cred, const CStringT& otherUserID, const CStringT&,
                                            std::vector<RoleItem>& roles)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_role_item_list rolesBack{};
        if (pvw_probe_access_all_space(client_, detail::given(cred), detail::given(otherUserID), &rolesBack,
                                       result.place()) == 0)
            return 0;
        auto rolesTaken = detail::listOf<RoleItem>(rolesBack);
        detail::put(roles, rolesTaken);
        return 1;
    });
}

// ---- Members and invitations ----------------------------------------------------------------------------------------

inline int CWapiClient::getMembers(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelMember>& members)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_member_list membersBack{};
        if (pvw_get_members(client_, detail::given(cred), detail::given(workspaceID), &membersBack, result.place()) ==
            0)
            return 0;
        auto membersTaken = detail::listOf<CZelMember>(membersBack);
        detail::put(members, membersTaken);
        return 1;
    });
}

inline int CWapiClient::removeSpaceMember(const CStringT& cred, const CStringT& workspaceID, const CStringT& memberID)
{
    return pvw_remove_space_member(client_, detail::given(cred), detail::given(workspaceID), detail::given(memberID));
}

inline int CWapiClient::changeMemberRole(const CStringT& cred, const CStringT& workspaceID, const CStringT& memberID,
                                         WAPI_INVITEAS_TYPE role)
{
    return pvw_change_member_role(client_, detail::given(cred), detail::given(workspaceID), detail::given(memberID),
                                  role);
}

inline int CWapiClient::inviteMembers(const CStringT& cred, std::vector<SPACEINVT>& invitations, CStringT message)
{
    return detail::contained([&] {
        detail::Result result;
        const auto invitationsGiven = detail::given(invitations);
        pvw_invitation_list invitationsBack{};
        if (pvw_invite_members(client_, detail::given(cred), invitationsGiven.data(), invitationsGiven.size(),
                               &invitationsBack, detail::given(message), result.place()) == 0)
            return 0;
        auto invitationsTaken = detail::listOf<SPACEINVT>(invitationsBack);
        detail::put(invitations, invitationsTaken);
        return 1;
    });
}

inline int CWapiClient::delInvt(const CStringT& cred, const CStringT& workspaceID, const CStringT& userDescriptor)
{
    return pvw_del_invt(client_, detail::given(cred), detail::given(workspaceID), detail::given(userDescriptor));
}

inline int CWapiClient::responseInvitation(const CStringT& cred, const CStringT& workspaceID, int accept)
{
    return pvw_response_invitation(client_, detail::given(cred), detail::given(workspaceID), accept);
}

// ---- Favourites -----------------------------------------------------------------------------------------------------

inline int CWapiClient::GetFavoriteSpaceList(const CStringT& cred, const CStringT& thingName,
                                             std::vector<space_t>& spaces)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_space_list spacesBack{};
        if (pvw_get_favorite_space_list(client_, detail::given(cred), detail::given(thingName), &spacesBack,
                                        result.place()) == 0)
            return 0;
        auto spacesTaken = detail::listOf<space_t>(spacesBack);
        detail::put(spaces, spacesTaken);
        return 1;
    });
}

inline int CWapiClient::createFavoriteSpace(const CStringT& cred, const CStringT& thingName,
                                            const CStringT& workspaceID)
{
    return pvw_create_favorite_space(client_, detail::given(cred), detail::given(thingName),
                                     detail::given(workspaceID));
}

inline int CWapiClient::deleteFavoriteSpace(const CStringT& cred, const CStringT& thingName,
                                            const CStringT& workspaceID)
{
    return pvw_delete_favorite_space(client_, detail::given(cred), detail::given(thingName),
                                     detail::given(workspaceID));
}

// ---- The user and other users ---------------------------------------------------------------------------------------

inline int CWapiClient::getUserConfigureInfo(const CStringT& cred, CUserConfigInfo& info)
{
    return detail::contained([&] {
        detail::Result result;
        const pvw_user_config_info* infoBack = nullptr;
        if (pvw_get_user_configure_info(client_, detail::given(cred), &infoBack, result.place()) == 0) return 0;
        auto infoTaken = detail::recordOf<CUserConfigInfo>(infoBack);
        detail::put(info, infoTaken);
        return 1;
    });
}

inline int CWapiClient::getUserProfile(const CStringT& cred, std::vector<USER_PROFILE>& users)
{
    return detail::contained([&] {
        detail::Result result;
        const auto usersGiven = detail::given(users);
        pvw_user_profile_list usersBack{};
        if (pvw_get_user_profile(client_, detail::given(cred), usersGiven.data(), usersGiven.size(), &usersBack,
                                 result.place()) == 0)
            return 0;
        auto usersTaken = detail::listOf<USER_PROFILE>(usersBack);
        detail::put(users, usersTaken);
        return 1;
    });
}

inline int CWapiClient::editExtUser(const CStringT& cred, const CStringT& user, std::vector<USER_Field_Value>& fields)
{
    return detail::contained([&] {
        const auto fieldsGiven = detail::given(fields);
        return pvw_edit_ext_user(client_, detail::given(cred), detail::given(user), fieldsGiven.data(),
                                 fieldsGiven.size());
    });
}

inline int CWapiClient::createRDQAVAccount(const CStringT& cred, const CStringT& user)
{
    return pvw_create_rdqav_account(client_, detail::given(cred), detail::given(user));
}

// ---- The organisation -----------------------------------------------------------------------------------------------

inline int CWapiClient::getOrgInfo(const CStringT& cred, CStringT& changePasswordURL, CStringT& forgetPasswordURL,
                                   CStringT& siteInfoURL, CStringT& connectSupportURL)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text changePasswordURLBack{};
        pvw_text forgetPasswordURLBack{};
        pvw_text siteInfoURLBack{};
        pvw_text connectSupportURLBack{};
        if (pvw_get_org_info(client_, detail::given(cred), &changePasswordURLBack, &forgetPasswordURLBack,
                             &siteInfoURLBack, &connectSupportURLBack, result.place()) == 0)
            return 0;
        auto changePasswordURLTaken = detail::taken(changePasswordURLBack);
        auto forgetPasswordURLTaken = detail::taken(forgetPasswordURLBack);
        auto siteInfoURLTaken = detail::taken(siteInfoURLBack);
        auto connectSupportURLTaken = detail::taken(connectSupportURLBack);
        detail::put(changePasswordURL, changePasswordURLTaken);
        detail::put(forgetPasswordURL, forgetPasswordURLTaken);
        detail::put(siteInfoURL, siteInfoURLTaken);
        detail::put(connectSupportURL, connectSupportURLTaken);
        return 1;
    });
}

inline int CWapiClient::getDomainList(const CStringT& cred, CStringT& domains)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_text domainsBack{};
        if (pvw_get_domain_list(client_, detail::given(cred), &domainsBack, result.place()) == 0) return 0;
        auto domainsTaken = detail::taken(domainsBack);
        detail::put(domains, domainsTaken);
        return 1;
    });
}

inline int CWapiClient::getPolicyData(const CStringT& cred, CZelPolicy& policy)
{
    return detail::contained([&] {
        detail::Result result;
        const pvw_policy* policyBack = nullptr;
        if (pvw_get_policy_data(client_, detail::given(cred), &policyBack, result.place()) == 0) return 0;
        auto policyTaken = detail::recordOf<CZelPolicy>(policyBack);
        detail::put(policy, policyTaken);
        return 1;
    });
}

// ---- Libraries ------------------------------------------------------------------------------------------------------

inline int CWapiClient::getLibraries(const CStringT& cred, int withTemplates, int withWidgets, int readOnly,
                                     std::vector<library_t>& libraries)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_library_list librariesBack{};
        if (pvw_get_libraries(client_, detail::given(cred), withTemplates, withWidgets, readOnly, &librariesBack,
                              result.place()) == 0)
            return 0;
        auto librariesTaken = detail::listOf<library_t>(librariesBack);
        detail::put(libraries, librariesTaken);
        return 1;
    });
}

inline int CWapiClient::addTemplateToLibrary(const CStringT& cred, const CStringT& groupID, const CStringT& templateID)
{
    return pvw_add_template_to_library(client_, detail::given(cred), detail::given(groupID), detail::given(templateID));
}

inline int CWapiClient::getUserLibrariesWithApps(const CStringT& cred, int readOnly, int withTopLevelApps,
                                                 std::vector<library2_t>& libraries)
{
    return detail::contained([&] {
        detail::Result result;
        pvw_app_library_list librariesBack{};
        if (pvw_get_user_libraries_with_apps(client_, detail::given(cred), readOnly, withTopLevelApps, &librariesBack,
                                             result.place()) == 0)
            return 0;
        auto librariesTaken = detail::listOf<library2_t>(librariesBack);
        detail::put(libraries, librariesTaken);
        return 1;
    });
}

// ---- Counters, events and meetings ----------------------------------------------------------------------------------

inline int CWapiClient::getSpaceNotify(const CStringT& cred, std::vector<SPACE_COUNT_ITEM>& items)
{
    return detail::contained([&] {
        detail::Result result;
        const auto itemsGiven = detail::given(items);
        pvw_space_count_item_list itemsBack{};
        if (pvw_get_space_notify(client_, detail::given(cred), itemsGiven.data(), itemsGiven.size(), &itemsBack,
                                 result.place()) == 0)
            return 0;
        auto itemsTaken = detail::listOf<SPACE_COUNT_ITEM>(itemsBack);
        detail::put(items, itemsTaken);
        return 1;
    });
}

inline int CWapiClient::getSpaceActivity(const CStringT& cred, std::vector<SPACE_COUNT_ITEM>& items)
{
    return detail::contained([&] {
        detail::Result result;
        const auto itemsGiven = detail::given(items);
        pvw_space_count_item_list itemsBack{};
        if (pvw_get_space_activity(client_, detail::given(cred), itemsGiven.data(), itemsGiven.size(), &itemsBack,
                                   result.place()) == 0)
            return 0;
        auto itemsTaken = detail::listOf<SPACE_COUNT_ITEM>(itemsBack);
        detail::put(items, itemsTaken);
        return 1;
    });
}

inline int CWapiClient::sendNotificationEvent(const CStringT& cred, EVENT_NAME event, const CStringT& workspaceID,
                                              const CStringT& workspaceName, const CStringT& message,
                                              const CStringT& specificTag, const CStringT& senderUserName)
{
    return pvw_send_notification_event(client_, detail::given(cred), event, detail::given(workspaceID),
                                       detail::given(workspaceName), detail::given(message), detail::given(specificTag),
                                       detail::given(senderUserName));
}

inline int CWapiClient::writeMeetingRecord(const CStringT& cred, const CStringT& workspaceID, const CStringT& siteName,
                                           const CStringT& meetingID, const CStringT& hostID,
                                           const CStringT& sessionName)
{
    return pvw_write_meeting_record(client_, detail::given(cred), detail::given(workspaceID), detail::given(siteName),
                                    detail::given(meetingID), detail::given(hostID), detail::given(sessionName));
}

}  // namespace pvwapi
