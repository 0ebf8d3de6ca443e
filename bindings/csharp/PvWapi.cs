// The client of the workspace service's XML web API for C#. Written by capi/generate.py. This file is all that a
// project needs of it; at run time the library pvwapi_c is found as the system finds libraries.
using System;
using System.Collections.Generic;
using System.Runtime.ExceptionServices;
using System.Runtime.InteropServices;
using System.Text;

namespace Pvwapi
{
    /// <summary>Why the last request got no whole reply.</summary>
    public enum NetworkCause
    {
        None = 0,
        /// <summary>no URL, or neither http nor https</summary>
        BadAddress = 1,
        NoSuchHost = 2,
        Refused = 3,
        Unreachable = 4,
        ConnectTimeout = 5,
        /// <summary>the proxy is not there, or refused</summary>
        Proxy = 6,
        /// <summary>unknown or self-signed authority</summary>
        TlsUntrusted = 7,
        /// <summary>the certificate is another host's</summary>
        TlsWrongName = 8,
        /// <summary>or not yet valid</summary>
        TlsExpired = 9,
        /// <summary>no common version, broken handshake</summary>
        TlsFailed = 10,
        /// <summary>the connection ended before the first byte of a reply</summary>
        Closed = 11,
        /// <summary>it ended inside the reply</summary>
        CutOff = 12,
        /// <summary>what came is no reply</summary>
        NotHttp = 13,
        TooLarge = 14,
        /// <summary>60 s without a byte</summary>
        Silence = 15,
        Deadline = 16,
        /// <summary>by Cancel, or by a listener that returned false</summary>
        Cancelled = 17,
        /// <summary>memory, descriptors</summary>
        Local = 18,
    }

    /// <summary>How a command goes out.</summary>
    public enum Method
    {
        Get = 0,
        Post = 1,
    }

    /// <summary>What a member of a workspace is, and what an invitee is to become.</summary>
    public enum InviteAs
    {
        Member = 1,
        Admin = 2,
    }

    /// <summary>What happens in a workspace.</summary>
    public enum Event
    {
        StartMeeting = 0,
        StartVoice = 1,
        StartTelephony = 2,
        EndMeeting = 3,
        EndVoice = 4,
        EndTelephony = 5,
    }

    public sealed class Message
    {
        public int Code;
        /// <summary>the service's reason, or the library's own text</summary>
        public string Reason = "";
        /// <summary>the service's exception identifier</summary>
        public string ExceptionID = "";
        /// <summary>the whole reply of the failed request</summary>
        public string Response = "";
        public int Reserved;
    }

    /// <summary>One attribute of a workspace. Field 0 is the description, which stands in CDATA; entries with any other
    /// field are skipped.</summary>
    public sealed class WorkspaceField
    {
        public int Field;
        public string Value = "";
    }

    /// <summary>One extension field of a user: 0 the host name, 1 the web-site URL, 2 the client's build, 3 its
    /// version; any other is skipped. The value stands in XML.</summary>
    public sealed class UserField
    {
        public int Type;
        public string Value = "";
    }

    public sealed class Tab
    {
        public string ID = "";
        public string Name = "";
        /// <summary>The service's tab type, a number as text: 0 plain, 1 discussion, 2 files.</summary>
        public string Type = "";
        /// <summary>The tab's place in the order of tabs.</summary>
        public int Position;
    }

    public sealed class Member
    {
        public string UserID = "";
        public string UserName = "";
        /// <summary>always "accepted" for a member read from a workspace</summary>
        public string Status = "";
        public int Reserved;
        public string Email = "";
        /// <summary>1 member, 2 administrator; 0 while unknown</summary>
        public int Role;
    }

    /// <summary>One line of the list of the user's workspaces.</summary>
    public sealed class ListedSpace
    {
        public string WorkspaceID = "";
        public string WorkspaceName = "";
        /// <summary>always "accepted": the user is a member of what is listed</summary>
        public string Status = "";
        /// <summary>the owner's</summary>
        public string UserID = "";
        public string UserName = "";
        public string Type = "";
        /// <summary>"true" or "false", as the service sent it</summary>
        public string IsTemplate = "";
        public string NamespaceID = "";
        public string Description = "";
        public string SpaceIconURL = "";
        /// <summary>1 member, 2 administrator; 0 while unknown</summary>
        public int Role;
    }

    /// <summary>An invitation to a workspace.</summary>
    public sealed class SpaceInvite
    {
        public string SpaceInviteID = "";
        public string Expires = "";
        public string LastModifiedTime = "";
        public string Status = "";
        public string WorkspaceID = "";
        public string CreateTime = "";
        public string StatusChanged = "";
        /// <summary>the invitee: a user ID, a user name or an e-mail address</summary>
        public string UserDescriptor = "";
        public string UserName = "";
        public string WorkspaceName = "";
        public string OwnerID = "";
        public string OwnerName = "";
        public int InviteType;
        /// <summary>a WAPI_INVITEAS_TYPE</summary>
        public int InviteAsType;
    }

    public sealed class Space
    {
        public string WorkspaceID = "";
        public string WorkspaceName = "";
        public string Type = "";
        public string IsTemplate = "";
        /// <summary>the owner's</summary>
        public string UserID = "";
        public string UserName = "";
        public string NamespaceID = "";
        public string NamespaceName = "";
        public string CreateTime = "";
        public string LastModifiedTime = "";
        public string GroupName = "";
        public string GroupID = "";
        public string DescriptionText = "";
        public string DescriptionIcon = "";
        public string DiscussionTab = "";
        public string FilesTab = "";
        public string SpaceIconURL = "";
        public List<Member> Members = new List<Member>();
        public List<Tab> Tabs = new List<Tab>();
        /// <summary>the type in the low bits, 16 for a template; 0 while unknown</summary>
        public int Kind;
    }

    public sealed class SpaceAccess
    {
        public string SetWorkspaceAccess = "";
        public string DeleteWorkspaceAccess = "";
        public string BulkSpaceInviteAccess = "";
        public string CreateChatRoomAccess = "";
        public string JoinSpaceAccess = "";
        public string CreateDocAccess = "";
        public string SetWorkspaceReason = "";
        public string DeleteWorkspaceReason = "";
        public string BulkSpaceInviteReason = "";
        public string CreateChatRoomReason = "";
        public string JoinSpaceReason = "";
        public string CreateDocReason = "";
    }

    public sealed class DocAccess
    {
        public string SetDocAccess = "";
        public string DeleteDocAccess = "";
        public string SetDocReason = "";
        public string DeleteDocReason = "";
    }

    public sealed class RoomAccess
    {
        public string SetChatRoomAccess = "";
        public string DeleteChatRoomAccess = "";
        public string CreateChatEntryAccess = "";
        public string SetChatRoomReason = "";
        public string DeleteChatRoomReason = "";
        public string CreateChatEntryReason = "";
    }

    /// <summary>One answered question: may the user `cmd` ("get" or "set") the workspace `id`?</summary>
    public sealed class RoleItem
    {
        public string Cmd = "";
        public string Id = "";
        public string Access = "";
    }

    /// <summary>One invitation to send; the last five are the reply's own.</summary>
    public sealed class Invitation
    {
        public string WorkspaceID = "";
        /// <summary>a user ID or an e-mail address</summary>
        public string User = "";
        /// <summary>"EMAIL" for one that carries a personal message</summary>
        public string InviteMethod = "";
        public string Status = "";
        /// <summary>the invitee's instant-messaging provider</summary>
        public string IsproviderID = "";
        public int InviteAs;
        public string UserID = "";
        public string UserName = "";
        public string InviteType = "";
        public string EmailSent = "";
        public string Email = "";
    }

    /// <summary>An identity provider of the user.</summary>
    public sealed class IsProvider
    {
        public string ISProviderID = "";
        public string ISProviderName = "";
        /// <summary>the user's name there</summary>
        public string UserName = "";
        public string NamespaceID = "";
    }

    public sealed class UserConfigInfo
    {
        public string UserID = "";
        public string UserName = "";
        public string Email = "";
        public string FirstName = "";
        public string LastName = "";
        public string NamespaceID = "";
        /// <summary>of the last provider</summary>
        public string ISProviderID = "";
        /// <summary>the audio/video account, with the password as the service returns it</summary>
        public string QueltID = "";
        public string Password = "";
        public string QueltAVToken = "";
        public string QueltDesktopShareURL = "";
        public string QueltAudioOrVisualURL = "";
        public string HostName = "";
        public string WebsiteURL = "";
        public List<IsProvider> ISProviders = new List<IsProvider>();
    }

    public sealed class UserProfile
    {
        public string UserID = "";
        public string FirstName = "";
        public string LastName = "";
        public string MiddleName = "";
    }

    /// <summary>1 where a feature is allowed, 0 elsewhere.</summary>
    public sealed class Policy
    {
        public int AutomaticUpdates;
        public int PremiumServices;
        public int SecureCollaboration;
        public int IMInt;
        public int IMExt;
        public int DisableIMCatchInt;
        public int DisableIMCatchExt;
        public int LocalArchive;
        public int VoIPInt;
        public int VoIPExt;
        public int VideoInt;
        public int VideoExt;
        public int DesktopShareInt;
        public int DesktopShareExt;
        public int RemoteControlInt;
        public int RemoteControlExt;
        public int FileTransferInt;
        public int FileTransferExt;
        public int FileXferVirusScan;
        public int HasSpaces;
        public int CreateWorkspace;
    }

    public sealed class TemplateItem
    {
        public string Name = "";
        public string ID = "";
        public string Description = "";
        public int Type;
    }

    public sealed class Library
    {
        public string Name = "";
        public string ID = "";
        /// <summary>1, 2 or 3; 0 for any other</summary>
        public int Type;
        public List<TemplateItem> Templates = new List<TemplateItem>();
    }

    public sealed class LibraryApp
    {
        public string Name = "";
        public string ID = "";
        public string CurrentDir = "";
        public string Status = "";
        public string Package = "";
        /// <summary>this and the identity are told of top-level applications only</summary>
        public string AppType = "";
        public string IdentityDescription = "";
        public string IdentityName = "";
        public bool TopLevel;
    }

    public sealed class AppLibrary
    {
        public string Name = "";
        public string ID = "";
        public string Type = "";
        public List<LibraryApp> Apps = new List<LibraryApp>();
    }

    public sealed class SpaceCountItem
    {
        public string WorkspaceID = "";
        /// <summary>read back: the notification count, or the activity value</summary>
        public int Count;
        public int ActiveMembersCount;
        public int UnreadMessageCount;
    }


    /// <summary>One exchange as it goes over the wire.</summary>
    public sealed class Exchange
    {
        public Method Method;
        /// <summary>where it goes, each redirect by itself</summary>
        public string Url;
        /// <summary>"Name: value" each; the system adds host and length</summary>
        public List<string> Headers = new List<string>();
        public byte[] Body;
        /// <summary>0 before it begins, -1 where no whole reply came</summary>
        public int Status;
        public byte[] Reply;
        public uint Milliseconds;
    }

