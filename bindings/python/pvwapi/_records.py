"""The records and constants. Written by capi/generate.py."""
from __future__ import annotations

from ctypes import POINTER, Structure, c_int, c_size_t
from dataclasses import dataclass, field
from enum import IntEnum

from ._library import Answered, Text

VERSION = "1.0.0"
ABI_VERSION = 1


class NetworkCause(Answered):
    """Why the last request got no whole reply."""

    NONE = 0
    BAD_ADDRESS = 1  # no URL, or neither http nor https
    NO_SUCH_HOST = 2
    REFUSED = 3
    UNREACHABLE = 4
    CONNECT_TIMEOUT = 5
    PROXY = 6  # the proxy is not there, or refused
    TLS_UNTRUSTED = 7  # unknown or self-signed authority
    TLS_WRONG_NAME = 8  # the certificate is another host's
    TLS_EXPIRED = 9  # or not yet valid
    TLS_FAILED = 10  # no common version, broken handshake
    CLOSED = 11  # the connection ended before the first byte of a reply
    CUT_OFF = 12  # it ended inside the reply
    NOT_HTTP = 13  # what came is no reply
    TOO_LARGE = 14
    SILENCE = 15  # 60 s without a byte
    DEADLINE = 16
    CANCELLED = 17  # by cancel, or by a listener that returned False
    LOCAL = 18  # memory, descriptors


class Method(Answered):
    """How a command goes out."""

    GET = 0
    POST = 1


class InviteAs(IntEnum):
    """What a member of a workspace is, and what an invitee is to become."""

    MEMBER = 1
    ADMIN = 2


class Event(IntEnum):
    """What happens in a workspace."""

    START_MEETING = 0
    START_VOICE = 1
    START_TELEPHONY = 2
    END_MEETING = 3
    END_VOICE = 4
    END_TELEPHONY = 5


@dataclass
class Message:
    code: int = 0
    reason: str = ""  # the service's reason, or the library's own text
    exception_id: str = ""  # the service's exception identifier
    response: str = ""  # the whole reply of the failed request
    reserved: int = 0


class MessageInC(Structure):
    record = Message
    _fields_ = [
        ("size", c_size_t),
        ("code", c_int),
        ("reason", Text),
        ("exceptionID", Text),
        ("response", Text),
        ("reserved", c_int),
    ]


@dataclass
class WorkspaceField:
    """One attribute of a workspace. Field 0 is the description, which stands in CDATA; entries with any other field are
    skipped."""

    field: int = 0
    value: str = ""


class WorkspaceFieldInC(Structure):
    record = WorkspaceField
    _fields_ = [
        ("size", c_size_t),
        ("field", c_int),
        ("value", Text),
    ]


@dataclass
class UserField:
    """One extension field of a user: 0 the host name, 1 the web-site URL, 2 the client's build, 3 its version; any
    other is skipped. The value stands in XML."""

    type: int = 0
    value: str = ""


class UserFieldInC(Structure):
    record = UserField
    _fields_ = [
        ("size", c_size_t),
        ("type", c_int),
        ("value", Text),
    ]


@dataclass
class Tab:
    id: str = ""
    name: str = ""
    type: str = ""  # The service's tab type, a number as text: 0 plain, 1 discussion, 2 files.
    position: int = 0  # The tab's place in the order of tabs.


class TabInC(Structure):
    record = Tab
    _fields_ = [
        ("size", c_size_t),
        ("ID", Text),
        ("name", Text),
        ("type", Text),
        ("position", c_int),
    ]


class TabListInC(Structure):
    item = TabInC
    _fields_ = [
        ("items", POINTER(POINTER(TabInC))),
        ("count", c_size_t),
    ]


@dataclass
class Member:
    user_id: str = ""
    user_name: str = ""
    status: str = ""  # always "accepted" for a member read from a workspace
    reserved: int = 0
    email: str = ""
    role: int = 0  # 1 member, 2 administrator; 0 while unknown


class MemberInC(Structure):
    record = Member
    _fields_ = [
        ("size", c_size_t),
        ("userID", Text),
        ("userName", Text),
        ("status", Text),
        ("reserved", c_int),
        ("email", Text),
        ("role", c_int),
    ]


