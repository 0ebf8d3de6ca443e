// What the service answers to questions of right, as the texts received.
#pragma once

#include "pvutil/StringEx.h"

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
