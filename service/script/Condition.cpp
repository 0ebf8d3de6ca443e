#include "service/script/Condition.h"

#include <algorithm>

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::script {

namespace {

[[noreturn]] void refuse(const std::string& reason)
{
    throw Refusal(exceptionid::kBadScript, reason);
}

std::string sessionVariable(const std::string& name, const store::Session& session)
{
    if (name == "userID") return session.userID;
    if (name == "userName") return session.userName;
    refuse("unknown session variable " + inQuotes(name));
}

// A path may start with the object's own name, as it does in a reply.
std::string fieldPath(std::string_view path, std::string_view objectName)
{
    path = trimmed(path);
    if (path.starts_with(objectName) && path.substr(objectName.size()).starts_with('/')) {
        path.remove_prefix(objectName.size() + 1);
    }
    if (path.empty()) refuse("an eq has no path");
    return std::string(path);
}

}  // namespace

Condition Condition::read(const xml::Node& element, const Context& context, std::string_view objectName)
{
    if (element.name == "where") {
        if (element.children.size() != 1) refuse("a where holds exactly one condition");
        return read(element.children.front(), context, objectName);
    }
    if (element.name == "eq") return readEquals(element, context, objectName);
    if (element.name != "and" && element.name != "or") refuse("unknown condition " + inQuotes(element.name));
    if (element.children.empty()) refuse("an empty " + inQuotes(element.name) + " says nothing");

    Condition condition;
    condition.kind_ = element.name == "and" ? Kind::all : Kind::any;
    for (const xml::Node& part : element.children) condition.parts_.push_back(read(part, context, objectName));
    return condition;
}

Condition Condition::readEquals(const xml::Node& element, const Context& context, std::string_view objectName)
{
    const xml::Node* const value = element.child("value");
    const xml::Node* const variable = element.child("senv");
    if ((value == nullptr) == (variable == nullptr)) refuse("an eq needs either a value or a senv");

    Condition condition;
    condition.path_ = fieldPath(element.textAt("path"), objectName);
    condition.value_ = value != nullptr ? value->text : sessionVariable(variable->text, context.session);
    return condition;
}

bool Condition::holds(const xml::Node& object) const
{
    const auto partHolds = [&object](const Condition& part) { return part.holds(object); };
    switch (kind_) {
    case Kind::all: return std::all_of(parts_.begin(), parts_.end(), partHolds);
    case Kind::any: return std::any_of(parts_.begin(), parts_.end(), partHolds);
    case Kind::equals: break;
    }
    return xml::anyTextEquals(object, path_, value_);
}

bool Condition::isGiven(const Test& given) const
{
    const auto partIsGiven = [&given](const Condition& part) { return part.isGiven(given); };
    switch (kind_) {
    case Kind::all: return std::all_of(parts_.begin(), parts_.end(), partIsGiven);
    case Kind::any: return std::any_of(parts_.begin(), parts_.end(), partIsGiven);
    case Kind::equals: break;
    }
    return given(path_, value_);
}

void Condition::addPaths(Selection& wanted) const
{
    if (kind_ == Kind::equals) wanted.add(path_);
    for (const Condition& part : parts_) part.addPaths(wanted);
}

}  // namespace service::script