class MemberListInC(Structure):
    item = MemberInC
    _fields_ = [
        ("items", POINTER(POINTER(MemberInC))),
        ("count", c_size_t),
    ]


@dataclass
class ListedSpace:
    """One line of the list of the user's workspaces."""

    workspace_id: str = ""
    workspace_name: str = ""
    status: str = ""  # always "accepted": the user is a member of what is listed
    user_id: str = ""  # the owner's
    user_name: str = ""
    type: str = ""
    is_template: str = ""  # "true" or "false", as the service sent it
    namespace_id: str = ""
    description: str = ""
    space_icon_url: str = ""
    role: int = 0  # 1 member, 2 administrator; 0 while unknown


class ListedSpaceInC(Structure):
    record = ListedSpace
    _fields_ = [
        ("size", c_size_t),
        ("workspaceID", Text),
        ("workspaceName", Text),
        ("status", Text),
        ("userID", Text),
        ("userName", Text),
        ("type", Text),
        ("isTemplate", Text),
        ("namespaceID", Text),
        ("description", Text),
        ("spaceIconURL", Text),
        ("role", c_int),
    ]


class ListedSpaceListInC(Structure):
    item = ListedSpaceInC
    _fields_ = [
        ("items", POINTER(POINTER(ListedSpaceInC))),
        ("count", c_size_t),
    ]


@dataclass
class SpaceInvite:
    """An invitation to a workspace."""

    space_invite_id: str = ""
    expires: str = ""
    last_modified_time: str = ""
    status: str = ""
    workspace_id: str = ""
    create_time: str = ""
    status_changed: str = ""
    user_descriptor: str = ""  # the invitee: a user ID, a user name or an e-mail address
    user_name: str = ""
    workspace_name: str = ""
    owner_id: str = ""
    owner_name: str = ""
    invite_type: int = 0
    invite_as_type: int = 0  # a WAPI_INVITEAS_TYPE


class SpaceInviteInC(Structure):
    record = SpaceInvite
    _fields_ = [
        ("size", c_size_t),
        ("spaceInviteID", Text),
        ("expires", Text),
        ("lastModifiedTime", Text),
        ("status", Text),
        ("workspaceID", Text),
        ("createTime", Text),
        ("statusChanged", Text),
        ("userDescriptor", Text),
        ("userName", Text),
        ("workspaceName", Text),
        ("ownerID", Text),
        ("ownerName", Text),
        ("inviteType", c_int),
        ("inviteAsType", c_int),
    ]


class SpaceInviteListInC(Structure):
    item = SpaceInviteInC
    _fields_ = [
        ("items", POINTER(POINTER(SpaceInviteInC))),
        ("count", c_size_t),
    ]


@dataclass
class Space:
    workspace_id: str = ""
    workspace_name: str = ""
    type: str = ""
    is_template: str = ""
    user_id: str = ""  # the owner's
    user_name: str = ""
    namespace_id: str = ""
    namespace_name: str = ""
    create_time: str = ""
    last_modified_time: str = ""
    group_name: str = ""
    group_id: str = ""
    description_text: str = ""
    description_icon: str = ""
    discussion_tab: str = ""
    files_tab: str = ""
    space_icon_url: str = ""
    members: list[Member] = field(default_factory=list)
    tabs: list[Tab] = field(default_factory=list)
    kind: int = 0  # the type in the low bits, 16 for a template; 0 while unknown


class SpaceInC(Structure):
    record = Space
    _fields_ = [
        ("size", c_size_t),
        ("workspaceID", Text),
        ("workspaceName", Text),
        ("type", Text),
        ("isTemplate", Text),
        ("userID", Text),
        ("userName", Text),
        ("namespaceID", Text),
        ("namespaceName", Text),
        ("createTime", Text),
        ("lastModifiedTime", Text),
        ("groupName", Text),
        ("groupID", Text),
        ("descriptionText", Text),
        ("descriptionIcon", Text),
        ("discussionTab", Text),
        ("filesTab", Text),
        ("spaceIconURL", Text),
        ("members", MemberListInC),
        ("tabs", TabListInC),
        ("kind", c_int),
    ]


class SpaceListInC(Structure):
    item = SpaceInC
    _fields_ = [
        ("items", POINTER(POINTER(SpaceInC))),
        ("count", c_size_t),
    ]