    // ---- Failures ----

    /// <summary>A call that failed: the service refused it, unless the exception is of a kind of its own.</summary>
    public class WapiException : Exception
    {
        internal WapiException(string operation, Message message, string why = null)
            : base(operation + ": " + (why ?? (message.Reason != "" ? message.Reason : "failed without a reason"))
                + (why == null && message.ExceptionID != "" ? " (" + message.ExceptionID + ")" : ""))
        {
            Reason = message.Reason;
            ExceptionID = message.ExceptionID;
            Response = message.Response;
        }

        /// <summary>The service's reason, or the library's own; may be empty.</summary>
        public string Reason { get; }

        /// <summary>The service's exception identifier, such as "KZN:SessionExpired".</summary>
        public string ExceptionID { get; }

        /// <summary>The whole reply.</summary>
        public string Response { get; }
    }

    /// <summary>The library refused the call, so that nothing was sent.</summary>
    public class NotSentException : WapiException
    {
        internal NotSentException(string operation, Message message) : base(operation, message) { }
    }

    /// <summary>No whole reply came.</summary>
    public class NetworkException : WapiException
    {
        internal NetworkException(string operation, Message message, NetworkCause cause, string text)
            : base(operation, message, text != "" ? text : null)
        {
            Cause = cause;
            CauseText = text;
        }

        public NetworkCause Cause { get; }

        /// <summary>The cause in the system's own words, with the host and port that were meant.</summary>
        public string CauseText { get; }
    }

    /// <summary>The call was ended by Cancel, or by a listener.</summary>
    public class CancelledException : NetworkException
    {
        internal CancelledException(string operation, Message message, NetworkCause cause, string text)
            : base(operation, message, cause, text) { }
    }

    /// <summary>The call took longer than its deadline.</summary>
    public class DeadlineException : NetworkException
    {
        internal DeadlineException(string operation, Message message, NetworkCause cause, string text)
            : base(operation, message, cause, text) { }
    }

    // ---- The library as a whole ----

    public static class Wapi
    {
        /// <summary>The version of the library, such as "1.0.0".</summary>
        public static string Version { get { return Marshal.PtrToStringAnsi(Native.pvw_version()); } }

        /// <summary>What the process's log takes from now on: 0 nothing, 1 errors, 2 warnings too, 3 information too, 4
        /// everything, as at first.</summary>
        public static void SetLog(int maximumLevel) { Native.pvw_set_log(maximumLevel); }

        /// <summary>The text as an XML document can carry it: "&amp;", "&lt;" and "&gt;" become references, and what
        /// XML has no place for is dropped.</summary>
        public static string XmlText(string text)
        {
            using (var call = new Call())
            {
                TextInC xml;
                int outcome = Native.pvw_xml_text(call.Text(text), out xml, out call.Result);
                if (outcome == 0) throw new OutOfMemoryException();
                return xml.Read();
            }
        }

        /// <summary>A descriptor that becomes readable when a tick of the calling thread is due; -1 on Windows.
        /// </summary>
        public static int MessageLoopFd { get { return Native.pvw_message_loop_fd(); } }

        /// <summary>Delivers what is due on the calling thread, without waiting, and returns how many ticks that
        /// were.</summary>
        public static int DispatchPendingMessages() { return Native.pvw_dispatch_pending_messages(); }
    }

    // ---- The client ----

    /// <summary>One user's connection to the service. A call that fails throws a WapiException, or one of its kinds.
    /// A client belongs to the thread that made it; Cancel alone may come from another one. Where an operation is given
    /// no credential it takes that of the session.</summary>
    public sealed class Client : IDisposable
    {
        // A client that nobody disposes of is told of by the library for as long as its timer ticks.
        static readonly Dictionary<IntPtr, Client> alive = new Dictionary<IntPtr, Client>();

        IntPtr client;
        bool sent;
        Exception thrown;
        string unsentName;  // what was not sent last, and why
        Message unsentMessage;
        Action<bool> refreshListener;
        Func<Exchange, bool> exchangeListener;
        Func<ulong, ulong, bool> transferProgress;

        // What the library calls lives as long as the client does; whom to tell may change in the middle of a call.
        readonly Native.RefreshListener refreshed;
        readonly Native.ExchangeListener exchanged;
        readonly Native.TransferProgress transferred;

        /// <summary>`url` is the operation endpoint, such as "http://host/kznconnect/op.do".</summary>
        public Client(string url) : this()
        {
            if (Native.pvw_abi_version() < Native.AbiVersion) throw new DllNotFoundException("pvwapi_c is too old");
            using (var call = new Call())
                if (Native.pvw_client_new(call.Text(url), out client) == 0) throw new OutOfMemoryException();
            Listen();
        }

        Client()
        {
            refreshed = (context, result) => { if (refreshListener != null) refreshListener(result == 1); };
            exchanged = (context, exchange) =>
            {
                sent = true;
                return exchangeListener == null ? 1 : Answer(() => exchangeListener(ExchangeInC.Read(exchange)));
            };
            transferred = (context, done, size) =>
                transferProgress == null ? 1 : Answer(() => transferProgress((ulong)done, (ulong)size));
        }

        void Listen()
        {
            lock (alive) alive.Add(client, this);
            Native.pvw_on_refresh(client, refreshed, IntPtr.Zero);
            Native.pvw_on_exchange(client, exchanged, IntPtr.Zero);
            Native.pvw_on_transfer_progress(client, transferred, IntPtr.Zero);
        }

        /// <summary>A further client that shares the timer, and holds everything else for itself.</summary>
        public Client Copy()
        {
            ExpectOpen();
            var copy = new Client { refreshListener = refreshListener, exchangeListener = exchangeListener,
                                    transferProgress = transferProgress };
            if (Native.pvw_client_copy(client, out copy.client) == 0) throw new OutOfMemoryException();
            copy.Listen();
            return copy;
        }

        /// <summary>Ends the client, on the thread that made it; the session at the service lives on, unless it was
        /// ended with Logout.</summary>
        public void Dispose()
        {
            Native.pvw_client_free(client);
            lock (alive) alive.Remove(client);
            client = IntPtr.Zero;
        }

        /// <summary>Begins a session with the password.</summary>
        public void SignIn(string userName, string password) { Login(userName, "", "", password, 0, 1); }

        /// <summary>Ends the call that is running; without one nothing happens. From any thread.</summary>
        public void Cancel() { Native.pvw_cancel(client); }

        /// <summary>How long each call from now on may take as a whole; 0, the default, is no such limit.</summary>
        public void SetDeadline(uint milliseconds)
        {
            ExpectOpen();
            Native.pvw_set_deadline(client, milliseconds);
        }

        /// <summary>The refresh tick: reads the session with the root credential. Called by the timer itself.</summary>
        public void OnTimer(uint timerID = 1)
        {
            ExpectOpen();
            Native.pvw_on_timer(client, timerID);
        }

        /// <summary>Told after each refresh by the timer, with its result. It may do anything, but must not throw.
        /// </summary>
        public void OnRefresh(Action<bool> listener) { refreshListener = listener; }

        /// <summary>Told of each exchange before it begins and when it is over. False before it begins sends nothing.
        /// It must not call the client but for Cancel; what it throws ends the call, and is thrown there.</summary>
        public void OnExchange(Func<Exchange, bool> listener) { exchangeListener = listener; }

        /// <summary>Told of the bytes done and the whole as a picture goes up or comes down. False ends the transfer.
        /// </summary>
        public void OnTransferProgress(Func<ulong, ulong, bool> progress) { transferProgress = progress; }

        // ---- What operations are made of ----

        int Answer(Func<bool> listener)
        {
            try
            {
                return listener() ? 1 : 0;
            }
            catch (Exception found)  // none may go through C
            {
                thrown = found;
                return 0;
            }
        }

        string Cred(string cred) { return cred ?? GetRootCred(); }

        void ExpectOpen()
        {
            if (client == IntPtr.Zero) throw new ObjectDisposedException("Pvwapi.Client");
        }

        /// What the client holds; only memory can be missing.
        T Ask<T>(Func<Call, int> function, Func<T> read)
        {
            ExpectOpen();
            using (var call = new Call())
            {
                if (function(call) == 0) throw new OutOfMemoryException();
                return read();
            }
        }

        T Operate<T>(string name, Func<Call, int> function, Func<T> read)
        {
            ExpectOpen();
            var before = GetLstMsg();
            using (var call = new Call())
            {
                if (Listened(function, call) == 0) throw Failure(name, before);
                return read();
            }
        }

        /// One whose outputs come back whatever becomes of it.
        T OperateAlways<T>(Func<Call, int> function, Func<int, T> read)
        {
            ExpectOpen();
            using (var call = new Call()) return read(Listened(function, call));
        }

        /// What a listener throws meanwhile is thrown here.
        int Listened(Func<Call, int> function, Call call)
        {
            sent = false;
            thrown = null;
            int outcome = function(call);
            var found = thrown;
            thrown = null;
            if (found != null) ExceptionDispatchInfo.Capture(found).Throw();
            return outcome;
        }

        WapiException Failure(string name, Message before)
        {
            var message = GetLstMsg();
            var cause = (NetworkCause)GetNetworkErrorKind();
            if (sent)
            {
                unsentName = null;
                return GetNetworkError() == 0 ? new WapiException(name, message) : Network(name, message, cause);
            }
            bool isOwn = !Same(message, before) || (unsentName == name && Same(unsentMessage, message));
            unsentName = isOwn ? name : null;
            unsentMessage = message;
            if (message.Reason.StartsWith("Network error.", StringComparison.Ordinal)
                && (isOwn || HasBadAddress(message, cause)))
                return Network(name, message, cause);
            return new NotSentException(name, isOwn ? message : new Message());
        }

        static bool Same(Message one, Message other)
        {
            return one.Reason == other.Reason && one.ExceptionID == other.ExceptionID
                && one.Response == other.Response;
        }

        /// Each operation sends nothing then, with the same message.
        bool HasBadAddress(Message message, NetworkCause cause)
        {
            return cause == NetworkCause.BadAddress && message.Reason.EndsWith(GetOpUrl(), StringComparison.Ordinal);
        }

        WapiException Network(string name, Message message, NetworkCause cause)
        {
            string text = GetNetworkErrorText();
            if (cause == NetworkCause.Cancelled) return new CancelledException(name, message, cause, text);
            if (cause == NetworkCause.Deadline) return new DeadlineException(name, message, cause, text);
            return new NetworkException(name, message, cause, text);
        }

        /// <summary>The signed-in user's ID, empty until the user's configuration has been read.</summary>
        public string GetUserId()
        {
            var userIDInC = default(TextInC);
            return Ask(call => Native.pvw_get_user_id(client, out userIDInC, out call.Result), () => userIDInC.Read());
        }

