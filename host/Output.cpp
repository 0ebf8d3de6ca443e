#include "host/Output.h"

#include <algorithm>

#include "host/Text.h"

namespace host {

namespace {

using Row = std::vector<std::string>;

/// A list within a record takes one cell: how many it holds.
std::string cell(const Json& value)
{
    if (value.is_string()) return harmless(value.get_ref<const std::string&>());
    if (value.is_array()) return std::to_string(value.size());
    return harmless(value.dump());
}

std::vector<std::size_t> widths(const std::vector<Row>& rows)
{
    std::vector<std::size_t> result;
    for (const Row& row : rows) {
        result.resize(std::max(result.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            result[column] = std::max(result[column], displayWidth(row[column]));
        }
    }
    return result;
}

std::string aligned(const std::vector<Row>& rows)
{
    const std::vector<std::size_t> width = widths(rows);
    std::string text;
    for (const Row& row : rows) {
        std::string line;
        std::size_t missing = 0;
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (!row[column].empty()) {
                line.append(missing, ' ').append(row[column]);
                missing = 0;
            }
            missing += width[column] - displayWidth(row[column]) + 2;
        }
        text += line + '\n';
    }
    return text;
}

std::string table(const Json& records, const Columns& columns)
{
    std::vector<Row> rows{columns};
    for (const Json& record : records) {
        Row row;
        for (const std::string& column : columns) row.push_back(cell(record.at(column)));
        rows.push_back(std::move(row));
    }
    return aligned(rows);
}

std::string members(const Json& record, const Columns& columns)
{
    std::vector<Row> rows;
    for (const auto& [name, value] : record.items()) {
        const bool wanted = columns.empty() || std::ranges::find(columns, name) != columns.end();
        if (wanted) rows.push_back({name, cell(value)});
    }
    return aligned(rows);
}

}  // namespace

std::string render(const Json& value, const Columns& columns, Format format)
{
    if (format == Format::json) return harmless(value.dump(2), "\n") + '\n';
    return value.is_array() ? table(value, columns) : members(value, columns);
}

std::string renderParts(const Parts& parts, Format format)
{
    if (format == Format::json) {
        Json whole = Json::object();
        for (const Part& part : parts) whole[part.name] = part.value;
        return render(whole, {}, format);
    }
    std::string text;
    for (const Part& part : parts) {
        text += (text.empty() ? "" : "\n") + part.name + ":\n" + render(part.value, part.columns, format);
    }
    return text;
}

}  // namespace host
