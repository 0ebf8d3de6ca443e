// The client of the workspace service's XML web API.
#pragma once

#include <memory>
#include <vector>

#include "pvutil/Platform.h"
#include "pvutil/StringEx.h"
#include "pvutil/TimerWindow.h"
#include "records/Roles.h"
#include "records/Spaces.h"
#include "records/WapiMessage.h"

class CWapiClientLogin;
class CXMLWapiCommonResponse;

/// One user's connection to the service.
///
/// Every operation blocks until its reply is read and returns 1 on success and 0 on failure; GetLstMsg then says why.
/// Outputs are written on success only, unless an operation says otherwise. No exception leaves a member.
///
/// Thread: a client belongs to the thread that made it, and so do its calls; two calls at once on one client are not
/// allowed. The timer that keeps the session alive ticks on that thread too, through its message loop (on Linux see
/// pvutil/MessageLoop.h), never in the middle of a call.
///
/// Copies share the timer window and the sign-in handler with the original and hold everything else for themselves;
/// they may die in any order, and the ticks go to the oldest that is left.
///
/// A host is built with the library's own compiler and runtime: on Windows 32-bit MinGW-w64 GCC with POSIX threads, on
/// Linux GCC's libstdc++. Text is UTF-16 on both.
class PVWAPI_API CWapiClient {
public:
    enum METHOD_TYPE : int { METHOD_GET = 0, METHOD_POST = 1 };

    /// One attribute of a workspace. Field 0 is the description; entries with any other field are skipped.
    struct WKSP_Field_Value {
        int field;
        CStringT value;
    };

    // ---- Life -------------------------------------------------------------------------------------------------------

    /// `baseURL` is the operation endpoint, such as "http://host/kznconnect/op.do"; the other endpoints follow from it.
    /// Empty selects the stand-in service's own address. Nothing is sent, and no timer runs yet.
    CWapiClient(CStringT baseURL);
    CWapiClient(const CWapiClient& other);
    CWapiClient& operator=(const CWapiClient& other);
    virtual ~CWapiClient();

    // ---- What the client holds --------------------------------------------------------------------------------------

    /// The signed-in user's ID and namespace ID, empty until the user's configuration has been read.
    CStringT getUserID();
    CStringT getNamespaceID();

    /// The session credential that login obtained and that the timer refreshes.
    const CStringT& getRootCred() const;
    void setRootCred(const CStringT& cred);

    /// Why the last request failed; cleared by one that succeeds.
    WAPIMESSAGE GetLstMsg();

    /// 1 when the last request reached no server at all, 0 when it got any reply.
    int getNetworkError() const;

    /// The period of the timer in milliseconds: one hour until getSessionInfo has read half the session's duration.
    unsigned int getRefreshInterval() const;

    const CStringT& getOpURL() const;
    const CStringT& getNullSessionURL() const;
    const CStringT& getUploadURL() const;
    const CStringT& getDmsURL() const;

    // ---- Signing in and out -----------------------------------------------------------------------------------------

    /// Sends cmd=login with the token where `useToken` is not 0, with the password otherwise. On success the root
    /// credential is replaced and the timer starts; on failure both stay. With `send` 0 nothing is sent and 0 returned.
    int login(CStringT userName, CStringT token, CStringT isp, CStringT password, int useToken, int send);

    /// The same request for a session that has expired: the credential goes to `newCred`, and neither the client's own
    /// nor its timer is touched.
    int getCredForExpired(CStringT& newCred, CStringT userName, CStringT token, CStringT isp, CStringT password,
                          int useToken);

    /// Sends cmd=logout. Always 1, whatever comes of it; the credential, the timer and the last message stay.
    int logout(const CStringT& cred);

    /// Sends cmd=get for sessionInfo, which also keeps the session alive. On success the refresh interval becomes half
    /// the session's duration, or one hour where the reply names none. The timer is not re-armed.
    int getSessionInfo(const CStringT& cred);

    /// Sends cmd=cloneSession: a further credential of the session, for one workspace unless `workspace` is empty.
    /// Re-arms the timer.
    int cloneSession(const CStringT& cred, const CStringT& workspace, CStringT& newCred);

    /// The refresh tick: reads the session with the root credential and re-arms the timer. Called by the timer window.
    void OnTimer(unsigned int timerID);

    // ---- Commands of the caller's own making ------------------------------------------------------------------------

    /// Sends `command` as it stands with the credential behind it. 1 where the reply's result is SUCCESS.
    /// The timer is not re-armed.
    int callWapi(const CStringT& cred, const CStringT& command);

    /// Sends `command` to `url` with the header lines of `headers`: as a form by METHOD_POST, joined to the URL behind
    /// "?" otherwise; where `withCred` is not 0 the credential follows it and the reply's result decides, else the
    /// result is 0. `reply` receives whatever came back, and nothing without a connection. A command that contains
    /// "cmd=login" is not sent. The last message and the timer are left alone.
    int WapiProxyCall(const CStringT& cred, const CStringT& command, METHOD_TYPE method, const CStringT& url,
                      const CStringT& headers, int withCred, CStringT& reply);

    // ---- Workspaces -------------------------------------------------------------------------------------------------

    /// Sends cmd=execute, task=AddTabs: a new workspace with its first tabs; a discussion room too where `type` is 0.
    /// `workspaceID` receives its ID. An empty name is refused without a request, with a last message.
    /// Re-arms the timer.
    int createSpace(const CStringT& cred, const CStringT& name, std::vector<WKSP_Field_Value>& fields,
                    CStringT& workspaceID, int type, int favourite);

    /// Sends cmd=execute, task=RunScript: the user's workspaces with the user's role in each are appended to `spaces`,
    /// and the invitations addressed to the user replace those in `invitations`. The second and third text are not
    /// used. Re-arms the timer.
    int GetWkspList(const CStringT& cred, const CStringT& extra1, const CStringT& extra2,
                    std::vector<SpaceForList>& spaces, std::vector<CZelSpaceInvite>& invitations);

    /// Does nothing and returns 1.
    int GetSpacesTest(const CStringT& extra1, const CStringT& extra2);

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

    int post(const CStringT& body, CXMLWapiCommonResponse& parser);
    int doRequest(const CStringT& url, const CStringT& body, CStringT& reply, CXMLWapiCommonResponse& parser,
                  METHOD_TYPE method, CStringT extra);
    int doRequest(const CStringT& url, const CStringT& body, CXMLWapiCommonResponse& parser, METHOD_TYPE method);
    CStringT buildObjectRequest(const CStringT& cred, OBJ_TYPE type, CStringT id);

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
};
