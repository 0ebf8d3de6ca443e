// Counters of workspaces, and what happens in them.
#pragma once

#include "pvutil/StringEx.h"

struct SPACE_COUNT_ITEM {
    CStringT workspaceID;
    int count = 0;  ///< read back: the notification count, or the activity value
    int activeMembersCount = 0;
    int unreadMessageCount = 0;
};

enum EVENT_NAME : int { START_MEETING = 0, START_VOICE, START_TELEPHONY, END_MEETING, END_VOICE, END_TELEPHONY };
