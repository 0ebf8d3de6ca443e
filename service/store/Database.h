#pragma once

#include <concepts>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "service/store/LockHolder.h"
#include "service/store/MemoryFiles.h"
#include "service/store/Transaction.h"
#include "service/work/Allowance.h"

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

// Something was to be changed through a connection that only reads: it has to be done by the one that writes. It is no
// std::exception, so that nobody takes it for a failure of the request.
class OnlyReads {};

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
    std::string text(int column) const { return std::string(view(column)); }
    std::string_view view(int column) const;  // until the next row
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
    std::vector<StatementHandle>& idle_;
    StatementHandle statement_;
    int bound_ = 0;
};

// The path of a data file that is no file: the state lives as long as the service.
inline constexpr const char* kInMemory = ":memory:";

// A connection to the data file, used by one thread at a time. Every statement is prepared once; the SQL texts are
// constants, which outlive it.
class Database {
    struct OnlyReading {};

public:
    // Opens or creates the file and brings its schema up to date; throws std::runtime_error where it cannot be used.
    explicit Database(const std::string& path);

    // Another connection to the same data file, which reads while this one writes. It has to go before this one does.
    std::unique_ptr<Database> reader() const;
    Database(const Database& writer, OnlyReading tag);

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

    // What the work on this connection may take from now on; none where it may take what it needs.
    void setAllowance(work::Allowance* allowance) { allowance_ = allowance; }
    work::Allowance* allowance() const { return allowance_; }

    // A step of work that reads no row.
    void spend()
    {
        if (allowance_ != nullptr) allowance_->spend();
    }

    // The log's pages that wait to be written to the file itself, which is up to settle(): it may take a while, and any
    // connection can do it while others go on.
    std::size_t unsettledPages() const { return unsettledPages_; }
    void settle();

private:
    friend class Rows;

    void open(const std::string& path);
    void connect();
    std::string holderText(const std::string& path) const;
    int changes() const;
    [[noreturn]] void fail() const;
    std::vector<StatementHandle>& idleOf(std::string_view sql) { return idle_[sql.data()]; }
    StatementHandle take(std::string_view sql, std::vector<StatementHandle>& idle);

    LockNote note_;
    std::unique_ptr<MemoryFiles> memory_;
    std::string file_;
    const char* system_ = nullptr;  // of files; none is the usual one
    std::unique_ptr<sqlite3, CloseDatabase> handle_;
    std::set<std::string> kept_;
    std::map<const char*, std::vector<StatementHandle>> idle_;  // by where the text stands
    work::Allowance* allowance_ = nullptr;
    bool onlyReads_ = false;
    std::size_t unsettledPages_ = 0;
};

}  // namespace service::store
