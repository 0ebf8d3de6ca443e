#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "service/Context.h"
#include "service/script/Selection.h"
#include "service/xml/Node.h"

namespace service::script {

// A "where": tests that a field equals a value or a variable of the session, joined by "and" and "or" to any depth.
class Condition {
public:
    // Reads an "eq", "and" or "or" element, or a "where" that holds exactly one of them.
    static Condition read(const xml::Node& element, const Context& context, std::string_view objectName);

    bool holds(const xml::Node& object) const;

    // True where it holds for every object for which these tests do.
    using Test = std::function<bool(std::string_view path, std::string_view value)>;
    bool isGiven(const Test& given) const;

    // The fields that it has to see.
    void addPaths(Selection& wanted) const;

private:
    enum class Kind { equals, all, any };

    static Condition readEquals(const xml::Node& element, const Context& context, std::string_view objectName);

    Kind kind_ = Kind::equals;
    std::string path_;
    std::string value_;
    std::vector<Condition> parts_;
};

}  // namespace service::script