        /// <summary>The same for the namespace's ID.</summary>
        public string GetNamespaceId()
        {
            var namespaceIDInC = default(TextInC);
            return Ask(call => Native.pvw_get_namespace_id(client, out namespaceIDInC, out call.Result),
                () => namespaceIDInC.Read());
        }

        /// <summary>The session credential that login obtained and that the timer refreshes.</summary>
        public string GetRootCred()
        {
            var credInC = default(TextInC);
            return Ask(call => Native.pvw_get_root_cred(client, out credInC, out call.Result), () => credInC.Read());
        }

        /// <summary>Replaces it.</summary>
        public void SetRootCred(string cred)
        {
            Ask(call => Native.pvw_set_root_cred(client, call.Text(cred)), () => 0);
        }

        /// <summary>Why the last request failed; cleared by one that succeeds.</summary>
        public Message GetLstMsg()
        {
            var messageInC = default(IntPtr);
            return Ask(call => Native.pvw_get_lst_msg(client, out messageInC, out call.Result),
                () => MessageInC.Read(messageInC));
        }

        /// <summary>1 when the last request got no whole reply: no server was reached, the connection broke, or the
        /// host stopped the transfer itself. 0 when it got any reply.</summary>
        public int GetNetworkError()
        {
            var errorInC = default(int);
            return Ask(call => Native.pvw_get_network_error(client, out errorInC), () => errorInC);
        }

        /// <summary>The cause of it, one of NetworkCause: NetworkCause.None where the last request got a reply, and
        /// whenever there is no network error, but for WapiProxyCall, which leaves that alone and still says here what
        /// it met. Logout touches neither.</summary>
        public int GetNetworkErrorKind()
        {
            var kindInC = default(int);
            return Ask(call => Native.pvw_get_network_error_kind(client, out kindInC), () => kindInC);
        }

        /// <summary>The same in the system's own words, with the host and port that were meant; empty for
        /// NetworkCause.None.</summary>
        public string GetNetworkErrorText()
        {
            var textInC = default(TextInC);
            return Ask(call => Native.pvw_get_network_error_text(client, out textInC, out call.Result),
                () => textInC.Read());
        }

        /// <summary>The period of the timer: one hour until GetSessionInfo has read half the session's
        /// duration.</summary>
        public uint GetRefreshInterval()
        {
            var millisecondsInC = default(uint);
            return Ask(call => Native.pvw_get_refresh_interval(client, out millisecondsInC), () => millisecondsInC);
        }

        /// <summary>The endpoint of operations.</summary>
        public string GetOpUrl()
        {
            var urlInC = default(TextInC);
            return Ask(call => Native.pvw_get_op_url(client, out urlInC, out call.Result), () => urlInC.Read());
        }

        /// <summary>That of calls without a session.</summary>
        public string GetNullSessionUrl()
        {
            var urlInC = default(TextInC);
            return Ask(call => Native.pvw_get_null_session_url(client, out urlInC, out call.Result),
                () => urlInC.Read());
        }

        /// <summary>That of uploads.</summary>
        public string GetUploadUrl()
        {
            var urlInC = default(TextInC);
            return Ask(call => Native.pvw_get_upload_url(client, out urlInC, out call.Result), () => urlInC.Read());
        }

        /// <summary>That of documents.</summary>
        public string GetDmsUrl()
        {
            var urlInC = default(TextInC);
            return Ask(call => Native.pvw_get_dms_url(client, out urlInC, out call.Result), () => urlInC.Read());
        }

        /// <summary>Sends cmd=login with the token where `useToken` is not 0, with the password otherwise. On success
        /// the root credential is replaced and the timer starts; on failure both stay. With `send` 0 nothing is sent,
        /// which fails as NotSentException.</summary>
        public void Login(string userName, string token, string isp, string password, int useToken, int send)
        {
            Operate("Login", call => Native.pvw_login(client, call.Text(userName), call.Text(token), call.Text(isp),
                call.Text(password), useToken, send), () => 0);
        }

        /// <summary>The same request for a session that has expired: the credential goes to `newCred`, and neither the
        /// client's own nor its timer is touched.</summary>
        public string GetCredForExpired(string userName, string token, string isp, string password, int useToken)
        {
            var newCredInC = default(TextInC);
            return Operate("GetCredForExpired", call => Native.pvw_get_cred_for_expired(client, out newCredInC,
                call.Text(userName), call.Text(token), call.Text(isp), call.Text(password), useToken, out call.Result),
                () => newCredInC.Read());
        }

        /// <summary>Sends cmd=logout. Succeeds whatever comes of it; the credential, the timer and the last message
        /// stay.</summary>
        public void Logout(string cred = null)
        {
            Operate("Logout", call => Native.pvw_logout(client, call.Text(Cred(cred))), () => 0);
        }

        /// <summary>Sends cmd=get for sessionInfo, which also keeps the session alive. On success the refresh interval
        /// becomes half the session's duration, or one hour where the reply names none. The timer is not
        /// re-armed.</summary>
        public void GetSessionInfo(string cred = null)
        {
            Operate("GetSessionInfo", call => Native.pvw_get_session_info(client, call.Text(Cred(cred))), () => 0);
        }

        /// <summary>Sends cmd=cloneSession: a further credential of the session, for one workspace unless `workspace`
        /// is empty. Re-arms the timer.</summary>
        public string CloneSession(string workspace, string cred = null)
        {
            var newCredInC = default(TextInC);
            return Operate("CloneSession", call => Native.pvw_clone_session(client, call.Text(Cred(cred)),
                call.Text(workspace), out newCredInC, out call.Result), () => newCredInC.Read());
        }

        /// <summary>Sends `command`, raw, with the credential behind it. Fails unless the reply's result is SUCCESS.
        /// The timer is not re-armed.</summary>
        public void CallWapi(string command, string cred = null)
        {
            Operate("CallWapi", call => Native.pvw_call_wapi(client, call.Text(Cred(cred)), call.Text(command)),
                () => 0);
        }

        /// <summary>Sends `command` to `url` with the header lines of `headers`: as a form by Method.Post, joined to
        /// the URL behind "?" otherwise; where `withCred` is not 0 the credential follows it and the reply's result
        /// decides, else the result is false. `reply` receives whatever came back also where the result is false, and
        /// nothing without a connection. A command that contains "cmd=login" is not sent. The last message and the
        /// timer are left alone. Raw: command, address and header lines; where the command is joined to the URL, a "#"
        /// in it is encoded and that of the URL is cut off.</summary>
        public (bool Succeeded, string Reply) WapiProxyCall(string command, int method, string url, string headers,
            int withCred, string cred = null)
        {
            var replyInC = default(TextInC);
            return OperateAlways(call => Native.pvw_wapi_proxy_call(client, call.Text(Cred(cred)),
                call.Text(command), method, call.Text(url), call.Text(headers), withCred, out replyInC,
                out call.Result), outcome => (outcome != 0, replyInC.Read()));
        }

        /// <summary>Sends cmd=execute, task=AddTabs: a new workspace with its first tabs; a discussion room too where
        /// `type` is 0. `workspaceID` receives its ID. An empty name is refused without a request, with a last message.
        /// Re-arms the timer. In XML: the name.</summary>
        public string CreateSpace(string name, ICollection<WorkspaceField> fields, int type, int favourite,
            string cred = null)
        {
            var workspaceIDInC = default(TextInC);
            return Operate("CreateSpace", call => Native.pvw_create_space(client, call.Text(Cred(cred)),
                call.Text(name), call.Items(fields, item => WorkspaceFieldInC.Of(call, item)), (UIntPtr)fields.Count,
                out workspaceIDInC, type, favourite, out call.Result), () => workspaceIDInC.Read());
        }

        /// <summary>Sends cmd=execute, task=CloneWorkspace: a new workspace, or a template, with the tabs of another
        /// one. The low four bits of `typeAndFlags` are the type, bit 4 makes a template; a discussion room is made
        /// where the whole is 0. `workspaceID` receives its ID. An empty name is refused without a request or a
        /// message. Re-arms the timer. In XML: the name; raw, and in XML: the ID of the source.</summary>
        public string CloneWksp(string name, string sourceWorkspaceID, int typeAndFlags,
            ICollection<WorkspaceField> fields, int favourite, string cred = null)
        {
            var workspaceIDInC = default(TextInC);
            return Operate("CloneWksp", call => Native.pvw_clone_wksp(client, call.Text(Cred(cred)),
                call.Text(name), call.Text(sourceWorkspaceID), typeAndFlags, call.Items(fields,
                item => WorkspaceFieldInC.Of(call, item)), (UIntPtr)fields.Count, out workspaceIDInC, favourite,
                out call.Result), () => workspaceIDInC.Read());
        }

        /// <summary>Sends cmd=set, type=workspace: the description, and the name where `changeName` is not 0. Refused
        /// without a request: an empty ID, and no name to change with no fields at all. Re-arms the timer. In XML: the
        /// name.</summary>
        public void EditExtWksp(string workspaceID, string name, int changeName, ICollection<WorkspaceField> fields,
            string cred = null)
        {
            Operate("EditExtWksp", call => Native.pvw_edit_ext_wksp(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Text(name), changeName, call.Items(fields,
                item => WorkspaceFieldInC.Of(call, item)), (UIntPtr)fields.Count), () => 0);
        }

        /// <summary>Sends cmd=execute, task=DeleteWorkspace. An empty ID is refused without a request. Re-arms the
        /// timer. In XML: the ID.</summary>
        public void DeleteWksp(string workspaceID, string cred = null)
        {
            Operate("DeleteWksp", call => Native.pvw_delete_wksp(client, call.Text(Cred(cred)),
                call.Text(workspaceID)), () => 0);
        }

        /// <summary>Sends cmd=execute, task=LeaveSpace: the user leaves the workspace. An empty credential or ID is
        /// refused without a request. Re-arms the timer. In XML: the ID.</summary>
        public void LeaveWorkspace(string workspaceID, string cred = null)
        {
            Operate("LeaveWorkspace", call => Native.pvw_leave_workspace(client, call.Text(Cred(cred)),
                call.Text(workspaceID)), () => 0);
        }

        /// <summary>Sends cmd=execute, task=CreateWorkspaceUsingApp: a new workspace made from an application, or blank
        /// where `appName` is exactly "Blank". `workspaceID` receives its ID. Nothing is refused. Re-arms the timer. In
        /// XML: both names; in CDATA: the description.</summary>
        public string CreateSpaceUsingApp(string name, string appName, string description, int favourite, int type,
            string cred = null)
        {
            var workspaceIDInC = default(TextInC);
            return Operate("CreateSpaceUsingApp", call => Native.pvw_create_space_using_app(client,
                call.Text(Cred(cred)), call.Text(name), call.Text(appName), out workspaceIDInC, call.Text(description),
                favourite, type, out call.Result), () => workspaceIDInC.Read());
        }

