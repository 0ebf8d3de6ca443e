"""The operations, one after the other and awaited. Written by capi/generate.py."""
from __future__ import annotations

from collections.abc import Sequence
from ctypes import c_int, c_uint

from . import _records as records
from ._conversion import Items, One, Out
from ._library import Text
from ._records import (
    AppLibrary,
    DocAccess,
    Invitation,
    IsProvider,
    Library,
    LibraryApp,
    ListedSpace,
    Member,
    Message,
    Policy,
    RoleItem,
    RoomAccess,
    Space,
    SpaceAccess,
    SpaceCountItem,
    SpaceInvite,
    Tab,
    TemplateItem,
    UserConfigInfo,
    UserField,
    UserProfile,
    WorkspaceField,
)


class Operations:
    """What a client does; each blocks until the reply is read."""

    def get_user_id(self) -> str:
        """The signed-in user's ID, empty until the user's configuration has been read."""
        return self._ask("pvw_get_user_id", Out(Text))

    def get_namespace_id(self) -> str:
        """The same for the namespace's ID."""
        return self._ask("pvw_get_namespace_id", Out(Text))

    def get_root_cred(self) -> str:
        """The session credential that login obtained and that the timer refreshes."""
        return self._ask("pvw_get_root_cred", Out(Text))

    def set_root_cred(self, cred: str) -> None:
        """Replaces it."""
        self._ask("pvw_set_root_cred", One(Text, cred))

    def get_lst_msg(self) -> Message:
        """Why the last request failed; cleared by one that succeeds."""
        return self._ask("pvw_get_lst_msg", Out(records.MessageInC))

    def get_network_error(self) -> int:
        """1 when the last request got no whole reply: no server was reached, the connection broke, or the host stopped
        the transfer itself. 0 when it got any reply."""
        return self._ask("pvw_get_network_error", Out(c_int))

    def get_network_error_kind(self) -> int:
        """The cause of it, one of NetworkCause: NetworkCause.NONE where the last request got a reply, and whenever
        there is no network error, but for wapi_proxy_call, which leaves that alone and still says here what it met.
        logout touches neither."""
        return self._ask("pvw_get_network_error_kind", Out(c_int))

    def get_network_error_text(self) -> str:
        """The same in the system's own words, with the host and port that were meant; empty for NetworkCause.NONE."""
        return self._ask("pvw_get_network_error_text", Out(Text))

    def get_refresh_interval(self) -> int:
        """The period of the timer: one hour until get_session_info has read half the session's duration."""
        return self._ask("pvw_get_refresh_interval", Out(c_uint))

    def get_op_url(self) -> str:
        """The endpoint of operations."""
        return self._ask("pvw_get_op_url", Out(Text))

    def get_null_session_url(self) -> str:
        """That of calls without a session."""
        return self._ask("pvw_get_null_session_url", Out(Text))

    def get_upload_url(self) -> str:
        """That of uploads."""
        return self._ask("pvw_get_upload_url", Out(Text))

    def get_dms_url(self) -> str:
        """That of documents."""
        return self._ask("pvw_get_dms_url", Out(Text))

    def login(self, user_name: str, token: str, isp: str, password: str, use_token: int, send: int) -> None:
        """Sends cmd=login with the token where `use_token` is not 0, with the password otherwise. On success the root
        credential is replaced and the timer starts; on failure both stay. With `send` 0 nothing is sent, which fails
        as NotSent."""
        self._operate(
            "pvw_login", One(Text, user_name), One(Text, token), One(Text, isp), One(Text, password),
            One(c_int, use_token), One(c_int, send)
        )

    def get_cred_for_expired(self, user_name: str, token: str, isp: str, password: str, use_token: int) -> str:
        """The same request for a session that has expired: the credential goes to `new_cred`, and neither the client's
        own nor its timer is touched."""
        return self._operate(
            "pvw_get_cred_for_expired", Out(Text), One(Text, user_name), One(Text, token), One(Text, isp),
            One(Text, password), One(c_int, use_token)
        )

    def logout(self, *, cred: str | None = None) -> None:
        """Sends cmd=logout. Succeeds whatever comes of it; the credential, the timer and the last message stay."""
        self._operate("pvw_logout", One(Text, self._cred(cred)))

    def get_session_info(self, *, cred: str | None = None) -> None:
        """Sends cmd=get for sessionInfo, which also keeps the session alive. On success the refresh interval becomes
        half the session's duration, or one hour where the reply names none. The timer is not re-armed."""
        self._operate("pvw_get_session_info", One(Text, self._cred(cred)))

    def clone_session(self, workspace: str, *, cred: str | None = None) -> str:
        """Sends cmd=cloneSession: a further credential of the session, for one workspace unless `workspace` is empty.
        Re-arms the timer."""
        return self._operate("pvw_clone_session", One(Text, self._cred(cred)), One(Text, workspace), Out(Text))

    def call_wapi(self, command: str, *, cred: str | None = None) -> None:
        """Sends `command`, raw, with the credential behind it. Fails unless the reply's result is SUCCESS. The timer is
        not re-armed."""
        self._operate("pvw_call_wapi", One(Text, self._cred(cred)), One(Text, command))

    def wapi_proxy_call(
        self, command: str, method: int, url: str, headers: str, with_cred: int, *, cred: str | None = None
    ) -> tuple[bool, str]:
        """Sends `command` to `url` with the header lines of `headers`: as a form by Method.POST, joined to the URL
        behind "?" otherwise; where `with_cred` is not 0 the credential follows it and the reply's result decides,
        else the result is False. `reply` receives whatever came back also where the result is False, and nothing
        without a connection. A command that contains "cmd=login" is not sent. The last message and the timer are
        left alone. Raw: command, address and header lines; where the command is joined to the URL, a "#" in it is
        encoded and that of the URL is cut off."""
        return self._operate_always(
            "pvw_wapi_proxy_call", One(Text, self._cred(cred)), One(Text, command), One(c_int, method), One(Text, url),
            One(Text, headers), One(c_int, with_cred), Out(Text)
        )

    def create_space(
        self, name: str, fields: Sequence[WorkspaceField], type: int, favourite: int, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=AddTabs: a new workspace with its first tabs; a discussion room too where `type` is
        0. `workspace_id` receives its ID. An empty name is refused without a request, with a last message. Re-arms
        the timer. In XML: the name."""
        return self._operate(
            "pvw_create_space", One(Text, self._cred(cred)), One(Text, name), Items(WorkspaceField, fields), Out(Text),
            One(c_int, type), One(c_int, favourite)
        )

    def clone_wksp(
        self, name: str, source_workspace_id: str, type_and_flags: int, fields: Sequence[WorkspaceField],
        favourite: int, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=CloneWorkspace: a new workspace, or a template, with the tabs of another one. The low
        four bits of `type_and_flags` are the type, bit 4 makes a template; a discussion room is made where the whole
        is 0. `workspace_id` receives its ID. An empty name is refused without a request or a message. Re-arms the
        timer. In XML: the name; raw, and in XML: the ID of the source."""
        return self._operate(
            "pvw_clone_wksp", One(Text, self._cred(cred)), One(Text, name), One(Text, source_workspace_id),
            One(c_int, type_and_flags), Items(WorkspaceField, fields), Out(Text), One(c_int, favourite)
        )

    def edit_ext_wksp(
        self, workspace_id: str, name: str, change_name: int, fields: Sequence[WorkspaceField],
        *, cred: str | None = None
    ) -> None:
        """Sends cmd=set, type=workspace: the description, and the name where `change_name` is not 0. Refused without a
        request: an empty ID, and no name to change with no fields at all. Re-arms the timer. In XML: the name."""
        self._operate(
            "pvw_edit_ext_wksp", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, name),
            One(c_int, change_name), Items(WorkspaceField, fields)
        )

    def delete_wksp(self, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=DeleteWorkspace. An empty ID is refused without a request. Re-arms the timer. In XML:
        the ID."""
        self._operate("pvw_delete_wksp", One(Text, self._cred(cred)), One(Text, workspace_id))

    def leave_workspace(self, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=LeaveSpace: the user leaves the workspace. An empty credential or ID is refused
        without a request. Re-arms the timer. In XML: the ID."""
        self._operate("pvw_leave_workspace", One(Text, self._cred(cred)), One(Text, workspace_id))

    def create_space_using_app(
        self, name: str, app_name: str, description: str, favourite: int, type: int, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=CreateWorkspaceUsingApp: a new workspace made from an application, or blank where
        `app_name` is exactly "Blank". `workspace_id` receives its ID. Nothing is refused. Re-arms the timer. In XML:
        both names; in CDATA: the description."""
        return self._operate(
            "pvw_create_space_using_app", One(Text, self._cred(cred)), One(Text, name), One(Text, app_name), Out(Text),
            One(Text, description), One(c_int, favourite), One(c_int, type)
        )

    def save_workspace_as_app(
        self, workspace_id: str, app_name: str, group_id: str, description: str, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=SaveWorkspaceAsApp: the workspace becomes an application of the library `group_id`.
        `widget_id` receives the application's ID. Nothing is refused. Re-arms the timer. In XML: both IDs and the
        name; in CDATA: the description."""
        return self._operate(
            "pvw_save_workspace_as_app", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, app_name),
            One(Text, group_id), Out(Text), One(Text, description)
        )

    def create_tab(self, workspace_id: str, tab_name: str, tab_order: int, *, cred: str | None = None) -> str:
        """Sends cmd=execute, task=AddTabs: a new plain tab; `tab_id` receives its ID. An empty workspace ID or name is
        refused without a request. The timer is not re-armed. In XML: the workspace's ID; in CDATA: the name."""
        return self._operate(
            "pvw_create_tab", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, tab_name),
            One(c_int, tab_order), Out(Text)
        )

    def get_tabs(self, workspace_id: str, *, cred: str | None = None) -> list[Tab]:
        """Sends cmd=get, type=workspace for the tabs. Re-arms the timer."""
        return self._operate(
            "pvw_get_tabs", One(Text, self._cred(cred)), One(Text, workspace_id), Out(records.TabListInC)
        )

    def delete_tab(self, workspace_id: str, tab_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=delete, type=tab. An empty ID, and the fixed tabs "commTab" and "docTab", are refused without a
        request. The timer is not re-armed. The workspace's ID is not sent."""
        self._operate("pvw_delete_tab", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, tab_id))

    def edit_tab(self, workspace_id: str, tab: Tab, *, cred: str | None = None) -> None:
        """Sends cmd=set, type=tab: the tab of that ID takes the name of `tab`. An empty tab or workspace ID is refused
        without a request. The timer is not re-armed. In CDATA: the name. The workspace's ID is not sent."""
        self._operate("pvw_edit_tab", One(Text, self._cred(cred)), One(Text, workspace_id), One(Tab, tab))

    def edit_tab_order(self, workspace_id: str, tabs: Sequence[Tab], *, cred: str | None = None) -> None:
        """Sends cmd=set, type=wksp: each tab takes its place. An empty list is refused without a request. The timer is
        not re-armed. In XML: the IDs of the tabs."""
        self._operate("pvw_edit_tab_order", One(Text, self._cred(cred)), One(Text, workspace_id), Items(Tab, tabs))

    def set_space_icon(self, workspace_id: str, file_path: str, *, cred: str | None = None) -> str:
        """Posts the picture to the upload endpoint, task=ManageSpaceIcon; `url` receives the address it is kept under.
        A picture that cannot be read or is larger than 64 MiB is refused without a request, with a last message.
        Re-arms the timer. Credential, path and ID go into a multipart form, where nothing is encoded; the ID stands
        in XML, and a quotation mark in the path would end the file's name."""
        return self._operate(
            "pvw_set_space_icon", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, file_path), Out(Text)
        )

    def get_space_icon(self, icon_url: str, *, cred: str | None = None) -> str:
        """Fetches the picture into a file of the temporary folder, named after the last component of its address;
        `local_path` receives the file's path. Any status but 200, and a file that cannot be written, is a failure.
        The timer is not re-armed. Raw: the address and the credential, which is put behind "?cred="."""
        return self._operate("pvw_get_space_icon", One(Text, self._cred(cred)), One(Text, icon_url), Out(Text))

    def get_wksp_list(self, *, cred: str | None = None) -> tuple[list[ListedSpace], list[SpaceInvite]]:
        """Sends cmd=execute, task=RunScript: the user's workspaces with the user's role in each, and the invitations
        addressed to the user. Re-arms the timer."""
        return self._operate(
            "pvw_get_wksp_list", One(Text, self._cred(cred)), Out(records.ListedSpaceListInC),
            Out(records.SpaceInviteListInC)
        )

    def get_space_batch(
        self, workspace_id: str, *, cred: str | None = None
    ) -> tuple[Space, list[SpaceInvite], SpaceAccess]:
        """Sends cmd=execute, task=RunScript: one workspace, its invitations and the user's rights on it. Its kind is 0
        where the type is none that hosts know. Re-arms the timer. In XML: the ID."""
        return self._operate(
            "pvw_get_space_batch", One(Text, self._cred(cred)), One(Text, workspace_id), Out(records.SpaceInC),
            Out(records.SpaceInviteListInC), Out(records.SpaceAccessInC)
        )

    def get_spaces_test(self) -> None:
        """Does nothing."""
        self._operate("pvw_get_spaces_test")

    def probe_space_access(self, workspace_id: str, tests: int, *, cred: str | None = None) -> SpaceAccess:
        """Sends cmd=execute, task=ProbeAccess for a workspace: bits 0x01 and 0x02 of `tests` ask for changing and
        deleting it, 0x20 for joining. `access` has the texts as received. Re-arms the timer. In XML: the ID."""
        return self._operate(
            "pvw_probe_space_access", One(Text, self._cred(cred)), One(Text, workspace_id),
            Out(records.SpaceAccessInC), One(c_uint, tests)
        )

    def probe_space_access2(self, *, cred: str | None = None) -> SpaceAccess:
        """The same for the rights of no workspace: inviting in bulk, making discussion rooms and documents. The timer
        is not re-armed."""
        return self._operate("pvw_probe_space_access2", One(Text, self._cred(cred)), Out(records.SpaceAccessInC))

    def probe_doc_access(self, doc_id: str, *, cred: str | None = None) -> DocAccess:
        """The same for a document. Re-arms the timer. In XML: the ID."""
        return self._operate(
            "pvw_probe_doc_access", One(Text, self._cred(cred)), One(Text, doc_id), Out(records.DocAccessInC)
        )

    def probe_chat_room_access(self, room_id: str, *, cred: str | None = None) -> RoomAccess:
        """The same for a discussion room. The timer is not re-armed. In XML: the ID."""
        return self._operate(
            "pvw_probe_chat_room_access", One(Text, self._cred(cred)), One(Text, room_id), Out(records.RoomAccessInC)
        )

    def get_role(self, workspace_ids: Sequence[str], *, cred: str | None = None) -> list[RoleItem]:
        """Sends cmd=execute, task=ProbeAccess: may the user get and set each workspace? `roles` has the answers, one
        for each question. Re-arms the timer. In XML: the IDs."""
        return self._operate(
            "pvw_get_role", One(Text, self._cred(cred)), Items(str, workspace_ids), Out(records.RoleItemListInC)
        )

    def probe_access_all_space(self, other_user_id: str, *, cred: str | None = None) -> list[RoleItem]:
        """Sends cmd=execute, task=RunScript: the same for every workspace that the user shares with another. Re-arms
        the timer. In XML: the other user's ID."""
        return self._operate(
            "pvw_probe_access_all_space", One(Text, self._cred(cred)), One(Text, other_user_id),
            Out(records.RoleItemListInC)
        )

    def get_members(self, workspace_id: str, *, cred: str | None = None) -> list[Member]:
        """Sends cmd=get, type=workspace for the members. Re-arms the timer."""
        return self._operate(
            "pvw_get_members", One(Text, self._cred(cred)), One(Text, workspace_id), Out(records.MemberListInC)
        )

    def remove_space_member(self, workspace_id: str, member_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=remove, type=workspace for one member. Re-arms the timer. The member's ID stands between
        apostrophes in a path, where an apostrophe would end it."""
        self._operate(
            "pvw_remove_space_member", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, member_id)
        )

    def change_member_role(self, workspace_id: str, member_id: str, role: int, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=ChangeRole: administrator for InviteAs.ADMIN, member for anything else. The timer is
        not re-armed. In XML: both IDs."""
        self._operate(
            "pvw_change_member_role", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, member_id),
            One(c_int, role)
        )

    def invite_members(
        self, invitations: Sequence[Invitation], message: str, *, cred: str | None = None
    ) -> list[Invitation]:
        """Sends cmd=execute, task=BulkSpaceInvite. The message goes along with each invitation of method "EMAIL". What
        comes back are the invitations with each result in the first one of its workspace and invitee that has none
        yet; a result without a status leaves that of the invitation. The timer is not re-armed. In CDATA: the
        message and each invitee; in XML: the other texts of the invitations."""
        return self._operate(
            "pvw_invite_members", One(Text, self._cred(cred)), Items(Invitation, invitations),
            Out(records.InvitationListInC), One(Text, message)
        )

    def del_invt(self, workspace_id: str, user_descriptor: str, *, cred: str | None = None) -> None:
        """Sends cmd=delete, type=spaceInvite: withdraws the invitation of one invitee to one workspace. Re-arms the
        timer. In XML: the ID; in CDATA: the invitee."""
        self._operate("pvw_del_invt", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, user_descriptor))

    def response_invitation(self, workspace_id: str, accept: int, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=JoinSpace: takes the invitation where `accept` is not 0, refuses it otherwise.
        Re-arms the timer. In XML: the ID."""
        self._operate(
            "pvw_response_invitation", One(Text, self._cred(cred)), One(Text, workspace_id), One(c_int, accept)
        )

    def get_favorite_space_list(self, thing_name: str, *, cred: str | None = None) -> list[Space]:
        """Sends cmd=execute, task=RunScript: the workspaces that are favourites under that name, with their members.
        One whose workspace is gone is left out. Re-arms the timer. In XML: the name."""
        return self._operate(
            "pvw_get_favorite_space_list", One(Text, self._cred(cred)), One(Text, thing_name),
            Out(records.SpaceListInC)
        )

    def create_favorite_space(self, thing_name: str, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=create, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID."""
        self._operate(
            "pvw_create_favorite_space", One(Text, self._cred(cred)), One(Text, thing_name), One(Text, workspace_id)
        )

    def delete_favorite_space(self, thing_name: str, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=delete, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID."""
        self._operate(
            "pvw_delete_favorite_space", One(Text, self._cred(cred)), One(Text, thing_name), One(Text, workspace_id)
        )

    def get_user_configure_info(self, *, cred: str | None = None) -> UserConfigInfo:
        """Sends cmd=get, type=user for the user, and keeps user ID and namespace ID in the client. Re-arms the timer.
        """
        return self._operate("pvw_get_user_configure_info", One(Text, self._cred(cred)), Out(records.UserConfigInfoInC))

    def get_user_profile(self, users: Sequence[UserProfile], *, cred: str | None = None) -> list[UserProfile]:
        """Sends cmd=execute, task=GetUserProfile for the user IDs in `users`; the profiles come back. Re-arms the
        timer. In XML: the IDs."""
        return self._operate(
            "pvw_get_user_profile", One(Text, self._cred(cred)), Items(UserProfile, users),
            Out(records.UserProfileListInC)
        )

    def edit_ext_user(self, user: str, fields: Sequence[UserField], *, cred: str | None = None) -> None:
        """Sends cmd=set, type=user: the user's extension fields. An empty list is refused without a request. Re-arms
        the timer."""
        self._operate("pvw_edit_ext_user", One(Text, self._cred(cred)), One(Text, user), Items(UserField, fields))

    def create_rdqav_account(self, user: str, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=CreateRDQAVAccounts: makes the user's audio/video account, which
        get_user_configure_info then reads. Re-arms the timer. In XML: the ID."""
        self._operate("pvw_create_rdqav_account", One(Text, self._cred(cred)), One(Text, user))

    def get_org_info(self, *, cred: str | None = None) -> tuple[str, str, str, str]:
        """Sends cmd=get, type=org for the organisation's addresses. The timer is not re-armed."""
        return self._operate(
            "pvw_get_org_info", One(Text, self._cred(cred)), Out(Text), Out(Text), Out(Text), Out(Text)
        )

    def get_domain_list(self, *, cred: str | None = None) -> str:
        """Sends cmd=get, type=org: `domains` becomes the white list, a comma, and each domain with a comma behind it.
        Re-arms the timer."""
        return self._operate("pvw_get_domain_list", One(Text, self._cred(cred)), Out(Text))

    def get_policy_data(self, *, cred: str | None = None) -> Policy:
        """Sends cmd=execute, task=ProbeAccess for 21 features: the flag of each that is allowed is 1, every other 0.
        Re-arms the timer."""
        return self._operate("pvw_get_policy_data", One(Text, self._cred(cred)), Out(records.PolicyInC))

    def get_libraries(
        self, with_templates: int, with_widgets: int, read_only: int, *, cred: str | None = None
    ) -> list[Library]:
        """Sends cmd=execute, task=GetUserLibraries: the libraries with their templates. Re-arms the timer."""
        return self._operate(
            "pvw_get_libraries", One(Text, self._cred(cred)), One(c_int, with_templates), One(c_int, with_widgets),
            One(c_int, read_only), Out(records.LibraryListInC)
        )

    def add_template_to_library(self, group_id: str, template_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=add, type=grp: one template more in a library. Re-arms the timer. In XML: the template's ID."""
        self._operate(
            "pvw_add_template_to_library", One(Text, self._cred(cred)), One(Text, group_id), One(Text, template_id)
        )

    def get_user_libraries_with_apps(
        self, read_only: int, with_top_level_apps: int, *, cred: str | None = None
    ) -> list[AppLibrary]:
        """Sends cmd=execute, task=GetUserLibrariesWithApps: the libraries with their applications. Re-arms the timer.
        """
        return self._operate(
            "pvw_get_user_libraries_with_apps", One(Text, self._cred(cred)), One(c_int, read_only),
            One(c_int, with_top_level_apps), Out(records.AppLibraryListInC)
        )

    def get_space_notify(self, items: Sequence[SpaceCountItem], *, cred: str | None = None) -> list[SpaceCountItem]:
        """Sends cmd=execute, task=GetWorkspaceNotificationCount for the workspaces in `items`; the counts come back.
        Re-arms the timer. Raw: the credential; in XML: the IDs."""
        return self._operate(
            "pvw_get_space_notify", One(Text, self._cred(cred)), Items(SpaceCountItem, items),
            Out(records.SpaceCountItemListInC)
        )

    def get_space_activity(self, items: Sequence[SpaceCountItem], *, cred: str | None = None) -> list[SpaceCountItem]:
        """The same task with the unread messages and active members of each workspace: the activity values come back.
        Re-arms the timer. Raw: the credential; in XML: the IDs."""
        return self._operate(
            "pvw_get_space_activity", One(Text, self._cred(cred)), Items(SpaceCountItem, items),
            Out(records.SpaceCountItemListInC)
        )

    def send_notification_event(
        self, event: int, workspace_id: str, workspace_name: str, message: str, specific_tag: str,
        sender_user_name: str, *, cred: str | None = None
    ) -> None:
        """Sends cmd=execute, task=SendNotificationEvent. A value that is no event is refused without a request, with a
        last message. Re-arms the timer. In XML: the ID, the tag and the sender; in CDATA: the workspace's name and
        the message."""
        self._operate(
            "pvw_send_notification_event", One(Text, self._cred(cred)), One(c_int, event), One(Text, workspace_id),
            One(Text, workspace_name), One(Text, message), One(Text, specific_tag), One(Text, sender_user_name)
        )

    def write_meeting_record(
        self, workspace_id: str, site_name: str, meeting_id: str, host_id: str, session_name: str,
        *, cred: str | None = None
    ) -> None:
        """Sends cmd=create, type=thng: the record of a meeting. Re-arms the timer. In XML: all five texts."""
        self._operate(
            "pvw_write_meeting_record", One(Text, self._cred(cred)), One(Text, workspace_id), One(Text, site_name),
            One(Text, meeting_id), One(Text, host_id), One(Text, session_name)
        )


class AwaitedOperations:
    """The same, awaited: each runs on the client's own thread."""

    async def get_user_id(self) -> str:
        """The signed-in user's ID, empty until the user's configuration has been read."""
        return await self._run(Operations.get_user_id)

    async def get_namespace_id(self) -> str:
        """The same for the namespace's ID."""
        return await self._run(Operations.get_namespace_id)

    async def get_root_cred(self) -> str:
        """The session credential that login obtained and that the timer refreshes."""
        return await self._run(Operations.get_root_cred)

    async def set_root_cred(self, cred: str) -> None:
        """Replaces it."""
        await self._run(Operations.set_root_cred, cred)

    async def get_lst_msg(self) -> Message:
        """Why the last request failed; cleared by one that succeeds."""
        return await self._run(Operations.get_lst_msg)

    async def get_network_error(self) -> int:
        """1 when the last request got no whole reply: no server was reached, the connection broke, or the host stopped
        the transfer itself. 0 when it got any reply."""
        return await self._run(Operations.get_network_error)

    async def get_network_error_kind(self) -> int:
        """The cause of it, one of NetworkCause: NetworkCause.NONE where the last request got a reply, and whenever
        there is no network error, but for wapi_proxy_call, which leaves that alone and still says here what it met.
        logout touches neither."""
        return await self._run(Operations.get_network_error_kind)

    async def get_network_error_text(self) -> str:
        """The same in the system's own words, with the host and port that were meant; empty for NetworkCause.NONE."""
        return await self._run(Operations.get_network_error_text)

    async def get_refresh_interval(self) -> int:
        """The period of the timer: one hour until get_session_info has read half the session's duration."""
        return await self._run(Operations.get_refresh_interval)

    async def get_op_url(self) -> str:
        """The endpoint of operations."""
        return await self._run(Operations.get_op_url)

    async def get_null_session_url(self) -> str:
        """That of calls without a session."""
        return await self._run(Operations.get_null_session_url)

    async def get_upload_url(self) -> str:
        """That of uploads."""
        return await self._run(Operations.get_upload_url)

    async def get_dms_url(self) -> str:
        """That of documents."""
        return await self._run(Operations.get_dms_url)

    async def login(self, user_name: str, token: str, isp: str, password: str, use_token: int, send: int) -> None:
        """Sends cmd=login with the token where `use_token` is not 0, with the password otherwise. On success the root
        credential is replaced and the timer starts; on failure both stay. With `send` 0 nothing is sent, which fails
        as NotSent."""
        await self._run(Operations.login, user_name, token, isp, password, use_token, send)

    async def get_cred_for_expired(self, user_name: str, token: str, isp: str, password: str, use_token: int) -> str:
        """The same request for a session that has expired: the credential goes to `new_cred`, and neither the client's
        own nor its timer is touched."""
        return await self._run(Operations.get_cred_for_expired, user_name, token, isp, password, use_token)

    async def logout(self, *, cred: str | None = None) -> None:
        """Sends cmd=logout. Succeeds whatever comes of it; the credential, the timer and the last message stay."""
        await self._run(Operations.logout, cred=cred)

    async def get_session_info(self, *, cred: str | None = None) -> None:
        """Sends cmd=get for sessionInfo, which also keeps the session alive. On success the refresh interval becomes
        half the session's duration, or one hour where the reply names none. The timer is not re-armed."""
        await self._run(Operations.get_session_info, cred=cred)

    async def clone_session(self, workspace: str, *, cred: str | None = None) -> str:
        """Sends cmd=cloneSession: a further credential of the session, for one workspace unless `workspace` is empty.
        Re-arms the timer."""
        return await self._run(Operations.clone_session, workspace, cred=cred)

    async def call_wapi(self, command: str, *, cred: str | None = None) -> None:
        """Sends `command`, raw, with the credential behind it. Fails unless the reply's result is SUCCESS. The timer is
        not re-armed."""
        await self._run(Operations.call_wapi, command, cred=cred)

    async def wapi_proxy_call(
        self, command: str, method: int, url: str, headers: str, with_cred: int, *, cred: str | None = None
    ) -> tuple[bool, str]:
        """Sends `command` to `url` with the header lines of `headers`: as a form by Method.POST, joined to the URL
        behind "?" otherwise; where `with_cred` is not 0 the credential follows it and the reply's result decides,
        else the result is False. `reply` receives whatever came back also where the result is False, and nothing
        without a connection. A command that contains "cmd=login" is not sent. The last message and the timer are
        left alone. Raw: command, address and header lines; where the command is joined to the URL, a "#" in it is
        encoded and that of the URL is cut off."""
        return await self._run(Operations.wapi_proxy_call, command, method, url, headers, with_cred, cred=cred)

    async def create_space(
        self, name: str, fields: Sequence[WorkspaceField], type: int, favourite: int, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=AddTabs: a new workspace with its first tabs; a discussion room too where `type` is
        0. `workspace_id` receives its ID. An empty name is refused without a request, with a last message. Re-arms
        the timer. In XML: the name."""
        return await self._run(Operations.create_space, name, fields, type, favourite, cred=cred)

    async def clone_wksp(
        self, name: str, source_workspace_id: str, type_and_flags: int, fields: Sequence[WorkspaceField],
        favourite: int, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=CloneWorkspace: a new workspace, or a template, with the tabs of another one. The low
        four bits of `type_and_flags` are the type, bit 4 makes a template; a discussion room is made where the whole
        is 0. `workspace_id` receives its ID. An empty name is refused without a request or a message. Re-arms the
        timer. In XML: the name; raw, and in XML: the ID of the source."""
        return await self._run(
            Operations.clone_wksp, name, source_workspace_id, type_and_flags, fields, favourite, cred=cred
        )

    async def edit_ext_wksp(
        self, workspace_id: str, name: str, change_name: int, fields: Sequence[WorkspaceField],
        *, cred: str | None = None
    ) -> None:
        """Sends cmd=set, type=workspace: the description, and the name where `change_name` is not 0. Refused without a
        request: an empty ID, and no name to change with no fields at all. Re-arms the timer. In XML: the name."""
        await self._run(Operations.edit_ext_wksp, workspace_id, name, change_name, fields, cred=cred)

    async def delete_wksp(self, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=DeleteWorkspace. An empty ID is refused without a request. Re-arms the timer. In XML:
        the ID."""
        await self._run(Operations.delete_wksp, workspace_id, cred=cred)

    async def leave_workspace(self, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=LeaveSpace: the user leaves the workspace. An empty credential or ID is refused
        without a request. Re-arms the timer. In XML: the ID."""
        await self._run(Operations.leave_workspace, workspace_id, cred=cred)

    async def create_space_using_app(
        self, name: str, app_name: str, description: str, favourite: int, type: int, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=CreateWorkspaceUsingApp: a new workspace made from an application, or blank where
        `app_name` is exactly "Blank". `workspace_id` receives its ID. Nothing is refused. Re-arms the timer. In XML:
        both names; in CDATA: the description."""
        return await self._run(
            Operations.create_space_using_app, name, app_name, description, favourite, type, cred=cred
        )

    async def save_workspace_as_app(
        self, workspace_id: str, app_name: str, group_id: str, description: str, *, cred: str | None = None
    ) -> str:
        """Sends cmd=execute, task=SaveWorkspaceAsApp: the workspace becomes an application of the library `group_id`.
        `widget_id` receives the application's ID. Nothing is refused. Re-arms the timer. In XML: both IDs and the
        name; in CDATA: the description."""
        return await self._run(
            Operations.save_workspace_as_app, workspace_id, app_name, group_id, description, cred=cred
        )

    async def create_tab(self, workspace_id: str, tab_name: str, tab_order: int, *, cred: str | None = None) -> str:
        """Sends cmd=execute, task=AddTabs: a new plain tab; `tab_id` receives its ID. An empty workspace ID or name is
        refused without a request. The timer is not re-armed. In XML: the workspace's ID; in CDATA: the name."""
        return await self._run(Operations.create_tab, workspace_id, tab_name, tab_order, cred=cred)

    async def get_tabs(self, workspace_id: str, *, cred: str | None = None) -> list[Tab]:
        """Sends cmd=get, type=workspace for the tabs. Re-arms the timer."""
        return await self._run(Operations.get_tabs, workspace_id, cred=cred)

    async def delete_tab(self, workspace_id: str, tab_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=delete, type=tab. An empty ID, and the fixed tabs "commTab" and "docTab", are refused without a
        request. The timer is not re-armed. The workspace's ID is not sent."""
        await self._run(Operations.delete_tab, workspace_id, tab_id, cred=cred)

    async def edit_tab(self, workspace_id: str, tab: Tab, *, cred: str | None = None) -> None:
        """Sends cmd=set, type=tab: the tab of that ID takes the name of `tab`. An empty tab or workspace ID is refused
        without a request. The timer is not re-armed. In CDATA: the name. The workspace's ID is not sent."""
        await self._run(Operations.edit_tab, workspace_id, tab, cred=cred)

    async def edit_tab_order(self, workspace_id: str, tabs: Sequence[Tab], *, cred: str | None = None) -> None:
        """Sends cmd=set, type=wksp: each tab takes its place. An empty list is refused without a request. The timer is
        not re-armed. In XML: the IDs of the tabs."""
        await self._run(Operations.edit_tab_order, workspace_id, tabs, cred=cred)

    async def set_space_icon(self, workspace_id: str, file_path: str, *, cred: str | None = None) -> str:
        """Posts the picture to the upload endpoint, task=ManageSpaceIcon; `url` receives the address it is kept under.
        A picture that cannot be read or is larger than 64 MiB is refused without a request, with a last message.
        Re-arms the timer. Credential, path and ID go into a multipart form, where nothing is encoded; the ID stands
        in XML, and a quotation mark in the path would end the file's name."""
        return await self._run(Operations.set_space_icon, workspace_id, file_path, cred=cred)

    async def get_space_icon(self, icon_url: str, *, cred: str | None = None) -> str:
        """Fetches the picture into a file of the temporary folder, named after the last component of its address;
        `local_path` receives the file's path. Any status but 200, and a file that cannot be written, is a failure.
        The timer is not re-armed. Raw: the address and the credential, which is put behind "?cred="."""
        return await self._run(Operations.get_space_icon, icon_url, cred=cred)

    async def get_wksp_list(self, *, cred: str | None = None) -> tuple[list[ListedSpace], list[SpaceInvite]]:
        """Sends cmd=execute, task=RunScript: the user's workspaces with the user's role in each, and the invitations
        addressed to the user. Re-arms the timer."""
        return await self._run(Operations.get_wksp_list, cred=cred)

    async def get_space_batch(
        self, workspace_id: str, *, cred: str | None = None
    ) -> tuple[Space, list[SpaceInvite], SpaceAccess]:
        """Sends cmd=execute, task=RunScript: one workspace, its invitations and the user's rights on it. Its kind is 0
        where the type is none that hosts know. Re-arms the timer. In XML: the ID."""
        return await self._run(Operations.get_space_batch, workspace_id, cred=cred)

    async def get_spaces_test(self) -> None:
        """Does nothing."""
        await self._run(Operations.get_spaces_test)

    async def probe_space_access(self, workspace_id: str, tests: int, *, cred: str | None = None) -> SpaceAccess:
        """Sends cmd=execute, task=ProbeAccess for a workspace: bits 0x01 and 0x02 of `tests` ask for changing and
        deleting it, 0x20 for joining. `access` has the texts as received. Re-arms the timer. In XML: the ID."""
        return await self._run(Operations.probe_space_access, workspace_id, tests, cred=cred)

    async def probe_space_access2(self, *, cred: str | None = None) -> SpaceAccess:
        """The same for the rights of no workspace: inviting in bulk, making discussion rooms and documents. The timer
        is not re-armed."""
        return await self._run(Operations.probe_space_access2, cred=cred)

    async def probe_doc_access(self, doc_id: str, *, cred: str | None = None) -> DocAccess:
        """The same for a document. Re-arms the timer. In XML: the ID."""
        return await self._run(Operations.probe_doc_access, doc_id, cred=cred)

    async def probe_chat_room_access(self, room_id: str, *, cred: str | None = None) -> RoomAccess:
        """The same for a discussion room. The timer is not re-armed. In XML: the ID."""
        return await self._run(Operations.probe_chat_room_access, room_id, cred=cred)

    async def get_role(self, workspace_ids: Sequence[str], *, cred: str | None = None) -> list[RoleItem]:
        """Sends cmd=execute, task=ProbeAccess: may the user get and set each workspace? `roles` has the answers, one
        for each question. Re-arms the timer. In XML: the IDs."""
        return await self._run(Operations.get_role, workspace_ids, cred=cred)

    async def probe_access_all_space(self, other_user_id: str, *, cred: str | None = None) -> list[RoleItem]:
        """Sends cmd=execute, task=RunScript: the same for every workspace that the user shares with another. Re-arms
        the timer. In XML: the other user's ID."""
        return await self._run(Operations.probe_access_all_space, other_user_id, cred=cred)

    async def get_members(self, workspace_id: str, *, cred: str | None = None) -> list[Member]:
        """Sends cmd=get, type=workspace for the members. Re-arms the timer."""
        return await self._run(Operations.get_members, workspace_id, cred=cred)

    async def remove_space_member(self, workspace_id: str, member_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=remove, type=workspace for one member. Re-arms the timer. The member's ID stands between
        apostrophes in a path, where an apostrophe would end it."""
        await self._run(Operations.remove_space_member, workspace_id, member_id, cred=cred)

    async def change_member_role(
        self, workspace_id: str, member_id: str, role: int, *, cred: str | None = None
    ) -> None:
        """Sends cmd=execute, task=ChangeRole: administrator for InviteAs.ADMIN, member for anything else. The timer is
        not re-armed. In XML: both IDs."""
        await self._run(Operations.change_member_role, workspace_id, member_id, role, cred=cred)

    async def invite_members(
        self, invitations: Sequence[Invitation], message: str, *, cred: str | None = None
    ) -> list[Invitation]:
        """Sends cmd=execute, task=BulkSpaceInvite. The message goes along with each invitation of method "EMAIL". What
        comes back are the invitations with each result in the first one of its workspace and invitee that has none
        yet; a result without a status leaves that of the invitation. The timer is not re-armed. In CDATA: the
        message and each invitee; in XML: the other texts of the invitations."""
        return await self._run(Operations.invite_members, invitations, message, cred=cred)

    async def del_invt(self, workspace_id: str, user_descriptor: str, *, cred: str | None = None) -> None:
        """Sends cmd=delete, type=spaceInvite: withdraws the invitation of one invitee to one workspace. Re-arms the
        timer. In XML: the ID; in CDATA: the invitee."""
        await self._run(Operations.del_invt, workspace_id, user_descriptor, cred=cred)

    async def response_invitation(self, workspace_id: str, accept: int, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=JoinSpace: takes the invitation where `accept` is not 0, refuses it otherwise.
        Re-arms the timer. In XML: the ID."""
        await self._run(Operations.response_invitation, workspace_id, accept, cred=cred)

    async def get_favorite_space_list(self, thing_name: str, *, cred: str | None = None) -> list[Space]:
        """Sends cmd=execute, task=RunScript: the workspaces that are favourites under that name, with their members.
        One whose workspace is gone is left out. Re-arms the timer. In XML: the name."""
        return await self._run(Operations.get_favorite_space_list, thing_name, cred=cred)

    async def create_favorite_space(self, thing_name: str, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=create, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID."""
        await self._run(Operations.create_favorite_space, thing_name, workspace_id, cred=cred)

    async def delete_favorite_space(self, thing_name: str, workspace_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=delete, type=wtng. Re-arms the timer. Raw: the credential; in XML: the name and the ID."""
        await self._run(Operations.delete_favorite_space, thing_name, workspace_id, cred=cred)

    async def get_user_configure_info(self, *, cred: str | None = None) -> UserConfigInfo:
        """Sends cmd=get, type=user for the user, and keeps user ID and namespace ID in the client. Re-arms the timer.
        """
        return await self._run(Operations.get_user_configure_info, cred=cred)

    async def get_user_profile(self, users: Sequence[UserProfile], *, cred: str | None = None) -> list[UserProfile]:
        """Sends cmd=execute, task=GetUserProfile for the user IDs in `users`; the profiles come back. Re-arms the
        timer. In XML: the IDs."""
        return await self._run(Operations.get_user_profile, users, cred=cred)

    async def edit_ext_user(self, user: str, fields: Sequence[UserField], *, cred: str | None = None) -> None:
        """Sends cmd=set, type=user: the user's extension fields. An empty list is refused without a request. Re-arms
        the timer."""
        await self._run(Operations.edit_ext_user, user, fields, cred=cred)

    async def create_rdqav_account(self, user: str, *, cred: str | None = None) -> None:
        """Sends cmd=execute, task=CreateRDQAVAccounts: makes the user's audio/video account, which
        get_user_configure_info then reads. Re-arms the timer. In XML: the ID."""
        await self._run(Operations.create_rdqav_account, user, cred=cred)

    async def get_org_info(self, *, cred: str | None = None) -> tuple[str, str, str, str]:
        """Sends cmd=get, type=org for the organisation's addresses. The timer is not re-armed."""
        return await self._run(Operations.get_org_info, cred=cred)

    async def get_domain_list(self, *, cred: str | None = None) -> str:
        """Sends cmd=get, type=org: `domains` becomes the white list, a comma, and each domain with a comma behind it.
        Re-arms the timer."""
        return await self._run(Operations.get_domain_list, cred=cred)

    async def get_policy_data(self, *, cred: str | None = None) -> Policy:
        """Sends cmd=execute, task=ProbeAccess for 21 features: the flag of each that is allowed is 1, every other 0.
        Re-arms the timer."""
        return await self._run(Operations.get_policy_data, cred=cred)

    async def get_libraries(
        self, with_templates: int, with_widgets: int, read_only: int, *, cred: str | None = None
    ) -> list[Library]:
        """Sends cmd=execute, task=GetUserLibraries: the libraries with their templates. Re-arms the timer."""
        return await self._run(Operations.get_libraries, with_templates, with_widgets, read_only, cred=cred)

    async def add_template_to_library(self, group_id: str, template_id: str, *, cred: str | None = None) -> None:
        """Sends cmd=add, type=grp: one template more in a library. Re-arms the timer. In XML: the template's ID."""
        await self._run(Operations.add_template_to_library, group_id, template_id, cred=cred)

    async def get_user_libraries_with_apps(
        self, read_only: int, with_top_level_apps: int, *, cred: str | None = None
    ) -> list[AppLibrary]:
        """Sends cmd=execute, task=GetUserLibrariesWithApps: the libraries with their applications. Re-arms the timer.
        """
        return await self._run(Operations.get_user_libraries_with_apps, read_only, with_top_level_apps, cred=cred)

    async def get_space_notify(
        self, items: Sequence[SpaceCountItem], *, cred: str | None = None
    ) -> list[SpaceCountItem]:
        """Sends cmd=execute, task=GetWorkspaceNotificationCount for the workspaces in `items`; the counts come back.
        Re-arms the timer. Raw: the credential; in XML: the IDs."""
        return await self._run(Operations.get_space_notify, items, cred=cred)

    async def get_space_activity(
        self, items: Sequence[SpaceCountItem], *, cred: str | None = None
    ) -> list[SpaceCountItem]:
        """The same task with the unread messages and active members of each workspace: the activity values come back.
        Re-arms the timer. Raw: the credential; in XML: the IDs."""
        return await self._run(Operations.get_space_activity, items, cred=cred)

    async def send_notification_event(
        self, event: int, workspace_id: str, workspace_name: str, message: str, specific_tag: str,
        sender_user_name: str, *, cred: str | None = None
    ) -> None:
        """Sends cmd=execute, task=SendNotificationEvent. A value that is no event is refused without a request, with a
        last message. Re-arms the timer. In XML: the ID, the tag and the sender; in CDATA: the workspace's name and
        the message."""
        await self._run(
            Operations.send_notification_event, event, workspace_id, workspace_name, message, specific_tag,
            sender_user_name, cred=cred
        )

    async def write_meeting_record(
        self, workspace_id: str, site_name: str, meeting_id: str, host_id: str, session_name: str,
        *, cred: str | None = None
    ) -> None:
        """Sends cmd=create, type=thng: the record of a meeting. Re-arms the timer. In XML: all five texts."""
        await self._run(
            Operations.write_meeting_record, workspace_id, site_name, meeting_id, host_id, session_name, cred=cred
        )
