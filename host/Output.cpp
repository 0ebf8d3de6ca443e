#include "host/Output.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "host/Table.h"
#include "host/Text.h"

namespace host {

const Words kTabTypes{"plain", "discussion", "files"};

namespace {

const Words kRoles{"unknown", "member", "administrator"};
constexpr std::array<std::string_view, 3> kRoleMembers{"role", "inviteAs", "inviteAsType"};
constexpr std::string_view kKindMember = "kind";

/// The type in the low bits, and whether it is a template.
std::string kindInWords(int kind)
{
    constexpr int kTemplate = 0x10;
    const bool isTemplate = (kind & kTemplate) != 0;
    return (isTemplate ? "template of type " : "workspace of type ") + std::to_string(kind & ~kTemplate);
}

/// The number, which some members hold as text.
int numberIn(const Json& value)
{
    if (value.is_number_integer()) return value.get<int>();
    if (!value.is_string()) return -1;
    const auto& text = value.get_ref<const std::string&>();
    return text.size() == 1 && text[0] >= '0' && text[0] <= '9' ? text[0] - '0' : -1;
}

/// A list within a record takes one cell: how many it holds.
std::string plain(const Json& value)
{
    if (value.is_string()) return harmless(value.get_ref<const std::string&>());
    if (value.is_array()) return std::to_string(value.size());
    return harmless(value.dump());
}

std::string cell(const Column& column, const Json& value)
{
    if (column.name == kKindMember && value.is_number_integer()) return kindInWords(value.get<int>());
    const bool isRole = std::ranges::find(kRoleMembers, column.name) != kRoleMembers.end();
    const Words* const words = isRole ? &kRoles : column.words;
    const int number = words != nullptr ? numberIn(value) : -1;
    const bool known = number >= 0 && words != nullptr && static_cast<std::size_t>(number) < words->size();
    return known ? words->at(static_cast<std::size_t>(number)) : plain(value);
}

/// Those that the reader has chosen, told as the command tells them; else the command's own.
Columns chosen(const Columns& columns, const Look& look)
{
    if (look.columns.empty()) return columns;
    Columns result;
    for (const std::string& name : look.columns) {
        const auto known = std::ranges::find(columns, name, &Column::name);
        result.push_back(known != columns.end() ? *known : Column(name));
    }
    return result;
}

std::string table(const Json& records, const Columns& columns, const Look& look)
{
    std::vector<Row> rows(1);
    for (const Column& column : columns) rows.front().push_back(column.name);
    for (const Json& record : records) {
        Row row;
        for (const Column& column : columns) row.push_back(cell(column, record.at(column.name)));
        rows.push_back(std::move(row));
    }
    return alignedTable(std::move(rows), look);
}

std::string members(const Json& record, const Columns& columns, const Look& look)
{
    std::vector<Row> rows;
    for (const auto& [name, value] : record.items()) {
        const bool wanted = columns.empty() || std::ranges::find(columns, name, &Column::name) != columns.end();
        if (wanted) rows.push_back({name, cell(Column(name), value)});
    }
    return alignedRecord(rows, look);
}

}  // namespace

std::string render(const Json& value, const Columns& columns, Format format, const Look& look)
{
    if (format == Format::json) return harmless(value.dump(2), "\n") + '\n';
    return value.is_array() ? table(value, chosen(columns, look), look) : members(value, columns, look);
}

std::string renderParts(const Parts& parts, Format format, const Look& look)
{
    if (format == Format::json) {
        Json whole = Json::object();
        for (const Part& part : parts) whole[part.name] = part.value;
        return render(whole, {}, format, look);
    }
    std::string text;
    for (const Part& part : parts) {
        text += (text.empty() ? "" : "\n") + heading(part.name + ":", look) + "\n" +
                render(part.value, part.columns, format, look);
    }
    return text;
}

}  // namespace host