        /// <summary>Sends cmd=execute, task=SaveWorkspaceAsApp: the workspace becomes an application of the library
        /// `groupID`. `widgetID` receives the application's ID. Nothing is refused. Re-arms the timer. In XML: both IDs
        /// and the name; in CDATA: the description.</summary>
        public string SaveWorkspaceAsApp(string workspaceID, string appName, string groupID, string description,
            string cred = null)
        {
            var widgetIDInC = default(TextInC);
            return Operate("SaveWorkspaceAsApp", call => Native.pvw_save_workspace_as_app(client,
                call.Text(Cred(cred)), call.Text(workspaceID), call.Text(appName), call.Text(groupID), out widgetIDInC,
                call.Text(description), out call.Result), () => widgetIDInC.Read());
        }

        /// <summary>Sends cmd=execute, task=AddTabs: a new plain tab; `tabID` receives its ID. An empty workspace ID or
        /// name is refused without a request. The timer is not re-armed. In XML: the workspace's ID; in CDATA: the
        /// name.</summary>
        public string CreateTab(string workspaceID, string tabName, int tabOrder, string cred = null)
        {
            var tabIDInC = default(TextInC);
            return Operate("CreateTab", call => Native.pvw_create_tab(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Text(tabName), tabOrder, out tabIDInC, out call.Result),
                () => tabIDInC.Read());
        }

        /// <summary>Sends cmd=get, type=workspace for the tabs. Re-arms the timer.</summary>
        public List<Tab> GetTabs(string workspaceID, string cred = null)
        {
            var tabsInC = default(ListInC);
            return Operate("GetTabs", call => Native.pvw_get_tabs(client, call.Text(Cred(cred)),
                call.Text(workspaceID), out tabsInC, out call.Result), () => tabsInC.Read(TabInC.Read));
        }

        /// <summary>Sends cmd=delete, type=tab. An empty ID, and the fixed tabs "commTab" and "docTab", are refused
        /// without a request. The timer is not re-armed. The workspace's ID is not sent.</summary>
        public void DeleteTab(string workspaceID, string tabID, string cred = null)
        {
            Operate("DeleteTab", call => Native.pvw_delete_tab(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Text(tabID)), () => 0);
        }

        /// <summary>Sends cmd=set, type=tab: the tab of that ID takes the name of `tab`. An empty tab or workspace ID
        /// is refused without a request. The timer is not re-armed. In CDATA: the name. The workspace's ID is not
        /// sent.</summary>
        public void EditTab(string workspaceID, Tab tab, string cred = null)
        {
            Operate("EditTab", call => Native.pvw_edit_tab(client, call.Text(Cred(cred)), call.Text(workspaceID),
                call.Record(TabInC.Of(call, tab))), () => 0);
        }

        /// <summary>Sends cmd=set, type=wksp: each tab takes its place. An empty list is refused without a request. The
        /// timer is not re-armed. In XML: the IDs of the tabs.</summary>
        public void EditTabOrder(string workspaceID, ICollection<Tab> tabs, string cred = null)
        {
            Operate("EditTabOrder", call => Native.pvw_edit_tab_order(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Items(tabs, item => TabInC.Of(call, item)), (UIntPtr)tabs.Count), () => 0);
        }

        /// <summary>Posts the picture to the upload endpoint, task=ManageSpaceIcon; `url` receives the address it is
        /// kept under. A picture that cannot be read or is larger than 64 MiB is refused without a request, with a last
        /// message. Re-arms the timer. Credential, path and ID go into a multipart form, where nothing is encoded; the
        /// ID stands in XML, and a quotation mark in the path would end the file's name.</summary>
        public string SetSpaceIcon(string workspaceID, string filePath, string cred = null)
        {
            var urlInC = default(TextInC);
            return Operate("SetSpaceIcon", call => Native.pvw_set_space_icon(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Text(filePath), out urlInC, out call.Result), () => urlInC.Read());
        }

        /// <summary>Fetches the picture into a file of the temporary folder, named after the last component of its
        /// address; `localPath` receives the file's path. Any status but 200, and a file that cannot be written, is a
        /// failure. The timer is not re-armed. Raw: the address and the credential, which is put behind
        /// "?cred=".</summary>
        public string GetSpaceIcon(string iconURL, string cred = null)
        {
            var localPathInC = default(TextInC);
            return Operate("GetSpaceIcon", call => Native.pvw_get_space_icon(client, call.Text(Cred(cred)),
                call.Text(iconURL), out localPathInC, out call.Result), () => localPathInC.Read());
        }

        /// <summary>Sends cmd=execute, task=RunScript: the user's workspaces with the user's role in each, and the
        /// invitations addressed to the user. Re-arms the timer.</summary>
        public (List<ListedSpace> Spaces, List<SpaceInvite> Invitations) GetWkspList(string cred = null)
        {
            var spacesInC = default(ListInC);
            var invitationsInC = default(ListInC);
            return Operate("GetWkspList", call => Native.pvw_get_wksp_list(client, call.Text(Cred(cred)),
                out spacesInC, out invitationsInC, out call.Result), () => (spacesInC.Read(ListedSpaceInC.Read),
                invitationsInC.Read(SpaceInviteInC.Read)));
        }

        /// <summary>Sends cmd=execute, task=RunScript: one workspace, its invitations and the user's rights on it. Its
        /// kind is 0 where the type is none that hosts know. Re-arms the timer. In XML: the ID.</summary>
        public (Space Space, List<SpaceInvite> Invitations, SpaceAccess Access) GetSpaceBatch(string workspaceID,
            string cred = null)
        {
            var spaceInC = default(IntPtr);
            var invitationsInC = default(ListInC);
            var accessInC = default(IntPtr);
            return Operate("GetSpaceBatch", call => Native.pvw_get_space_batch(client, call.Text(Cred(cred)),
                call.Text(workspaceID), out spaceInC, out invitationsInC, out accessInC, out call.Result),
                () => (SpaceInC.Read(spaceInC), invitationsInC.Read(SpaceInviteInC.Read),
                SpaceAccessInC.Read(accessInC)));
        }

        /// <summary>Does nothing.</summary>
        public void GetSpacesTest()
        {
            Operate("GetSpacesTest", call => Native.pvw_get_spaces_test(client), () => 0);
        }

        /// <summary>Sends cmd=execute, task=ProbeAccess for a workspace: bits 0x01 and 0x02 of `tests` ask for changing
        /// and deleting it, 0x20 for joining. `access` has the texts as received. Re-arms the timer. In XML: the
        /// ID.</summary>
        public SpaceAccess ProbeSpaceAccess(string workspaceID, uint tests, string cred = null)
        {
            var accessInC = default(IntPtr);
            return Operate("ProbeSpaceAccess", call => Native.pvw_probe_space_access(client, call.Text(Cred(cred)),
                call.Text(workspaceID), out accessInC, tests, out call.Result), () => SpaceAccessInC.Read(accessInC));
        }

        /// <summary>The same for the rights of no workspace: inviting in bulk, making discussion rooms and documents.
        /// The timer is not re-armed.</summary>
        public SpaceAccess ProbeSpaceAccess2(string cred = null)
        {
            var accessInC = default(IntPtr);
            return Operate("ProbeSpaceAccess2", call => Native.pvw_probe_space_access2(client,
                call.Text(Cred(cred)), out accessInC, out call.Result), () => SpaceAccessInC.Read(accessInC));
        }

        /// <summary>The same for a document. Re-arms the timer. In XML: the ID.</summary>
        public DocAccess ProbeDocAccess(string docID, string cred = null)
        {
            var accessInC = default(IntPtr);
            return Operate("ProbeDocAccess", call => Native.pvw_probe_doc_access(client, call.Text(Cred(cred)),
                call.Text(docID), out accessInC, out call.Result), () => DocAccessInC.Read(accessInC));
        }

        /// <summary>The same for a discussion room. The timer is not re-armed. In XML: the ID.</summary>
        public RoomAccess ProbeChatRoomAccess(string roomID, string cred = null)
        {
            var accessInC = default(IntPtr);
            return Operate("ProbeChatRoomAccess", call => Native.pvw_probe_chat_room_access(client,
                call.Text(Cred(cred)), call.Text(roomID), out accessInC, out call.Result),
                () => RoomAccessInC.Read(accessInC));
        }

        /// <summary>Sends cmd=execute, task=ProbeAccess: may the user get and set each workspace? `roles` has the
        /// answers, one for each question. Re-arms the timer. In XML: the IDs.</summary>
        public List<RoleItem> GetRole(ICollection<string> workspaceIDs, string cred = null)
        {
            var rolesInC = default(ListInC);
            return Operate("GetRole", call => Native.pvw_get_role(client, call.Text(Cred(cred)),
                call.Items(workspaceIDs, call.Text), (UIntPtr)workspaceIDs.Count, out rolesInC, out call.Result),
                () => rolesInC.Read(RoleItemInC.Read));
        }

        /// <summary>Sends cmd=execute, task=RunScript: the same for every workspace that the user shares with another.
        /// Re-arms the timer. In XML: the other user's ID.</summary>
        public List<RoleItem> ProbeAccessAllSpace(string otherUserID, string cred = null)
        {
            var rolesInC = default(ListInC);
            return Operate("ProbeAccessAllSpace", call => Native.pvw_probe_access_all_space(client,
                call.Text(Cred(cred)), call.Text(otherUserID), out rolesInC, out call.Result),
                () => rolesInC.Read(RoleItemInC.Read));
        }

        /// <summary>Sends cmd=get, type=workspace for the members. Re-arms the timer.</summary>
        public List<Member> GetMembers(string workspaceID, string cred = null)
        {
            var membersInC = default(ListInC);
            return Operate("GetMembers", call => Native.pvw_get_members(client, call.Text(Cred(cred)),
                call.Text(workspaceID), out membersInC, out call.Result), () => membersInC.Read(MemberInC.Read));
        }

        /// <summary>Sends cmd=remove, type=workspace for one member. Re-arms the timer. The member's ID stands between
        /// apostrophes in a path, where an apostrophe would end it.</summary>
        public void RemoveSpaceMember(string workspaceID, string memberID, string cred = null)
        {
            Operate("RemoveSpaceMember", call => Native.pvw_remove_space_member(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Text(memberID)), () => 0);
        }

        /// <summary>Sends cmd=execute, task=ChangeRole: administrator for InviteAs.Admin, member for anything else. The
        /// timer is not re-armed. In XML: both IDs.</summary>
        public void ChangeMemberRole(string workspaceID, string memberID, int role, string cred = null)
        {
            Operate("ChangeMemberRole", call => Native.pvw_change_member_role(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Text(memberID), role), () => 0);
        }

