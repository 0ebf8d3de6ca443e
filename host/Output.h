// What a command shows, in the form that was asked for.
#pragma once

#include <string>
#include <vector>

#include "host/Json.h"

namespace host {

enum class Format { table, json };

/// The members that make the columns of a table, or the lines of a record, which has all of them where none are named.
/// A program that reads JSON always gets all of them.
using Columns = std::vector<std::string>;

/// An array becomes a table of `columns`, an object a line for each member. Either ends with a line break.
std::string render(const Json& value, const Columns& columns, Format format);

/// One of several things that an operation brings.
struct Part {
    std::string name;
    Json value;
    Columns columns = {};
};
using Parts = std::vector<Part>;

/// JSON has the parts as members of one object; in text each stands under its name.
std::string renderParts(const Parts& parts, Format format);

}  // namespace host