@dataclass
class SpaceAccess:
    set_workspace_access: str = ""
    delete_workspace_access: str = ""
    bulk_space_invite_access: str = ""
    create_chat_room_access: str = ""
    join_space_access: str = ""
    create_doc_access: str = ""
    set_workspace_reason: str = ""
    delete_workspace_reason: str = ""
    bulk_space_invite_reason: str = ""
    create_chat_room_reason: str = ""
    join_space_reason: str = ""
    create_doc_reason: str = ""


class SpaceAccessInC(Structure):
    record = SpaceAccess
    _fields_ = [
        ("size", c_size_t),
        ("setWorkspaceAccess", Text),
        ("deleteWorkspaceAccess", Text),
        ("bulkSpaceInviteAccess", Text),
        ("createChatRoomAccess", Text),
        ("joinSpaceAccess", Text),
        ("createDocAccess", Text),
        ("setWorkspaceReason", Text),
        ("deleteWorkspaceReason", Text),
        ("bulkSpaceInviteReason", Text),
        ("createChatRoomReason", Text),
        ("joinSpaceReason", Text),
        ("createDocReason", Text),
    ]


@dataclass
class DocAccess:
    set_doc_access: str = ""
    delete_doc_access: str = ""
    set_doc_reason: str = ""
    delete_doc_reason: str = ""


class DocAccessInC(Structure):
    record = DocAccess
    _fields_ = [
        ("size", c_size_t),
        ("setDocAccess", Text),
        ("deleteDocAccess", Text),
        ("setDocReason", Text),
        ("deleteDocReason", Text),
    ]


@dataclass
class RoomAccess:
    set_chat_room_access: str = ""
    delete_chat_room_access: str = ""
    create_chat_entry_access: str = ""
    set_chat_room_reason: str = ""
    delete_chat_room_reason: str = ""
    create_chat_entry_reason: str = ""


class RoomAccessInC(Structure):
    record = RoomAccess
    _fields_ = [
        ("size", c_size_t),
        ("setChatRoomAccess", Text),
        ("deleteChatRoomAccess", Text),
        ("createChatEntryAccess", Text),
        ("setChatRoomReason", Text),
        ("deleteChatRoomReason", Text),
        ("createChatEntryReason", Text),
    ]


@dataclass
class RoleItem:
    """One answered question: may the user `cmd` ("get" or "set") the workspace `id`?"""

    cmd: str = ""
    id: str = ""
    access: str = ""


class RoleItemInC(Structure):
    record = RoleItem
    _fields_ = [
        ("size", c_size_t),
        ("cmd", Text),
        ("id", Text),
        ("access", Text),
    ]


class RoleItemListInC(Structure):
    item = RoleItemInC
    _fields_ = [
        ("items", POINTER(POINTER(RoleItemInC))),
        ("count", c_size_t),
    ]


@dataclass
class Invitation:
    """One invitation to send; the last five are the reply's own."""

    workspace_id: str = ""
    user: str = ""  # a user ID or an e-mail address
    invite_method: str = ""  # "EMAIL" for one that carries a personal message
    status: str = ""
    isprovider_id: str = ""  # the invitee's instant-messaging provider
    invite_as: int = 0
    user_id: str = ""
    user_name: str = ""
    invite_type: str = ""
    email_sent: str = ""
    email: str = ""


class InvitationInC(Structure):
    record = Invitation
    _fields_ = [
        ("size", c_size_t),
        ("workspaceID", Text),
        ("user", Text),
        ("inviteMethod", Text),
        ("status", Text),
        ("isproviderID", Text),
        ("inviteAs", c_int),
        ("userID", Text),
        ("userName", Text),
        ("inviteType", Text),
        ("emailSent", Text),
        ("email", Text),
    ]


class InvitationListInC(Structure):
    item = InvitationInC
    _fields_ = [
        ("items", POINTER(POINTER(InvitationInC))),
        ("count", c_size_t),
    ]


@dataclass
class IsProvider:
    """An identity provider of the user."""

    is_provider_id: str = ""
    is_provider_name: str = ""
    user_name: str = ""  # the user's name there
    namespace_id: str = ""


class IsProviderInC(Structure):
    record = IsProvider
    _fields_ = [
        ("size", c_size_t),
        ("ISProviderID", Text),
        ("ISProviderName", Text),
        ("userName", Text),
        ("namespaceID", Text),
    ]


