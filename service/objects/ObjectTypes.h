#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "service/Context.h"
#include "service/script/Selection.h"
#include "service/xml/Node.h"

namespace service::objects {

// A kind of object that can be asked for. It shows its objects as trees of fields, and only those that the caller may
// see; conditions and select lists then work on the trees, so a new type needs nothing but these two functions. Fields
// outside of `wanted` may be left out to save the work.
struct ObjectType {
    std::string_view element;             // the object's own element in a reply
    std::vector<std::string_view> names;  // what a request may call the type
    std::vector<xml::Node> (*list)(const Context& context, const script::Selection& wanted);
    std::optional<xml::Node> (*find)(const Context& context, const std::string& id, const script::Selection& wanted);
    void (*shown)(const Context& context, const std::vector<xml::Node>& nodes) = nullptr;  // told of what goes out

    // Whether every object that the caller may see has this text there.
    bool (*isGiven)(const Context& context, std::string_view path, std::string_view value) = nullptr;
};

// Refuses a name that no type has.
const ObjectType& objectType(std::string_view name);

// The types, each beside its own fields.
ObjectType workspaceType();
ObjectType userType();
ObjectType invitationType();
ObjectType workspaceThingType();
ObjectType organisationType();
ObjectType sessionInfoType();
ObjectType thingType();
ObjectType eventType();

// The one of the nodes whose ID stands in this element.
std::optional<xml::Node> nodeWithID(std::vector<xml::Node> nodes, std::string_view element, const std::string& id);

// `id`, or the caller's own where it says "current".
std::string currentOr(const std::string& id, const std::string& own);

}  // namespace service::objects
