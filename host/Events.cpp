// Counters of workspaces, events in them, and records of meetings.
#include <algorithm>
#include <array>

#include "host/Call.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace host {

namespace {

/// The place of each word is the event's number.
constexpr std::array kEvents{"start-meeting", "start-voice", "start-telephony",
                             "end-meeting",   "end-voice",   "end-telephony"};

EVENT_NAME eventOf(const Call& call)
{
    const auto* const word = std::ranges::find(kEvents, ToUtf8(call.text("event")));
    return static_cast<EVENT_NAME>(word - kEvents.begin());
}

std::vector<SPACE_COUNT_ITEM> itemsOf(const Call& call)
{
    std::vector<SPACE_COUNT_ITEM> items;
    for (const CStringT& workspace : call.xmlList("workspace")) {
        SPACE_COUNT_ITEM& item = items.emplace_back();
        item.workspaceID = workspace;
        item.unreadMessageCount = call.number("--unread", 0);
        item.activeMembersCount = call.number("--active", 0);
    }
    return items;
}

void notify(Call& call)
{
    std::vector<SPACE_COUNT_ITEM> items = itemsOf(call);
    call.check(call.client().getSpaceNotify(call.formCred(), items));
    call.show(items, {"workspaceID", "count"});
}

void activity(Call& call)
{
    std::vector<SPACE_COUNT_ITEM> items = itemsOf(call);
    call.check(call.client().getSpaceActivity(call.formCred(), items));
    call.show(items, {"workspaceID", "count"});
}

void send(Call& call)
{
    call.check(call.client().sendNotificationEvent(call.cred(), eventOf(call), call.xml("workspace"),
                                                   call.cdata("--workspace-name"), call.cdata("--message"),
                                                   call.xml("--tag"), call.xml("--sender")));
}

void record(Call& call)
{
    call.check(call.client().writeMeetingRecord(call.cred(), call.xml("workspace"), call.xml("--site"),
                                                call.xml("--meeting"), call.xml("--host"), call.xml("--session")));
}

Command activityCommand(const Argument& workspaces)
{
    return {"activity",
            "Report what you see in workspaces, and read how active they are",
            {{"--unread", "How many messages are unread, in each of them", Kind::number},
             {"--active", "How many members are active, in each of them", Kind::number},
             workspaces},
            activity,
            {"getSpaceActivity"},
            {},
            membersOf<SPACE_COUNT_ITEM>};
}

}  // namespace

Commands eventsCommands()
{
    const Argument workspace{"workspace", "The workspace's ID"};
    const Argument workspaces{"workspace", "The workspaces' IDs", Kind::list};
    return {
        {"notify",
         "Count the events that you have not caused",
         {workspaces},
         notify,
         {"getSpaceNotify"},
         {},
         membersOf<SPACE_COUNT_ITEM>},
        activityCommand(workspaces),
        {"event", "Events that the members of a workspace hear of", {}, nullptr},
        {"event send",
         "Tell the members that a meeting or a call begins or ends",
         {workspace,
          {"event", "What happens", Kind::text, {kEvents.begin(), kEvents.end()}},
          {"--workspace-name", "The workspace's name, as the members are to read it"},
          {"--message", "What they are to read beside it"},
          {"--tag", "A mark for programs"},
          {"--sender", "The user name of the sender"}},
         send,
         {"sendNotificationEvent"}},
        {"meeting", "Meetings", {}, nullptr},
        {"meeting record",
         "Record a meeting of a workspace",
         {workspace,
          {"--site", "The conferencing site's name"},
          {"--meeting", "The meeting's ID there"},
          {"--host", "The audio/video account of who holds it"},
          {"--session", "The session's name"}},
         record,
         {"writeMeetingRecord"}},
    };
}

}  // namespace host