        /// <summary>Sends cmd=execute, task=BulkSpaceInvite. The message goes along with each invitation of method
        /// "EMAIL". What comes back are the invitations with each result in the first one of its workspace and invitee
        /// that has none yet; a result without a status leaves that of the invitation. The timer is not re-armed. In
        /// CDATA: the message and each invitee; in XML: the other texts of the invitations.</summary>
        public List<Invitation> InviteMembers(ICollection<Invitation> invitations, string message, string cred = null)
        {
            var invitationsBackInC = default(ListInC);
            return Operate("InviteMembers", call => Native.pvw_invite_members(client, call.Text(Cred(cred)),
                call.Items(invitations, item => InvitationInC.Of(call, item)), (UIntPtr)invitations.Count,
                out invitationsBackInC, call.Text(message), out call.Result),
                () => invitationsBackInC.Read(InvitationInC.Read));
        }

        /// <summary>Sends cmd=delete, type=spaceInvite: withdraws the invitation of one invitee to one workspace.
        /// Re-arms the timer. In XML: the ID; in CDATA: the invitee.</summary>
        public void DelInvt(string workspaceID, string userDescriptor, string cred = null)
        {
            Operate("DelInvt", call => Native.pvw_del_invt(client, call.Text(Cred(cred)), call.Text(workspaceID),
                call.Text(userDescriptor)), () => 0);
        }

        /// <summary>Sends cmd=execute, task=JoinSpace: takes the invitation where `accept` is not 0, refuses it
        /// otherwise. Re-arms the timer. In XML: the ID.</summary>
        public void ResponseInvitation(string workspaceID, int accept, string cred = null)
        {
            Operate("ResponseInvitation", call => Native.pvw_response_invitation(client, call.Text(Cred(cred)),
                call.Text(workspaceID), accept), () => 0);
        }

        /// <summary>Sends cmd=execute, task=RunScript: the workspaces that are favourites under that name, with their
        /// members. One whose workspace is gone is left out. Re-arms the timer. In XML: the name.</summary>
        public List<Space> GetFavoriteSpaceList(string thingName, string cred = null)
        {
            var spacesInC = default(ListInC);
            return Operate("GetFavoriteSpaceList", call => Native.pvw_get_favorite_space_list(client,
                call.Text(Cred(cred)), call.Text(thingName), out spacesInC, out call.Result),
                () => spacesInC.Read(SpaceInC.Read));
        }

        /// <summary>Sends cmd=create, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the
        /// ID.</summary>
        public void CreateFavoriteSpace(string thingName, string workspaceID, string cred = null)
        {
            Operate("CreateFavoriteSpace", call => Native.pvw_create_favorite_space(client, call.Text(Cred(cred)),
                call.Text(thingName), call.Text(workspaceID)), () => 0);
        }

        /// <summary>Sends cmd=delete, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the
        /// ID.</summary>
        public void DeleteFavoriteSpace(string thingName, string workspaceID, string cred = null)
        {
            Operate("DeleteFavoriteSpace", call => Native.pvw_delete_favorite_space(client, call.Text(Cred(cred)),
                call.Text(thingName), call.Text(workspaceID)), () => 0);
        }

        /// <summary>Sends cmd=get, type=user for the user, and keeps user ID and namespace ID in the client. Re-arms
        /// the timer.</summary>
        public UserConfigInfo GetUserConfigureInfo(string cred = null)
        {
            var infoInC = default(IntPtr);
            return Operate("GetUserConfigureInfo", call => Native.pvw_get_user_configure_info(client,
                call.Text(Cred(cred)), out infoInC, out call.Result), () => UserConfigInfoInC.Read(infoInC));
        }

        /// <summary>Sends cmd=execute, task=GetUserProfile for the user IDs in `users`; the profiles come back. Re-arms
        /// the timer. In XML: the IDs.</summary>
        public List<UserProfile> GetUserProfile(ICollection<UserProfile> users, string cred = null)
        {
            var usersBackInC = default(ListInC);
            return Operate("GetUserProfile", call => Native.pvw_get_user_profile(client, call.Text(Cred(cred)),
                call.Items(users, item => UserProfileInC.Of(call, item)), (UIntPtr)users.Count, out usersBackInC,
                out call.Result), () => usersBackInC.Read(UserProfileInC.Read));
        }

        /// <summary>Sends cmd=set, type=user: the user's extension fields. An empty list is refused without a request.
        /// Re-arms the timer.</summary>
        public void EditExtUser(string user, ICollection<UserField> fields, string cred = null)
        {
            Operate("EditExtUser", call => Native.pvw_edit_ext_user(client, call.Text(Cred(cred)), call.Text(user),
                call.Items(fields, item => UserFieldInC.Of(call, item)), (UIntPtr)fields.Count), () => 0);
        }

        /// <summary>Sends cmd=execute, task=CreateRDQAVAccounts: makes the user's audio/video account, which
        /// GetUserConfigureInfo then reads. Re-arms the timer. In XML: the ID.</summary>
        public void CreateRdqavAccount(string user, string cred = null)
        {
            Operate("CreateRdqavAccount", call => Native.pvw_create_rdqav_account(client, call.Text(Cred(cred)),
                call.Text(user)), () => 0);
        }

        /// <summary>Sends cmd=get, type=org for the organisation's addresses. The timer is not re-armed.</summary>
        public (string ChangePasswordURL, string ForgetPasswordURL, string SiteInfoURL,
            string ConnectSupportURL) GetOrgInfo(string cred = null)
        {
            var changePasswordURLInC = default(TextInC);
            var forgetPasswordURLInC = default(TextInC);
            var siteInfoURLInC = default(TextInC);
            var connectSupportURLInC = default(TextInC);
            return Operate("GetOrgInfo", call => Native.pvw_get_org_info(client, call.Text(Cred(cred)),
                out changePasswordURLInC, out forgetPasswordURLInC, out siteInfoURLInC, out connectSupportURLInC,
                out call.Result), () => (changePasswordURLInC.Read(), forgetPasswordURLInC.Read(),
                siteInfoURLInC.Read(), connectSupportURLInC.Read()));
        }

        /// <summary>Sends cmd=get, type=org: `domains` becomes the white list, a comma, and each domain with a comma
        /// behind it. Re-arms the timer.</summary>
        public string GetDomainList(string cred = null)
        {
            var domainsInC = default(TextInC);
            return Operate("GetDomainList", call => Native.pvw_get_domain_list(client, call.Text(Cred(cred)),
                out domainsInC, out call.Result), () => domainsInC.Read());
        }

        /// <summary>Sends cmd=execute, task=ProbeAccess for 21 features: the flag of each that is allowed is 1, every
        /// other 0. Re-arms the timer.</summary>
        public Policy GetPolicyData(string cred = null)
        {
            var policyInC = default(IntPtr);
            return Operate("GetPolicyData", call => Native.pvw_get_policy_data(client, call.Text(Cred(cred)),
                out policyInC, out call.Result), () => PolicyInC.Read(policyInC));
        }

        /// <summary>Sends cmd=execute, task=GetUserLibraries: the libraries with their templates. Re-arms the
        /// timer.</summary>
        public List<Library> GetLibraries(int withTemplates, int withWidgets, int readOnly, string cred = null)
        {
            var librariesInC = default(ListInC);
            return Operate("GetLibraries", call => Native.pvw_get_libraries(client, call.Text(Cred(cred)),
                withTemplates, withWidgets, readOnly, out librariesInC, out call.Result),
                () => librariesInC.Read(LibraryInC.Read));
        }

        /// <summary>Sends cmd=add, type=grp: one template more in a library. Re-arms the timer. In XML: the template's
        /// ID.</summary>
        public void AddTemplateToLibrary(string groupID, string templateID, string cred = null)
        {
            Operate("AddTemplateToLibrary", call => Native.pvw_add_template_to_library(client,
                call.Text(Cred(cred)), call.Text(groupID), call.Text(templateID)), () => 0);
        }

        /// <summary>Sends cmd=execute, task=GetUserLibrariesWithApps: the libraries with their applications. Re-arms
        /// the timer.</summary>
        public List<AppLibrary> GetUserLibrariesWithApps(int readOnly, int withTopLevelApps, string cred = null)
        {
            var librariesInC = default(ListInC);
            return Operate("GetUserLibrariesWithApps", call => Native.pvw_get_user_libraries_with_apps(client,
                call.Text(Cred(cred)), readOnly, withTopLevelApps, out librariesInC, out call.Result),
                () => librariesInC.Read(AppLibraryInC.Read));
        }

        /// <summary>Sends cmd=execute, task=GetWorkspaceNotificationCount for the workspaces in `items`; the counts
        /// come back. Re-arms the timer. Raw: the credential; in XML: the IDs.</summary>
        public List<SpaceCountItem> GetSpaceNotify(ICollection<SpaceCountItem> items, string cred = null)
        {
            var itemsBackInC = default(ListInC);
            return Operate("GetSpaceNotify", call => Native.pvw_get_space_notify(client, call.Text(Cred(cred)),
                call.Items(items, item => SpaceCountItemInC.Of(call, item)), (UIntPtr)items.Count, out itemsBackInC,
                out call.Result), () => itemsBackInC.Read(SpaceCountItemInC.Read));
        }

        /// <summary>The same task with the unread messages and active members of each workspace: the activity values
        /// come back. Re-arms the timer. Raw: the credential; in XML: the IDs.</summary>
        public List<SpaceCountItem> GetSpaceActivity(ICollection<SpaceCountItem> items, string cred = null)
        {
            var itemsBackInC = default(ListInC);
            return Operate("GetSpaceActivity", call => Native.pvw_get_space_activity(client, call.Text(Cred(cred)),
                call.Items(items, item => SpaceCountItemInC.Of(call, item)), (UIntPtr)items.Count, out itemsBackInC,
                out call.Result), () => itemsBackInC.Read(SpaceCountItemInC.Read));
        }

        /// <summary>Sends cmd=execute, task=SendNotificationEvent. A value that is no event is refused without a
        /// request, with a last message. Re-arms the timer. In XML: the ID, the tag and the sender; in CDATA: the
        /// workspace's name and the message.</summary>
        public void SendNotificationEvent(int @event, string workspaceID, string workspaceName, string message,
            string specificTag, string senderUserName, string cred = null)
        {
            Operate("SendNotificationEvent", call => Native.pvw_send_notification_event(client,
                call.Text(Cred(cred)), @event, call.Text(workspaceID), call.Text(workspaceName), call.Text(message),
                call.Text(specificTag), call.Text(senderUserName)), () => 0);
        }

        /// <summary>Sends cmd=create, type=thng: the record of a meeting. Re-arms the timer. In XML: all five
        /// texts.</summary>
        public void WriteMeetingRecord(string workspaceID, string siteName, string meetingID, string hostID,
            string sessionName, string cred = null)
        {
            Operate("WriteMeetingRecord", call => Native.pvw_write_meeting_record(client, call.Text(Cred(cred)),
                call.Text(workspaceID), call.Text(siteName), call.Text(meetingID), call.Text(hostID),
                call.Text(sessionName)), () => 0);
        }
    }

