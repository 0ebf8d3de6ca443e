#pragma once

#include <concepts>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace service::store {

struct CloseDatabase {
    void operator()(sqlite3* handle) const;
};
struct CloseStatement {
    void operator()(sqlite3_stmt* handle) const;
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, CloseStatement>;

class Database;

// Bytes that are no text.
struct Bytes {
    std::string_view content;
};

// What a column holds.
using Value = std::variant<long long, std::string_view, Bytes>;

// The rows of one query, read forwards. It holds its prepared statement and gives it back when it goes.
class Rows {
public:
    template <class... Values>
    Rows(Database& database, std::string_view sql, const Values&... values) : Rows(database, sql, Empty{})
    {
        (bind(values), ...);
    }
    ~Rows();
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    bool next();
    std::string text(int column) const;
    long long number(int column) const;

private:
    struct Empty {};

    Rows(Database& database, std::string_view sql, Empty empty);

    void bind(std::string_view value);
    void bind(Bytes value);
    void bind(const std::vector<Value>& values);
    template <std::integral Number>
    void bind(Number value)
    {
        bindNumber(static_cast<long long>(value));
    }
    void bindNumber(long long value);

    Database& database_;
    std::string_view sql_;
    StatementHandle statement_;
    int bound_ = 0;
};

// The path of a data file that is no file: the state lives as long as the service.
inline constexpr const char* kInMemory = ":memory:";

// The data file. Every statement is prepared once; the SQL texts are constants, which outlive it.
class Database {
public:
    // Opens or creates the file and brings its schema up to date; throws std::runtime_error where it cannot be used.
    explicit Database(const std::string& path);

    template <class... Values>
    Rows select(std::string_view sql, const Values&... values)
    {
        return Rows(*this, sql, values...);
    }

    // Returns how many rows it changed.
    template <class... Values>
    int run(std::string_view sql, const Values&... values)
    {
        Rows rows(*this, sql, values...);
        rows.next();
        return changes();
    }

    // One text, of the first row and column; nothing where there is no row.
    template <class... Values>
    std::optional<std::string> value(std::string_view sql, const Values&... values)
    {
        Rows rows(*this, sql, values...);
        if (!rows.next()) return std::nullopt;
        return rows.text(0);
    }

    // Keeps a text that is no constant, so that it outlives the statement that is prepared of it.
    std::string_view kept(std::string sql) { return *kept_.insert(std::move(sql)).first; }

    // Several statements without values.
    void script(const char* sql);

private:
    friend class Rows;
    void open(const std::string& path);
    std::string holderText(const std::string& path) const;
    int changes() const;
    StatementHandle take(std::string_view sql);
    void giveBack(std::string_view sql, StatementHandle statement);

    std::unique_ptr<sqlite3, CloseDatabase> handle_;
    std::set<std::string> kept_;
    std::map<std::string_view, std::vector<StatementHandle>> idle_;
};

// Everything that one request changes becomes durable together, or not at all.
class Transaction {
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Database& database_;
    bool open_ = true;
};

// A part of a transaction that can be undone alone.
class Savepoint {
public:
    explicit Savepoint(Database& database);
    ~Savepoint();
    Savepoint(const Savepoint&) = delete;
    Savepoint& operator=(const Savepoint&) = delete;

    void keep();

private:
    Database& database_;
    bool open_ = true;
};

}  // namespace service::store
