#include "service/store/Database.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <stdexcept>

#include "service/base/System.h"
#include "service/store/Schema.h"

namespace service::store {

namespace {

// Write-ahead log with synchronous=NORMAL: a commit has handed its pages to the operating system before the reply is
// sent, so nothing that was acknowledged is lost however the process ends; only the failure of the whole machine may
// take the last moments, and never the consistency of the file. The exclusive lock keeps a second service off the file
// and lets the log do without shared memory.
constexpr const char* kOpening =
    "PRAGMA locking_mode = EXCLUSIVE;"
    "PRAGMA journal_mode = WAL;"
    "PRAGMA synchronous = NORMAL;"
    "PRAGMA foreign_keys = ON;"
    "PRAGMA trusted_schema = OFF;";

[[noreturn]] void fail(sqlite3* handle)
{
    throw std::runtime_error(handle == nullptr ? "out of memory" : sqlite3_errmsg(handle));
}

}  // namespace

void CloseDatabase::operator()(sqlite3* handle) const
{
    sqlite3_close_v2(handle);
}

void CloseStatement::operator()(sqlite3_stmt* handle) const
{
    sqlite3_finalize(handle);
}

Rows::Rows(Database& database, std::string_view sql, Empty /*empty*/)
    : database_(database), sql_(sql), statement_(database.take(sql))
{
}

Rows::~Rows()
{
    sqlite3_reset(statement_.get());
    sqlite3_clear_bindings(statement_.get());
    database_.giveBack(sql_, std::move(statement_));
}

bool Rows::next()
{
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) fail(database_.handle_.get());
    return result == SQLITE_ROW;
}

std::string Rows::text(int column) const
{
    const void* const bytes = sqlite3_column_blob(statement_.get(), column);
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes), length);
}

long long Rows::number(int column) const
{
    return sqlite3_column_int64(statement_.get(), column);
}

void Rows::bind(std::string_view value)
{
    const char* const bytes = value.empty() ? "" : value.data();
    const int result =
        sqlite3_bind_text64(statement_.get(), ++bound_, bytes, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    if (result != SQLITE_OK) fail(database_.handle_.get());
}

void Rows::bind(Bytes value)
{
    const char* const bytes = value.content.empty() ? "" : value.content.data();
    const int result = sqlite3_bind_blob64(statement_.get(), ++bound_, bytes, value.content.size(), SQLITE_TRANSIENT);
    if (result != SQLITE_OK) fail(database_.handle_.get());
}

void Rows::bind(const std::vector<Value>& values)
{
    for (const Value& value : values) {
        std::visit([this](const auto& held) { bind(held); }, value);
    }
}

void Rows::bindNumber(long long value)
{
    if (sqlite3_bind_int64(statement_.get(), ++bound_, value) != SQLITE_OK) fail(database_.handle_.get());
}

Database::Database(const std::string& path)
{
    try {
        open(path);
    } catch (const std::exception& error) {
        throw std::runtime_error("the data file " + path + " cannot be used: " + error.what() + holderText(path));
    }
}

// Who has the file, where that is why it cannot be had.
std::string Database::holderText(const std::string& path) const
{
    if (!handle_ || sqlite3_errcode(handle_.get()) != SQLITE_BUSY) return {};
    const std::optional<long long> holder = lockHolder(path);
    return holder ? " by process " + std::to_string(*holder) : std::string();
}

void Database::open(const std::string& path)
{
    // The file holds password hashes and live credentials: nobody but its owner reads it or its log.
    umask(S_IRWXG | S_IRWXO);
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    handle_.reset(handle);
    if (result != SQLITE_OK) fail(handle);
    script(kOpening);
    upgradeSchema(*this);
}

void Database::script(const char* sql)
{
    if (sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(handle_.get());
}

int Database::changes() const
{
    return sqlite3_changes(handle_.get());
}

StatementHandle Database::take(std::string_view sql)
{
    std::vector<StatementHandle>& idle = idle_[sql];
    if (!idle.empty()) {
        StatementHandle statement = std::move(idle.back());
        idle.pop_back();
        return statement;
    }
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v3(handle_.get(), sql.data(), static_cast<int>(sql.size()),
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (result != SQLITE_OK) fail(handle_.get());
    return StatementHandle(statement);
}

void Database::giveBack(std::string_view sql, StatementHandle statement)
{
    idle_[sql].push_back(std::move(statement));
}

Transaction::Transaction(Database& database) : database_(database)
{
    database_.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (!open_) return;
    try {
        database_.run("ROLLBACK");
    } catch (const std::exception&) {
        // SQLite has already rolled back by itself where the transaction could not go on.
        open_ = false;
    }
}

void Transaction::commit()
{
    database_.run("COMMIT");
    open_ = false;
}

Savepoint::Savepoint(Database& database) : database_(database)
{
    database_.run("SAVEPOINT work");
}

Savepoint::~Savepoint()
{
    if (!open_) return;
    try {
        database_.run("ROLLBACK TO work");
        database_.run("RELEASE work");
    } catch (const std::exception&) {
        open_ = false;
    }
}

void Savepoint::keep()
{
    database_.run("RELEASE work");
    open_ = false;
}

}  // namespace service::store