class IsProviderListInC(Structure):
    item = IsProviderInC
    _fields_ = [
        ("items", POINTER(POINTER(IsProviderInC))),
        ("count", c_size_t),
    ]


@dataclass
class UserConfigInfo:
    user_id: str = ""
    user_name: str = ""
    email: str = ""
    first_name: str = ""
    last_name: str = ""
    namespace_id: str = ""
    is_provider_id: str = ""  # of the last provider
    quelt_id: str = ""  # the audio/video account, with the password as the service returns it
    password: str = ""
    quelt_av_token: str = ""
    quelt_desktop_share_url: str = ""
    quelt_audio_or_visual_url: str = ""
    host_name: str = ""
    website_url: str = ""
    is_providers: list[IsProvider] = field(default_factory=list)


class UserConfigInfoInC(Structure):
    record = UserConfigInfo
    _fields_ = [
        ("size", c_size_t),
        ("userID", Text),
        ("userName", Text),
        ("email", Text),
        ("firstName", Text),
        ("lastName", Text),
        ("namespaceID", Text),
        ("ISProviderID", Text),
        ("QueltID", Text),
        ("Password", Text),
        ("QueltAVToken", Text),
        ("QueltDesktopShareURL", Text),
        ("QueltAudioOrVisualURL", Text),
        ("hostName", Text),
        ("websiteURL", Text),
        ("ISProviders", IsProviderListInC),
    ]


@dataclass
class UserProfile:
    user_id: str = ""
    first_name: str = ""
    last_name: str = ""
    middle_name: str = ""


class UserProfileInC(Structure):
    record = UserProfile
    _fields_ = [
        ("size", c_size_t),
        ("userID", Text),
        ("firstName", Text),
        ("lastName", Text),
        ("middleName", Text),
    ]


class UserProfileListInC(Structure):
    item = UserProfileInC
    _fields_ = [
        ("items", POINTER(POINTER(UserProfileInC))),
        ("count", c_size_t),
    ]


@dataclass
class Policy:
    """1 where a feature is allowed, 0 elsewhere."""

    automatic_updates: int = 0
    premium_services: int = 0
    secure_collaboration: int = 0
    im_int: int = 0
    im_ext: int = 0
    disable_im_catch_int: int = 0
    disable_im_catch_ext: int = 0
    local_archive: int = 0
    voip_int: int = 0
    voip_ext: int = 0
    video_int: int = 0
    video_ext: int = 0
    desktop_share_int: int = 0
    desktop_share_ext: int = 0
    remote_control_int: int = 0
    remote_control_ext: int = 0
    file_transfer_int: int = 0
    file_transfer_ext: int = 0
    file_xfer_virus_scan: int = 0
    has_spaces: int = 0
    create_workspace: int = 0


class PolicyInC(Structure):
    record = Policy
    _fields_ = [
        ("size", c_size_t),
        ("AutomaticUpdates", c_int),
        ("PremiumServices", c_int),
        ("SecureCollaboration", c_int),
        ("IMInt", c_int),
        ("IMExt", c_int),
        ("DisableIMCatchInt", c_int),
        ("DisableIMCatchExt", c_int),
        ("LocalArchive", c_int),
        ("VoIPInt", c_int),
        ("VoIPExt", c_int),
        ("VideoInt", c_int),
        ("VideoExt", c_int),
        ("DesktopShareInt", c_int),
        ("DesktopShareExt", c_int),
        ("RemoteControlInt", c_int),
        ("RemoteControlExt", c_int),
        ("FileTransferInt", c_int),
        ("FileTransferExt", c_int),
        ("FileXferVirusScan", c_int),
        ("HasSpaces", c_int),
        ("CreateWorkspace", c_int),
    ]


@dataclass
class TemplateItem:
    name: str = ""
    id: str = ""
    description: str = ""
    type: int = 0


class TemplateItemInC(Structure):
    record = TemplateItem
    _fields_ = [
        ("size", c_size_t),
        ("name", Text),
        ("ID", Text),
        ("description", Text),
        ("type", c_int),
    ]


class TemplateItemListInC(Structure):
    item = TemplateItemInC
    _fields_ = [
        ("items", POINTER(POINTER(TemplateItemInC))),
        ("count", c_size_t),
    ]