    // ---- What follows is no host's business ----

    /// One call: what it was given lives until it is over, and what it has brought until it was read.
    sealed class Call : IDisposable
    {
        public IntPtr Result;
        readonly List<IntPtr> kept = new List<IntPtr>();

        IntPtr Keep(IntPtr memory)
        {
            kept.Add(memory);
            return memory;
        }

        public TextInC Text(string text)
        {
            text = text ?? "";
            return new TextInC { Units = Keep(Marshal.StringToHGlobalUni(text)), Length = (UIntPtr)text.Length };
        }

        public IntPtr Record<T>(T record) where T : struct
        {
            IntPtr place = Keep(Marshal.AllocHGlobal(Marshal.SizeOf(typeof(T))));
            Marshal.StructureToPtr(record, place, false);
            return place;
        }

        public IntPtr Items<R, T>(ICollection<R> items, Func<R, T> convert) where T : struct
        {
            int size = Marshal.SizeOf(typeof(T));
            IntPtr place = Keep(Marshal.AllocHGlobal(Math.Max(1, size * items.Count)));
            int at = 0;
            foreach (R item in items) Marshal.StructureToPtr(convert(item), place + size * at++, false);
            return place;
        }

        public void Dispose()
        {
            if (Result != IntPtr.Zero) Native.pvw_result_free(Result);
            foreach (IntPtr memory in kept) Marshal.FreeHGlobal(memory);
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct TextInC
    {
        public IntPtr Units;
        public UIntPtr Length;

        public string Read() { return Units == IntPtr.Zero ? "" : Marshal.PtrToStringUni(Units, (int)Length); }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct BytesInC
    {
        public IntPtr Bytes;
        public UIntPtr Length;

        public byte[] Read()
        {
            var bytes = new byte[(int)Length];
            if (bytes.Length > 0) Marshal.Copy(Bytes, bytes, 0, bytes.Length);
            return bytes;
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct ListInC
    {
        public IntPtr Items;
        public UIntPtr Count;

        public List<T> Read<T>(Func<IntPtr, T> read)
        {
            var list = new List<T>((int)Count);
            for (int at = 0; at < (int)Count; ++at) list.Add(read(Marshal.ReadIntPtr(Items, at * IntPtr.Size)));
            return list;
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct ExchangeInC
    {
        public UIntPtr Size;
        public int Method;
        public BytesInC Url;
        public IntPtr Headers;
        public UIntPtr HeaderCount;
        public IntPtr Body;
        public UIntPtr BodyCount;
        public int Status;
        public BytesInC Reply;
        public uint Milliseconds;

        static BytesInC At(IntPtr first, int index)
        {
            return (BytesInC)Marshal.PtrToStructure(first + index * Marshal.SizeOf(typeof(BytesInC)), typeof(BytesInC));
        }

        public static Exchange Read(IntPtr place)
        {
            var from = Native.Whole<ExchangeInC>(place);
            var body = new List<byte>();
            var to = new Exchange { Method = (Method)from.Method, Url = Encoding.UTF8.GetString(from.Url.Read()),
                                    Status = from.Status, Reply = from.Reply.Read(), Milliseconds = from.Milliseconds };
            for (int at = 0; at < (int)from.HeaderCount; ++at)
                to.Headers.Add(Encoding.UTF8.GetString(At(from.Headers, at).Read()));
            for (int at = 0; at < (int)from.BodyCount; ++at) body.AddRange(At(from.Body, at).Read());
            to.Body = body.ToArray();
            return to;
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct MessageInC
    {
        public UIntPtr Size;
        public int Code;
        public TextInC Reason;
        public TextInC ExceptionID;
        public TextInC Response;
        public int Reserved;

        public static Message Read(IntPtr place)
        {
            var from = Native.Whole<MessageInC>(place);
            return new Message
            {
                Code = from.Code,
                Reason = from.Reason.Read(),
                ExceptionID = from.ExceptionID.Read(),
                Response = from.Response.Read(),
                Reserved = from.Reserved,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct WorkspaceFieldInC
    {
        public UIntPtr Size;
        public int Field;
        public TextInC Value;

        public static WorkspaceFieldInC Of(Call call, WorkspaceField from)
        {
            return new WorkspaceFieldInC
            {
                Size = (UIntPtr)Marshal.SizeOf(typeof(WorkspaceFieldInC)),
                Field = from.Field,
                Value = call.Text(from.Value),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct UserFieldInC
    {
        public UIntPtr Size;
        public int Type;
        public TextInC Value;

        public static UserFieldInC Of(Call call, UserField from)
        {
            return new UserFieldInC
            {
                Size = (UIntPtr)Marshal.SizeOf(typeof(UserFieldInC)),
                Type = from.Type,
                Value = call.Text(from.Value),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct TabInC
    {
        public UIntPtr Size;
        public TextInC ID;
        public TextInC Name;
        public TextInC Type;
        public int Position;

        public static Tab Read(IntPtr place)
        {
            var from = Native.Whole<TabInC>(place);
            return new Tab
            {
                ID = from.ID.Read(),
                Name = from.Name.Read(),
                Type = from.Type.Read(),
                Position = from.Position,
            };
        }

        public static TabInC Of(Call call, Tab from)
        {
            return new TabInC
            {
                Size = (UIntPtr)Marshal.SizeOf(typeof(TabInC)),
                ID = call.Text(from.ID),
                Name = call.Text(from.Name),
                Type = call.Text(from.Type),
                Position = from.Position,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct MemberInC
    {
        public UIntPtr Size;
        public TextInC UserID;
        public TextInC UserName;
        public TextInC Status;
        public int Reserved;
        public TextInC Email;
        public int Role;

        public static Member Read(IntPtr place)
        {
            var from = Native.Whole<MemberInC>(place);
            return new Member
            {
                UserID = from.UserID.Read(),
                UserName = from.UserName.Read(),
                Status = from.Status.Read(),
                Reserved = from.Reserved,
                Email = from.Email.Read(),
                Role = from.Role,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct ListedSpaceInC
    {
        public UIntPtr Size;
        public TextInC WorkspaceID;
        public TextInC WorkspaceName;
        public TextInC Status;
        public TextInC UserID;
        public TextInC UserName;
        public TextInC Type;
        public TextInC IsTemplate;
        public TextInC NamespaceID;
        public TextInC Description;
        public TextInC SpaceIconURL;
        public int Role;

        public static ListedSpace Read(IntPtr place)
        {
            var from = Native.Whole<ListedSpaceInC>(place);
            return new ListedSpace
            {
                WorkspaceID = from.WorkspaceID.Read(),
                WorkspaceName = from.WorkspaceName.Read(),
                Status = from.Status.Read(),
                UserID = from.UserID.Read(),
                UserName = from.UserName.Read(),
                Type = from.Type.Read(),
                IsTemplate = from.IsTemplate.Read(),
                NamespaceID = from.NamespaceID.Read(),
                Description = from.Description.Read(),
                SpaceIconURL = from.SpaceIconURL.Read(),
                Role = from.Role,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct SpaceInviteInC
    {
        public UIntPtr Size;
        public TextInC SpaceInviteID;
        public TextInC Expires;
        public TextInC LastModifiedTime;
        public TextInC Status;
        public TextInC WorkspaceID;
        public TextInC CreateTime;
        public TextInC StatusChanged;
        public TextInC UserDescriptor;
        public TextInC UserName;
        public TextInC WorkspaceName;
        public TextInC OwnerID;
        public TextInC OwnerName;
        public int InviteType;
        public int InviteAsType;

        public static SpaceInvite Read(IntPtr place)
        {
            var from = Native.Whole<SpaceInviteInC>(place);
            return new SpaceInvite
            {
                SpaceInviteID = from.SpaceInviteID.Read(),
                Expires = from.Expires.Read(),
                LastModifiedTime = from.LastModifiedTime.Read(),
                Status = from.Status.Read(),
                WorkspaceID = from.WorkspaceID.Read(),
                CreateTime = from.CreateTime.Read(),
                StatusChanged = from.StatusChanged.Read(),
                UserDescriptor = from.UserDescriptor.Read(),
                UserName = from.UserName.Read(),
                WorkspaceName = from.WorkspaceName.Read(),
                OwnerID = from.OwnerID.Read(),
                OwnerName = from.OwnerName.Read(),
                InviteType = from.InviteType,
                InviteAsType = from.InviteAsType,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct SpaceInC
    {
        public UIntPtr Size;
        public TextInC WorkspaceID;
        public TextInC WorkspaceName;
        public TextInC Type;
        public TextInC IsTemplate;
        public TextInC UserID;
        public TextInC UserName;
        public TextInC NamespaceID;
        public TextInC NamespaceName;
        public TextInC CreateTime;
        public TextInC LastModifiedTime;
        public TextInC GroupName;
        public TextInC GroupID;
        public TextInC DescriptionText;
        public TextInC DescriptionIcon;
        public TextInC DiscussionTab;
        public TextInC FilesTab;
        public TextInC SpaceIconURL;
        public ListInC Members;
        public ListInC Tabs;
        public int Kind;

        public static Space Read(IntPtr place)
        {
            var from = Native.Whole<SpaceInC>(place);
            return new Space
            {
                WorkspaceID = from.WorkspaceID.Read(),
                WorkspaceName = from.WorkspaceName.Read(),
                Type = from.Type.Read(),
                IsTemplate = from.IsTemplate.Read(),
                UserID = from.UserID.Read(),
                UserName = from.UserName.Read(),
                NamespaceID = from.NamespaceID.Read(),
                NamespaceName = from.NamespaceName.Read(),
                CreateTime = from.CreateTime.Read(),
                LastModifiedTime = from.LastModifiedTime.Read(),
                GroupName = from.GroupName.Read(),
                GroupID = from.GroupID.Read(),
                DescriptionText = from.DescriptionText.Read(),
                DescriptionIcon = from.DescriptionIcon.Read(),
                DiscussionTab = from.DiscussionTab.Read(),
                FilesTab = from.FilesTab.Read(),
                SpaceIconURL = from.SpaceIconURL.Read(),
                Members = from.Members.Read(MemberInC.Read),
                Tabs = from.Tabs.Read(TabInC.Read),
                Kind = from.Kind,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct SpaceAccessInC
    {
        public UIntPtr Size;
        public TextInC SetWorkspaceAccess;
        public TextInC DeleteWorkspaceAccess;
        public TextInC BulkSpaceInviteAccess;
        public TextInC CreateChatRoomAccess;
        public TextInC JoinSpaceAccess;
        public TextInC CreateDocAccess;
        public TextInC SetWorkspaceReason;
        public TextInC DeleteWorkspaceReason;
        public TextInC BulkSpaceInviteReason;
        public TextInC CreateChatRoomReason;
        public TextInC JoinSpaceReason;
        public TextInC CreateDocReason;

        public static SpaceAccess Read(IntPtr place)
        {
            var from = Native.Whole<SpaceAccessInC>(place);
            return new SpaceAccess
            {
                SetWorkspaceAccess = from.SetWorkspaceAccess.Read(),
                DeleteWorkspaceAccess = from.DeleteWorkspaceAccess.Read(),
                BulkSpaceInviteAccess = from.BulkSpaceInviteAccess.Read(),
                CreateChatRoomAccess = from.CreateChatRoomAccess.Read(),
                JoinSpaceAccess = from.JoinSpaceAccess.Read(),
                CreateDocAccess = from.CreateDocAccess.Read(),
                SetWorkspaceReason = from.SetWorkspaceReason.Read(),
                DeleteWorkspaceReason = from.DeleteWorkspaceReason.Read(),
                BulkSpaceInviteReason = from.BulkSpaceInviteReason.Read(),
                CreateChatRoomReason = from.CreateChatRoomReason.Read(),
                JoinSpaceReason = from.JoinSpaceReason.Read(),
                CreateDocReason = from.CreateDocReason.Read(),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct DocAccessInC
    {
        public UIntPtr Size;
        public TextInC SetDocAccess;
        public TextInC DeleteDocAccess;
        public TextInC SetDocReason;
        public TextInC DeleteDocReason;

        public static DocAccess Read(IntPtr place)
        {
            var from = Native.Whole<DocAccessInC>(place);
            return new DocAccess
            {
                SetDocAccess = from.SetDocAccess.Read(),
                DeleteDocAccess = from.DeleteDocAccess.Read(),
                SetDocReason = from.SetDocReason.Read(),
                DeleteDocReason = from.DeleteDocReason.Read(),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct RoomAccessInC
    {
        public UIntPtr Size;
        public TextInC SetChatRoomAccess;
        public TextInC DeleteChatRoomAccess;
        public TextInC CreateChatEntryAccess;
        public TextInC SetChatRoomReason;
        public TextInC DeleteChatRoomReason;
        public TextInC CreateChatEntryReason;

        public static RoomAccess Read(IntPtr place)
        {
            var from = Native.Whole<RoomAccessInC>(place);
            return new RoomAccess
            {
                SetChatRoomAccess = from.SetChatRoomAccess.Read(),
                DeleteChatRoomAccess = from.DeleteChatRoomAccess.Read(),
                CreateChatEntryAccess = from.CreateChatEntryAccess.Read(),
                SetChatRoomReason = from.SetChatRoomReason.Read(),
                DeleteChatRoomReason = from.DeleteChatRoomReason.Read(),
                CreateChatEntryReason = from.CreateChatEntryReason.Read(),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct RoleItemInC
    {
        public UIntPtr Size;
        public TextInC Cmd;
        public TextInC Id;
        public TextInC Access;

        public static RoleItem Read(IntPtr place)
        {
            var from = Native.Whole<RoleItemInC>(place);
            return new RoleItem
            {
                Cmd = from.Cmd.Read(),
                Id = from.Id.Read(),
                Access = from.Access.Read(),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct InvitationInC
    {
        public UIntPtr Size;
        public TextInC WorkspaceID;
        public TextInC User;
        public TextInC InviteMethod;
        public TextInC Status;
        public TextInC IsproviderID;
        public int InviteAs;
        public TextInC UserID;
        public TextInC UserName;
        public TextInC InviteType;
        public TextInC EmailSent;
        public TextInC Email;

        public static Invitation Read(IntPtr place)
        {
            var from = Native.Whole<InvitationInC>(place);
            return new Invitation
            {
                WorkspaceID = from.WorkspaceID.Read(),
                User = from.User.Read(),
                InviteMethod = from.InviteMethod.Read(),
                Status = from.Status.Read(),
                IsproviderID = from.IsproviderID.Read(),
                InviteAs = from.InviteAs,
                UserID = from.UserID.Read(),
                UserName = from.UserName.Read(),
                InviteType = from.InviteType.Read(),
                EmailSent = from.EmailSent.Read(),
                Email = from.Email.Read(),
            };
        }

        public static InvitationInC Of(Call call, Invitation from)
        {
            return new InvitationInC
            {
                Size = (UIntPtr)Marshal.SizeOf(typeof(InvitationInC)),
                WorkspaceID = call.Text(from.WorkspaceID),
                User = call.Text(from.User),
                InviteMethod = call.Text(from.InviteMethod),
                Status = call.Text(from.Status),
                IsproviderID = call.Text(from.IsproviderID),
                InviteAs = from.InviteAs,
                UserID = call.Text(from.UserID),
                UserName = call.Text(from.UserName),
                InviteType = call.Text(from.InviteType),
                EmailSent = call.Text(from.EmailSent),
                Email = call.Text(from.Email),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct IsProviderInC
    {
        public UIntPtr Size;
        public TextInC ISProviderID;
        public TextInC ISProviderName;
        public TextInC UserName;
        public TextInC NamespaceID;

        public static IsProvider Read(IntPtr place)
        {
            var from = Native.Whole<IsProviderInC>(place);
            return new IsProvider
            {
                ISProviderID = from.ISProviderID.Read(),
                ISProviderName = from.ISProviderName.Read(),
                UserName = from.UserName.Read(),
                NamespaceID = from.NamespaceID.Read(),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct UserConfigInfoInC
    {
        public UIntPtr Size;
        public TextInC UserID;
        public TextInC UserName;
        public TextInC Email;
        public TextInC FirstName;
        public TextInC LastName;
        public TextInC NamespaceID;
        public TextInC ISProviderID;
        public TextInC QueltID;
        public TextInC Password;
        public TextInC QueltAVToken;
        public TextInC QueltDesktopShareURL;
        public TextInC QueltAudioOrVisualURL;
        public TextInC HostName;
        public TextInC WebsiteURL;
        public ListInC ISProviders;

        public static UserConfigInfo Read(IntPtr place)
        {
            var from = Native.Whole<UserConfigInfoInC>(place);
            return new UserConfigInfo
            {
                UserID = from.UserID.Read(),
                UserName = from.UserName.Read(),
                Email = from.Email.Read(),
                FirstName = from.FirstName.Read(),
                LastName = from.LastName.Read(),
                NamespaceID = from.NamespaceID.Read(),
                ISProviderID = from.ISProviderID.Read(),
                QueltID = from.QueltID.Read(),
                Password = from.Password.Read(),
                QueltAVToken = from.QueltAVToken.Read(),
                QueltDesktopShareURL = from.QueltDesktopShareURL.Read(),
                QueltAudioOrVisualURL = from.QueltAudioOrVisualURL.Read(),
                HostName = from.HostName.Read(),
                WebsiteURL = from.WebsiteURL.Read(),
                ISProviders = from.ISProviders.Read(IsProviderInC.Read),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct UserProfileInC
    {
        public UIntPtr Size;
        public TextInC UserID;
        public TextInC FirstName;
        public TextInC LastName;
        public TextInC MiddleName;

        public static UserProfile Read(IntPtr place)
        {
            var from = Native.Whole<UserProfileInC>(place);
            return new UserProfile
            {
                UserID = from.UserID.Read(),
                FirstName = from.FirstName.Read(),
                LastName = from.LastName.Read(),
                MiddleName = from.MiddleName.Read(),
            };
        }

        public static UserProfileInC Of(Call call, UserProfile from)
        {
            return new UserProfileInC
            {
                Size = (UIntPtr)Marshal.SizeOf(typeof(UserProfileInC)),
                UserID = call.Text(from.UserID),
                FirstName = call.Text(from.FirstName),
                LastName = call.Text(from.LastName),
                MiddleName = call.Text(from.MiddleName),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct PolicyInC
    {
        public UIntPtr Size;
        public int AutomaticUpdates;
        public int PremiumServices;
        public int SecureCollaboration;
        public int IMInt;
        public int IMExt;
        public int DisableIMCatchInt;
        public int DisableIMCatchExt;
        public int LocalArchive;
        public int VoIPInt;
        public int VoIPExt;
        public int VideoInt;
        public int VideoExt;
        public int DesktopShareInt;
        public int DesktopShareExt;
        public int RemoteControlInt;
        public int RemoteControlExt;
        public int FileTransferInt;
        public int FileTransferExt;
        public int FileXferVirusScan;
        public int HasSpaces;
        public int CreateWorkspace;

        public static Policy Read(IntPtr place)
        {
            var from = Native.Whole<PolicyInC>(place);
            return new Policy
            {
                AutomaticUpdates = from.AutomaticUpdates,
                PremiumServices = from.PremiumServices,
                SecureCollaboration = from.SecureCollaboration,
                IMInt = from.IMInt,
                IMExt = from.IMExt,
                DisableIMCatchInt = from.DisableIMCatchInt,
                DisableIMCatchExt = from.DisableIMCatchExt,
                LocalArchive = from.LocalArchive,
                VoIPInt = from.VoIPInt,
                VoIPExt = from.VoIPExt,
                VideoInt = from.VideoInt,
                VideoExt = from.VideoExt,
                DesktopShareInt = from.DesktopShareInt,
                DesktopShareExt = from.DesktopShareExt,
                RemoteControlInt = from.RemoteControlInt,
                RemoteControlExt = from.RemoteControlExt,
                FileTransferInt = from.FileTransferInt,
                FileTransferExt = from.FileTransferExt,
                FileXferVirusScan = from.FileXferVirusScan,
                HasSpaces = from.HasSpaces,
                CreateWorkspace = from.CreateWorkspace,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct TemplateItemInC
    {
        public UIntPtr Size;
        public TextInC Name;
        public TextInC ID;
        public TextInC Description;
        public int Type;

        public static TemplateItem Read(IntPtr place)
        {
            var from = Native.Whole<TemplateItemInC>(place);
            return new TemplateItem
            {
                Name = from.Name.Read(),
                ID = from.ID.Read(),
                Description = from.Description.Read(),
                Type = from.Type,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct LibraryInC
    {
        public UIntPtr Size;
        public TextInC Name;
        public TextInC ID;
        public int Type;
        public ListInC Templates;

        public static Library Read(IntPtr place)
        {
            var from = Native.Whole<LibraryInC>(place);
            return new Library
            {
                Name = from.Name.Read(),
                ID = from.ID.Read(),
                Type = from.Type,
                Templates = from.Templates.Read(TemplateItemInC.Read),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct LibraryAppInC
    {
        public UIntPtr Size;
        public TextInC Name;
        public TextInC ID;
        public TextInC CurrentDir;
        public TextInC Status;
        public TextInC Package;
        public TextInC AppType;
        public TextInC IdentityDescription;
        public TextInC IdentityName;
        public int TopLevel;

        public static LibraryApp Read(IntPtr place)
        {
            var from = Native.Whole<LibraryAppInC>(place);
            return new LibraryApp
            {
                Name = from.Name.Read(),
                ID = from.ID.Read(),
                CurrentDir = from.CurrentDir.Read(),
                Status = from.Status.Read(),
                Package = from.Package.Read(),
                AppType = from.AppType.Read(),
                IdentityDescription = from.IdentityDescription.Read(),
                IdentityName = from.IdentityName.Read(),
                TopLevel = from.TopLevel != 0,
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct AppLibraryInC
    {
        public UIntPtr Size;
        public TextInC Name;
        public TextInC ID;
        public TextInC Type;
        public ListInC Apps;

        public static AppLibrary Read(IntPtr place)
        {
            var from = Native.Whole<AppLibraryInC>(place);
            return new AppLibrary
            {
                Name = from.Name.Read(),
                ID = from.ID.Read(),
                Type = from.Type.Read(),
                Apps = from.Apps.Read(LibraryAppInC.Read),
            };
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    struct SpaceCountItemInC
    {
        public UIntPtr Size;
        public TextInC WorkspaceID;
        public int Count;
        public int ActiveMembersCount;
        public int UnreadMessageCount;

        public static SpaceCountItem Read(IntPtr place)
        {
            var from = Native.Whole<SpaceCountItemInC>(place);
            return new SpaceCountItem
            {
                WorkspaceID = from.WorkspaceID.Read(),
                Count = from.Count,
                ActiveMembersCount = from.ActiveMembersCount,
                UnreadMessageCount = from.UnreadMessageCount,
            };
        }

        public static SpaceCountItemInC Of(Call call, SpaceCountItem from)
        {
            return new SpaceCountItemInC
            {
                Size = (UIntPtr)Marshal.SizeOf(typeof(SpaceCountItemInC)),
                WorkspaceID = call.Text(from.WorkspaceID),
                Count = from.Count,
                ActiveMembersCount = from.ActiveMembersCount,
                UnreadMessageCount = from.UnreadMessageCount,
            };
        }
    }

    static class Native
    {
        public const uint AbiVersion = 1;
        const string File = "pvwapi_c";

        /// A record of this file's own size: what an older library's does not have is empty.
        public static T Whole<T>(IntPtr place) where T : struct
        {
            int size = Marshal.SizeOf(typeof(T));
            int there = Math.Min(size, (int)Marshal.ReadIntPtr(place));
            var bytes = new byte[size];
            Marshal.Copy(place, bytes, 0, there);
            var pinned = GCHandle.Alloc(bytes, GCHandleType.Pinned);
            try
            {
                return (T)Marshal.PtrToStructure(pinned.AddrOfPinnedObject(), typeof(T));
            }
            finally
            {
                pinned.Free();
            }
        }

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate void RefreshListener(IntPtr context, int result);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate int ExchangeListener(IntPtr context, IntPtr exchange);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate int TransferProgress(IntPtr context, UIntPtr done, UIntPtr size);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern uint pvw_abi_version();

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern IntPtr pvw_version();

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_client_new(TextInC baseURL, out IntPtr client);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_client_copy(IntPtr client, out IntPtr copy);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_client_free(IntPtr client);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_result_free(IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_cancel(IntPtr client);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_set_deadline(IntPtr client, uint milliseconds);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_on_refresh(IntPtr client, RefreshListener listener, IntPtr context);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_on_transfer_progress(IntPtr client, TransferProgress progress, IntPtr context);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_on_exchange(IntPtr client, ExchangeListener listener, IntPtr context);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_set_log(int maximumLevel);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_on_timer(IntPtr client, uint timerID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_message_loop_fd();

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_dispatch_pending_messages();

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_xml_text(TextInC text, out TextInC xml, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_user_id(IntPtr client, out TextInC userID, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_namespace_id(IntPtr client, out TextInC namespaceID, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_root_cred(IntPtr client, out TextInC cred, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_set_root_cred(IntPtr client, TextInC cred);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_lst_msg(IntPtr client, out IntPtr message, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_network_error(IntPtr client, out int error);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_network_error_kind(IntPtr client, out int kind);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_network_error_text(IntPtr client, out TextInC text, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_refresh_interval(IntPtr client, out uint milliseconds);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_op_url(IntPtr client, out TextInC url, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_null_session_url(IntPtr client, out TextInC url, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_upload_url(IntPtr client, out TextInC url, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_dms_url(IntPtr client, out TextInC url, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_login(IntPtr client, TextInC userName, TextInC token, TextInC isp,
            TextInC password, int useToken, int send);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_cred_for_expired(IntPtr client, out TextInC newCred, TextInC userName,
            TextInC token, TextInC isp, TextInC password, int useToken, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_logout(IntPtr client, TextInC cred);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_session_info(IntPtr client, TextInC cred);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_clone_session(IntPtr client, TextInC cred, TextInC workspace,
            out TextInC newCred, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_call_wapi(IntPtr client, TextInC cred, TextInC command);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_wapi_proxy_call(IntPtr client, TextInC cred, TextInC command, int method,
            TextInC url, TextInC headers, int withCred, out TextInC reply, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_create_space(IntPtr client, TextInC cred, TextInC name, IntPtr fields,
            UIntPtr fieldCount, out TextInC workspaceID, int type, int favourite, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_clone_wksp(IntPtr client, TextInC cred, TextInC name,
            TextInC sourceWorkspaceID, int typeAndFlags, IntPtr fields, UIntPtr fieldCount, out TextInC workspaceID,
            int favourite, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_edit_ext_wksp(IntPtr client, TextInC cred, TextInC workspaceID, TextInC name,
            int changeName, IntPtr fields, UIntPtr fieldCount);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_delete_wksp(IntPtr client, TextInC cred, TextInC workspaceID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_leave_workspace(IntPtr client, TextInC cred, TextInC workspaceID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_create_space_using_app(IntPtr client, TextInC cred, TextInC name,
            TextInC appName, out TextInC workspaceID, TextInC description, int favourite, int type, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_save_workspace_as_app(IntPtr client, TextInC cred, TextInC workspaceID,
            TextInC appName, TextInC groupID, out TextInC widgetID, TextInC description, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_create_tab(IntPtr client, TextInC cred, TextInC workspaceID, TextInC tabName,
            int tabOrder, out TextInC tabID, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_tabs(IntPtr client, TextInC cred, TextInC workspaceID, out ListInC tabs,
            out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_delete_tab(IntPtr client, TextInC cred, TextInC workspaceID, TextInC tabID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_edit_tab(IntPtr client, TextInC cred, TextInC workspaceID, IntPtr tab);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_edit_tab_order(IntPtr client, TextInC cred, TextInC workspaceID, IntPtr tabs,
            UIntPtr tabCount);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_set_space_icon(IntPtr client, TextInC cred, TextInC workspaceID,
            TextInC filePath, out TextInC url, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_space_icon(IntPtr client, TextInC cred, TextInC iconURL,
            out TextInC localPath, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_wksp_list(IntPtr client, TextInC cred, out ListInC spaces,
            out ListInC invitations, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_space_batch(IntPtr client, TextInC cred, TextInC workspaceID,
            out IntPtr space, out ListInC invitations, out IntPtr access, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_spaces_test(IntPtr client);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_probe_space_access(IntPtr client, TextInC cred, TextInC workspaceID,
            out IntPtr access, uint tests, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_probe_space_access2(IntPtr client, TextInC cred, out IntPtr access,
            out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_probe_doc_access(IntPtr client, TextInC cred, TextInC docID, out IntPtr access,
            out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_probe_chat_room_access(IntPtr client, TextInC cred, TextInC roomID,
            out IntPtr access, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_role(IntPtr client, TextInC cred, IntPtr workspaceIDs,
            UIntPtr workspaceIDCount, out ListInC roles, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_probe_access_all_space(IntPtr client, TextInC cred, TextInC otherUserID,
            out ListInC roles, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_members(IntPtr client, TextInC cred, TextInC workspaceID,
            out ListInC members, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_remove_space_member(IntPtr client, TextInC cred, TextInC workspaceID,
            TextInC memberID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_change_member_role(IntPtr client, TextInC cred, TextInC workspaceID,
            TextInC memberID, int role);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_invite_members(IntPtr client, TextInC cred, IntPtr invitations,
            UIntPtr invitationCount, out ListInC invitationsBack, TextInC message, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_del_invt(IntPtr client, TextInC cred, TextInC workspaceID, TextInC userDescriptor);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_response_invitation(IntPtr client, TextInC cred, TextInC workspaceID, int accept);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_favorite_space_list(IntPtr client, TextInC cred, TextInC thingName,
            out ListInC spaces, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_create_favorite_space(IntPtr client, TextInC cred, TextInC thingName,
            TextInC workspaceID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_delete_favorite_space(IntPtr client, TextInC cred, TextInC thingName,
            TextInC workspaceID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_user_configure_info(IntPtr client, TextInC cred, out IntPtr info,
            out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_user_profile(IntPtr client, TextInC cred, IntPtr users, UIntPtr userCount,
            out ListInC usersBack, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_edit_ext_user(IntPtr client, TextInC cred, TextInC user, IntPtr fields,
            UIntPtr fieldCount);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_create_rdqav_account(IntPtr client, TextInC cred, TextInC user);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_org_info(IntPtr client, TextInC cred, out TextInC changePasswordURL,
            out TextInC forgetPasswordURL, out TextInC siteInfoURL, out TextInC connectSupportURL, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_domain_list(IntPtr client, TextInC cred, out TextInC domains,
            out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_policy_data(IntPtr client, TextInC cred, out IntPtr policy, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_libraries(IntPtr client, TextInC cred, int withTemplates, int withWidgets,
            int readOnly, out ListInC libraries, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_add_template_to_library(IntPtr client, TextInC cred, TextInC groupID,
            TextInC templateID);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_user_libraries_with_apps(IntPtr client, TextInC cred, int readOnly,
            int withTopLevelApps, out ListInC libraries, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_space_notify(IntPtr client, TextInC cred, IntPtr items, UIntPtr itemCount,
            out ListInC itemsBack, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_get_space_activity(IntPtr client, TextInC cred, IntPtr items,
            UIntPtr itemCount, out ListInC itemsBack, out IntPtr result);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_send_notification_event(IntPtr client, TextInC cred, int @event,
            TextInC workspaceID, TextInC workspaceName, TextInC message, TextInC specificTag, TextInC senderUserName);

        [DllImport(File, CallingConvention = CallingConvention.Cdecl)]
        public static extern int pvw_write_meeting_record(IntPtr client, TextInC cred, TextInC workspaceID,
            TextInC siteName, TextInC meetingID, TextInC hostID, TextInC sessionName);
    }
}
