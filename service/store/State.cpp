#include "service/store/State.h"

#include <limits>
#include <vector>

#include "service/base/Text.h"
#include "service/store/Database.h"
#include "service/store/Schema.h"

namespace service::store {

namespace {

constexpr const char* kFormat = "pvwapi-service-state";

enum class Kind { number, text, bytes };

struct Column {
    std::string name;
    Kind kind;
};

struct Table {
    std::string name;
    bool hasRowID;  // its rows have an order of their own
    std::vector<Column> columns;
};

Kind kindOf(std::string_view type)
{
    if (type == "INTEGER") return Kind::number;
    return type == "BLOB" ? Kind::bytes : Kind::text;
}

// All but the journal: what was asked is not undone by a state that is put in place.
std::vector<Table> tablesOf(Database& database)
{
    std::vector<Table> tables;
    Rows names = database.select(
        "SELECT s.name, l.wr FROM sqlite_schema s JOIN pragma_table_list l ON l.schema = 'main' AND l.name = s.name"
        " WHERE s.type = 'table' AND s.name <> 'exchange' ORDER BY s.rowid");
    while (names.next()) {
        Table table{names.text(0), names.number(1) == 0, {}};
        Rows columns = database.select("SELECT name, type FROM pragma_table_info(?) ORDER BY cid", table.name);
        while (columns.next()) table.columns.push_back({columns.text(0), kindOf(columns.text(1))});
        tables.push_back(std::move(table));
    }
    return tables;
}

std::string namesOf(const Table& table)
{
    std::string names;
    for (const Column& column : table.columns) names += (names.empty() ? "" : ", ") + column.name;
    return names;
}

std::string hexOf(std::string_view bytes)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0x0FU];
    }
    return text;
}

std::string bytesOf(const Json& value, const std::string& where)
{
    JsonObject object(value, where);
    const std::string text = object.text("hex", {});
    object.end();
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const std::size_t high = kDigits.find(text[i]);
        const std::size_t low = i + 1 < text.size() ? kDigits.find(text[i + 1]) : std::string_view::npos;
        if (high == std::string_view::npos || low == std::string_view::npos) {
            throw JsonError(where + " has to be pairs of hexadecimal digits");
        }
        bytes += static_cast<char>(static_cast<unsigned char>(high * 16 + low));
    }
    return bytes;
}

Json rowsOf(Database& database, const Table& table)
{
    Json list = Json::array();
    Rows rows = database.select(
        database.kept("SELECT " + namesOf(table) + " FROM " + table.name + (table.hasRowID ? " ORDER BY rowid" : "")));
    while (rows.next()) {
        Json row = Json::object();
        int at = 0;
        for (const Column& column : table.columns) {
            if (column.kind == Kind::number) {
                row[column.name] = rows.number(at);
            } else if (column.kind == Kind::text) {
                row[column.name] = rows.text(at);
            } else {
                row[column.name] = Json{{"hex", hexOf(rows.text(at))}};
            }
            ++at;
        }
        list.push_back(std::move(row));
    }
    return list;
}

// A row as it is bound; the texts stand here while it is.
class Row {
public:
    Row(const Table& table, const Json& json, const std::string& where)
    {
        JsonObject object(json, where);
        texts_.reserve(table.columns.size());
        for (const Column& column : table.columns) take(column, json, object, where);
        object.end();
    }

    const std::vector<Value>& values() const { return values_; }

private:
    void take(const Column& column, const Json& json, JsonObject& object, const std::string& where)
    {
        constexpr long long kMost = std::numeric_limits<long long>::max();
        const char* const name = column.name.c_str();
        if (column.kind == Kind::number) {
            values_.emplace_back(object.number(name, -kMost, kMost));
            return;
        }
        if (!object.has(name)) throw JsonError(where + ": \"" + column.name + "\" is missing");
        const bool bytes = column.kind == Kind::bytes;
        texts_.push_back(bytes ? bytesOf(json.at(name), where + ": \"" + column.name + '"') : object.text(name, {}));
        if (bytes) {
            values_.emplace_back(Bytes{texts_.back()});
        } else {
            values_.emplace_back(std::string_view(texts_.back()));
        }
    }

    std::vector<std::string> texts_;
    std::vector<Value> values_;
};

void insertRows(Database& database, const Table& table, const Json& rows)
{
    std::string marks;
    for (std::size_t i = 0; i < table.columns.size(); ++i) marks += i == 0 ? "?" : ", ?";
    const std::string_view sql =
        database.kept("INSERT INTO " + table.name + " (" + namesOf(table) + ") VALUES (" + marks + ")");
    std::size_t number = 0;
    for (const Json& row : rows) {
        const std::string where = "row " + std::to_string(++number) + " of \"" + table.name + '"';
        const Row values(table, row, where);
        try {
            database.run(sql, values.values());
        } catch (const std::runtime_error& error) {
            throw JsonError(where + ": " + error.what());
        }
    }
}

void checkFormat(JsonObject& state)
{
    if (state.text("format", {}) != kFormat) throw JsonError("this is not a state of the service's");
    state.number("schema", 1, schemaVersion());
    state.text("written", {});
}

}  // namespace

Json stateOf(Database& database)
{
    Json state;
    state["format"] = kFormat;
    state["schema"] = schemaVersion();
    Json tables = Json::object();
    for (const Table& table : tablesOf(database)) tables[table.name] = rowsOf(database, table);
    state["tables"] = std::move(tables);
    return state;
}

void replaceState(Database& database, const Json& state)
{
    JsonObject document(state, "the state");
    checkFormat(document);
    JsonObject lists(document.object("tables"), "\"tables\"");
    document.end();
    clearState(database);
    for (const Table& table : tablesOf(database)) {
        // An empty one stands there, too: who leaves one out has lost it.
        if (!lists.has(table.name.c_str())) throw JsonError(R"("tables": ")" + table.name + R"(" is missing)");
        insertRows(database, table, lists.list(table.name.c_str()));
    }
    lists.end();
    Rows broken = database.select("SELECT \"table\", parent FROM pragma_foreign_key_check LIMIT 1");
    if (broken.next()) {
        throw JsonError("a row of \"" + broken.text(0) + "\" names one of \"" + broken.text(1) +
                        "\" that is not there");
    }
}

// What refers to what is looked at when all is done.
void clearState(Database& database)
{
    database.run("PRAGMA defer_foreign_keys = ON");
    for (const Table& table : tablesOf(database)) database.run(database.kept("DELETE FROM " + table.name));
}

}  // namespace service::store
