// What a command shows, in the form that was asked for.
#pragma once

#include <string>
#include <vector>

#include "host/Json.h"

namespace host {

enum class Format { table, json };

/// The members that make the columns of a table; a program that reads JSON gets all of them.
using Columns = std::vector<std::string>;

/// An array becomes a table of `columns`, an object a line for each member. Either ends with a line break.
std::string render(const Json& value, const Columns& columns, Format format);

}  // namespace host
