#include "service/objects/ObjectTypes.h"

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::objects {

const ObjectType& objectType(std::string_view name)
{
    static const std::vector<ObjectType> kTypes{workspaceType(),      userType(),         invitationType(),
                                                workspaceThingType(), organisationType(), sessionInfoType(),
                                                thingType(),          eventType()};
    for (const ObjectType& type : kTypes) {
        for (const std::string_view known : type.names) {
            if (known == name) return type;
        }
    }
    throw Refusal(exceptionid::kUnknownType, "unknown object type " + inQuotes(name));
}

std::optional<xml::Node> nodeWithID(std::vector<xml::Node> nodes, std::string_view element, const std::string& id)
{
    for (xml::Node& node : nodes) {
        if (node.textAt(element) == id) return std::move(node);
    }
    return std::nullopt;
}

std::string currentOr(const std::string& id, const std::string& own)
{
    return id == "current" ? own : id;
}

}  // namespace service::objects
