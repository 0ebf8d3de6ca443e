#include "service/base/Clock.h"
#include "service/objects/ObjectTypes.h"
#include "service/store/Events.h"

namespace service::objects {

namespace {

std::vector<xml::Node> listEvents(const Context& context, const script::Selection& /*wanted*/)
{
    std::vector<xml::Node> nodes;
    for (const store::Event& item : store::eventsVisibleTo(context.database, context.session.userID)) {
        xml::Node& event = nodes.emplace_back("event");
        event.add("eventID", item.eventID);
        event.add("eventType", item.type);
        event.add("eventName", item.name);
        event.add("eventDisplayName", item.displayName);
        event.add("workspaceID", item.workspaceID);
        event.add("workspaceName", item.workspaceName);
        event.add("eventMessage", item.message);
        event.add("mySpecificTag", item.tag);
        event.add("userID", item.senderID);
        event.add("userName", item.senderName);
        event.add("createTime", timeText(item.created));
    }
    return nodes;
}

std::optional<xml::Node> findEvent(const Context& context, const std::string& id, const script::Selection& wanted)
{
    return nodeWithID(listEvents(context, wanted), "eventID", id);
}

void noteShown(const Context& context, const std::vector<xml::Node>& nodes)
{
    for (const xml::Node& event : nodes) {
        store::markSeen(context.database, event.textAt("eventID"), context.session.userID);
    }
}

}  // namespace

ObjectType eventType()
{
    return {"event", {"event"}, listEvents, findEvent, noteShown};
}

}  // namespace service::objects
