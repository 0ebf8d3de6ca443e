#include "service/objects/ObjectTypes.h"
#include "service/store/Things.h"

namespace service::objects {

namespace {

// A user sees no things but their own.
std::vector<xml::Node> listThings(const Context& context, const script::Selection& /*wanted*/)
{
    std::vector<xml::Node> nodes;
    for (const store::WorkspaceThing& item : store::workspaceThingsOf(context.database, context.session.userID)) {
        xml::Node& thing = nodes.emplace_back("workspaceThing");
        thing.add("thingID", item.thingID);
        thing.add("thingName", item.name);
        thing.add("thingType", item.type);
        thing.add("workspaceID", item.workspaceID);
        thing.add("userID", item.userID);
    }
    return nodes;
}

std::optional<xml::Node> findThing(const Context& context, const std::string& id, const script::Selection& wanted)
{
    return nodeWithID(listThings(context, wanted), "thingID", id);
}

}  // namespace

ObjectType workspaceThingType()
{
    return {"workspaceThing", {"wtng", "workspaceThing"}, listThings, findThing};
}

}  // namespace service::objects
