// The client of the workspace service's XML web API.
#pragma once

#include "pvutil/Platform.h"  // first: it says whether a compiler can use what follows

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pvutil/StringEx.h"
#include "pvutil/TimerWindow.h"
#include "records/Access.h"
#include "records/Events.h"
#include "records/Libraries.h"
#include "records/Members.h"
#include "records/Policy.h"
#include "records/Roles.h"
#include "records/SpaceDetails.h"
#include "records/Spaces.h"
#include "records/Tabs.h"
#include "records/Users.h"
#include "records/WapiMessage.h"

class CWapiClientLogin;
class CXMLWapiCommonResponse;

namespace kzn::pvutil {
class CallControl;
class CZelHttpClient;
}  // namespace kzn::pvutil

/// One user's connection to the service.
///
/// Every operation blocks until its reply is read and returns 1 on success and 0 on failure; GetLstMsg then says
/// why. Outputs are written on success only, unless an operation says otherwise. No exception leaves a member.
///
/// Thread: a client belongs to the thread that made it, and so do its calls; two calls at once on one client are
/// not allowed. The timer that keeps the session alive ticks on that thread too, through its message loop (on Linux
/// see pvutil/MessageLoop.h), never in the middle of a call.
///
/// Copies share the timer window and the sign-in handler with the original and hold everything else for themselves;
/// they may die in any order, and the ticks go to the oldest that is left.
///
/// Texts go out as UTF-8, percent-encoded, so that the service receives any text whole, unless an operation names
/// one of these:
///   in XML    The text is part of the request's XML as it stands, percent-encoded with it: XmlText of
///             pvutil/StringEx.h makes any text safe there.
///   in CDATA  The same, but in a CDATA section, where nothing but "]]>" has a meaning: it ends the section early.
///             XmlText would be seen in what the service keeps.
///   raw       The text is part of the form or of the address as it stands: it comes percent-encoded from the host, or
///             has nothing in it that needs it.
///
/// A host is built with the library's own compiler and runtime: on Windows MinGW-w64 GCC with POSIX threads,
/// on Linux GCC's libstdc++. Text is UTF-16 on both.
class PVWAPI_API CWapiClient {
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
        std::string_view url;                    ///< where it goes, each redirect by itself
        std::span<const std::string> headers;    ///< "Name: value" each; the system adds host and length
        std::span<const std::string_view> body;  ///< of a post, one piece behind the other
        int status = 0;                          ///< 0 before it begins, -1 where no whole reply came
        std::string_view reply;                  ///< the reply's body as it came
        unsigned int milliseconds = 0;           ///< how long it took
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
    const CStringT& getRootCred() const;
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

    const CStringT& getOpURL() const;
    const CStringT& getNullSessionURL() const;
    const CStringT& getUploadURL() const;
    const CStringT& getDmsURL() const;

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
    friend struct CWapiClientTestPeer;

    enum class Timer { leave, rearm };
    enum class OBJ_TYPE { user = 0, workspace = 1, group = 2, thing = 3, org = 4, sessionInfo = 16 };

    void init();
    void rearmTimer() noexcept;

    template <typename Body>
    int operation(const char* name, Timer timer, Body&& body) noexcept;
    template <typename Body>
    int guarded(Body&& body) noexcept;
    void keepFailure(const char* reason) noexcept;
    void prepare(kzn::pvutil::CZelHttpClient& http);
    void keepCause(const kzn::pvutil::CZelHttpClient& http) noexcept;
    void traceCause() const noexcept;

    int refuse(std::string_view reason, const CStringT& what = {});
    bool exchange(kzn::pvutil::CZelHttpClient& http, const CStringT& url, const CStringT& body, METHOD_TYPE method);
    int judge(const kzn::pvutil::CZelHttpClient& http, CXMLWapiCommonResponse& parser);
    int post(const CStringT& body, CXMLWapiCommonResponse& parser);
    int doRequest(const CStringT& url, const CStringT& body, CStringT& reply, CXMLWapiCommonResponse& parser,
                  METHOD_TYPE method, CStringT extra);
    int doRequest(const CStringT& url, const CStringT& body, CXMLWapiCommonResponse& parser, METHOD_TYPE method);
    CStringT buildObjectRequest(const CStringT& cred, OBJ_TYPE type, CStringT id);
    CStringT buildProbeSpaceAccessRequest(const CStringT& workspaceID, unsigned long tests);

    kzn::pvutil::TimerWindow timerWindow;
    CStringT opURL;
    CStringT nullSessionURL;
    CStringT uploadURL;
    CStringT dmsURL;
    CStringT userID;
    CStringT namespaceID;
    int networkError = 0;
    std::shared_ptr<CWapiClientLogin> loginHandler;
    WAPIMESSAGE lastMessage;
    unsigned int refreshInterval = 3'600'000;
    CStringT rootCred;
    TransferProgress transferProgress;
    NETWORK_ERROR networkErrorKind = NETWORK_NONE;
    CStringT networkErrorText;
    RefreshListener refreshListener;
    ExchangeListener exchangeListener;
    unsigned int deadline = 0;
    std::shared_ptr<kzn::pvutil::CallControl> callControl;  // the client's own; a copy makes one of its own
};
