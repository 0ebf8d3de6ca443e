#include "service/base/Clock.h"
#include "service/base/Refusal.h"
#include "service/objects/ObjectTypes.h"
#include "service/store/Things.h"
#include "service/xml/Reader.h"

namespace service::objects {

namespace {

// Data files of earlier versions may hold an extension that is no XML: its thing is shown without it.
void addExtension(const store::Thing& item, xml::Node& thing)
{
    try {
        thing.children.push_back(xml::read(item.extension, xml::Texts::plain));
    } catch (const Refusal&) {
        thing.add("ext");
    }
}

std::vector<xml::Node> listThings(const Context& context, const script::Selection& wanted)
{
    std::vector<xml::Node> nodes;
    for (const store::Thing& item : store::thingsVisibleTo(context.database, context.session.userID)) {
        xml::Node& thing = nodes.emplace_back("thing");
        thing.add("thingID", item.thingID);
        thing.add("thingName", item.name);
        thing.add("userID", item.userID);
        thing.add("createTime", timeText(item.created));
        if (wanted.touches("ext")) addExtension(item, thing);
    }
    return nodes;
}

std::optional<xml::Node> findThing(const Context& context, const std::string& id, const script::Selection& wanted)
{
    return nodeWithID(listThings(context, wanted), "thingID", id);
}

}  // namespace

ObjectType thingType()
{
    return {"thing", {"thng", "thing"}, listThings, findThing};
}

}  // namespace service::objects
