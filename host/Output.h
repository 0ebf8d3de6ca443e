// What a command shows, in the form that was asked for.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/Json.h"

namespace host {

enum class Format { table, json };

/// How tables and records look; JSON always looks the same.
struct Look {
    std::size_t width = 0;  ///< the columns that a line may take; 0 for any number
    bool bold = false;      ///< whether headings are marked by a terminal's commands
    bool header = true;
    std::vector<std::string> columns = {};  ///< in the place of the columns that the command chooses
};

/// The place of each word is the number that it stands for.
using Words = std::vector<std::string>;

/// What stands in the place of a tab's type.
extern const Words kTabTypes;

/// A member of a record. Roles and kinds are told in words, whatever the record; other numbers where `words` are given.
struct Column {
    Column(const char* member) : name(member) {}  // NOLINT(google-explicit-constructor): lists of names read as such
    Column(std::string member) : name(std::move(member)) {}  // NOLINT(google-explicit-constructor)
    Column(const char* member, const Words& itsWords) : name(member), words(&itsWords) {}

    std::string name;
    const Words* words = nullptr;
};

/// The members that make the columns of a table, or the lines of a record, which has all of them where none are named.
/// A program that reads JSON always gets all of them.
using Columns = std::vector<Column>;

/// An array becomes a table of `columns`, an object a line for each member. Either ends with a line break.
std::string render(const Json& value, const Columns& columns, Format format, const Look& look);

/// One of several things that an operation brings.
struct Part {
    std::string name;
    Json value;
    Columns columns = {};
};
using Parts = std::vector<Part>;

/// JSON has the parts as members of one object; in text each stands under its name.
std::string renderParts(const Parts& parts, Format format, const Look& look);

/// The names of a record's members, in their order.
template <typename Record>
std::vector<std::string> membersOf()
{
    const Json record = Record();
    std::vector<std::string> names;
    for (const auto& [name, value] : record.items()) names.push_back(name);
    return names;
}

}  // namespace host
