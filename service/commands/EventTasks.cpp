#include <algorithm>
#include <array>

#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/base/Text.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/Roles.h"
#include "service/store/Events.h"
#include "service/store/Members.h"

namespace service::commands {

namespace {

constexpr std::size_t kMaxWorkspaces = 10'000;
constexpr long long kMostCount = 1'000'000'000;
constexpr const char* kEventType = "REALTIME_COMMUNICATION_EVENT";
constexpr std::array<std::string_view, 6> kEventNames{"START_MEETING", "START_VOICE", "START_TELEPHONY",
                                                      "END_MEETING",   "END_VOICE",   "END_TELEPHONY"};

void addNotificationCount(Context& context, const std::string& workspaceID, xml::Node& result)
{
    const long long count = store::notificationCount(context.database, workspaceID, context.session.userID);
    result.add("notificationCount", std::to_string(count));
}

// The host's report is stored first, so that the value that it gets back holds it.
void addActivity(Context& context, const std::string& workspaceID, const xml::Node& report, xml::Node& result)
{
    store::putActivity(context.database, workspaceID, context.session.userID,
                       numberField(report, "unreadMessageCount", 0, kMostCount, 0),
                       numberField(report, "activeMembersCount", 0, kMostCount, 0));
    result.add("activityValue", std::to_string(store::activityValue(context.database, workspaceID)));
}

// A host asks about all workspaces that it knows of: one that has gone meanwhile does not keep it from the others.
bool isAnswered(const Context& context, const std::string& workspaceID, bool activity)
{
    if (activity && !rules::sessionMayChange(context, workspaceID)) return false;
    return store::isMember(context.database, workspaceID, context.session.userID);
}

}  // namespace

// One task, two questions: getCount reads the notification counts, getActivity reports counts and reads activity.
void getNotificationCount(Context& context, const xml::Node& xml, Reply& reply)
{
    const bool activity = xml.name == "getActivity";
    if (!activity) expectElement(xml, "getCount");
    if (xml.children.size() > kMaxWorkspaces)
        throw Refusal(exceptionid::kLimitExceeded, "there are too many workspaces");
    xml::Node& results = reply.payload.add("Results");
    for (const xml::Node& asked : xml.children) {
        expectElement(asked, "workspace");
        const std::string workspaceID = requiredID(asked, "workspaceID");
        if (!isAnswered(context, workspaceID, activity)) continue;
        xml::Node& result = results.add("workspace");
        result.add("workspaceID", workspaceID);
        if (activity) {
            addActivity(context, workspaceID, asked, result);
        } else {
            addNotificationCount(context, workspaceID, result);
        }
    }
}

void sendNotificationEvent(Context& context, const xml::Node& xml, Reply& /*reply*/)
{
    expectElement(xml, "eventData");
    const xml::Node* const note = xml.child("eventNotification");
    if (note == nullptr) throw Refusal(exceptionid::kBadRequest, "eventNotification is missing");
    store::Event event;
    event.eventID = newID("event");
    event.workspaceID = requiredID(*note, "eventWorkspaceID");
    rules::requireMember(context, event.workspaceID);
    event.type = note->textAt("eventType");
    event.name = note->textAt("eventName");
    if (event.type != kEventType ||
        std::find(kEventNames.begin(), kEventNames.end(), event.name) == kEventNames.end()) {
        throw Refusal(exceptionid::kBadRequest, "unknown event " + inQuotes(event.type) + " " + inQuotes(event.name));
    }
    event.senderID = context.session.userID;
    event.senderName = note->textAt("eventSender/userName");
    event.displayName = note->textAt("eventDisplayName/en_US");
    event.message = note->textAt("eventMessage/en_US");
    event.tag = note->textAt("eventExtendedData/mySpecificTag");
    event.created = context.now;
    store::insertEvent(context.database, event);
}

}  // namespace service::commands