@dataclass
class Library:
    name: str = ""
    id: str = ""
    type: int = 0  # 1, 2 or 3; 0 for any other
    templates: list[TemplateItem] = field(default_factory=list)


class LibraryInC(Structure):
    record = Library
    _fields_ = [
        ("size", c_size_t),
        ("name", Text),
        ("ID", Text),
        ("type", c_int),
        ("templates", TemplateItemListInC),
    ]


class LibraryListInC(Structure):
    item = LibraryInC
    _fields_ = [
        ("items", POINTER(POINTER(LibraryInC))),
        ("count", c_size_t),
    ]


@dataclass
class LibraryApp:
    name: str = ""
    id: str = ""
    current_dir: str = ""
    status: str = ""
    package: str = ""
    app_type: str = ""  # this and the identity are told of top-level applications only
    identity_description: str = ""
    identity_name: str = ""
    top_level: bool = False


class LibraryAppInC(Structure):
    record = LibraryApp
    _fields_ = [
        ("size", c_size_t),
        ("name", Text),
        ("ID", Text),
        ("currentDir", Text),
        ("status", Text),
        ("package", Text),
        ("appType", Text),
        ("identityDescription", Text),
        ("identityName", Text),
        ("topLevel", c_int),
    ]


class LibraryAppListInC(Structure):
    item = LibraryAppInC
    _fields_ = [
        ("items", POINTER(POINTER(LibraryAppInC))),
        ("count", c_size_t),
    ]


@dataclass
class AppLibrary:
    name: str = ""
    id: str = ""
    type: str = ""
    apps: list[LibraryApp] = field(default_factory=list)


class AppLibraryInC(Structure):
    record = AppLibrary
    _fields_ = [
        ("size", c_size_t),
        ("name", Text),
        ("ID", Text),
        ("type", Text),
        ("apps", LibraryAppListInC),
    ]


class AppLibraryListInC(Structure):
    item = AppLibraryInC
    _fields_ = [
        ("items", POINTER(POINTER(AppLibraryInC))),
        ("count", c_size_t),
    ]


@dataclass
class SpaceCountItem:
    workspace_id: str = ""
    count: int = 0  # read back: the notification count, or the activity value
    active_members_count: int = 0
    unread_message_count: int = 0


class SpaceCountItemInC(Structure):
    record = SpaceCountItem
    _fields_ = [
        ("size", c_size_t),
        ("workspaceID", Text),
        ("count", c_int),
        ("activeMembersCount", c_int),
        ("unreadMessageCount", c_int),
    ]


class SpaceCountItemListInC(Structure):
    item = SpaceCountItemInC
    _fields_ = [
        ("items", POINTER(POINTER(SpaceCountItemInC))),
        ("count", c_size_t),
    ]


IN_C = {
    Message: MessageInC,
    WorkspaceField: WorkspaceFieldInC,
    UserField: UserFieldInC,
    Tab: TabInC,
    Member: MemberInC,
    ListedSpace: ListedSpaceInC,
    SpaceInvite: SpaceInviteInC,
    Space: SpaceInC,
    SpaceAccess: SpaceAccessInC,
    DocAccess: DocAccessInC,
    RoomAccess: RoomAccessInC,
    RoleItem: RoleItemInC,
    Invitation: InvitationInC,
    IsProvider: IsProviderInC,
    UserConfigInfo: UserConfigInfoInC,
    UserProfile: UserProfileInC,
    Policy: PolicyInC,
    TemplateItem: TemplateItemInC,
    Library: LibraryInC,
    LibraryApp: LibraryAppInC,
    AppLibrary: AppLibraryInC,
    SpaceCountItem: SpaceCountItemInC,
}

__all__ = [
    "AppLibrary",
    "DocAccess",
    "Event",
    "Invitation",
    "InviteAs",
    "IsProvider",
    "Library",
    "LibraryApp",
    "ListedSpace",
    "Member",
    "Message",
    "Method",
    "NetworkCause",
    "Policy",
    "RoleItem",
    "RoomAccess",
    "Space",
    "SpaceAccess",
    "SpaceCountItem",
    "SpaceInvite",
    "Tab",
    "TemplateItem",
    "UserConfigInfo",
    "UserField",
    "UserProfile",
    "WorkspaceField",
]
