#include "service/store/Database.h"

#include <sqlite3.h>

#include <stdexcept>

#include "service/store/LockHolder.h"
#include "service/store/PrivateFile.h"
#include "service/store/Schema.h"

namespace service::store {

namespace {

// Write-ahead log with synchronous=NORMAL: a commit has handed its pages to the operating system before the reply is
// sent, so nothing that was acknowledged is lost however the process ends; only the failure of the whole machine may
// take the last moments, and never the consistency of the file. When the log is written back is decided elsewhere: it
// waits for the disk.
constexpr const char* kOpening =
    "PRAGMA journal_mode = WAL;"
    "PRAGMA synchronous = NORMAL;"
    "PRAGMA wal_autocheckpoint = 0;"
    "PRAGMA journal_size_limit = 4194304;"
    "PRAGMA foreign_keys = ON;"
    "PRAGMA trusted_schema = OFF;";

// It has to have read something before it knows of the log.
constexpr const char* kReading =
    "PRAGMA query_only = ON;"
    "PRAGMA trusted_schema = OFF;"
    "PRAGMA schema_version;";

// Where there are addresses enough, the file's pages are read where they are: connections share them. What is still in
// the log has to find room in the cache of each.
constexpr const char* kMapping =
    sizeof(void*) > 4 ? "PRAGMA cache_size = -8000; PRAGMA mmap_size = 1073741824;" : "PRAGMA cache_size = -8000;";

constexpr int kPatience = 10'000;   // ms, for what another connection does in a moment
constexpr int kLongWork = 4'000;    // of SQLite's own steps, which may pass without a row
constexpr int kLongWorkShare = 20;  // of an allowance

// Work that goes on without a row is asked now and then, too.
int onLongWork(void* place)
{
    work::Allowance* const allowance = *static_cast<work::Allowance**>(place);
    return allowance == nullptr || allowance->isLeft(kLongWorkShare) ? 0 : 1;
}

int onLogged(void* pages, sqlite3* /*handle*/, const char* /*name*/, int count)
{
    *static_cast<std::size_t*>(pages) = static_cast<std::size_t>(count);
    return SQLITE_OK;
}

// A connection is one thread's at a time, and nobody asks how much memory there is in use.
void prepareOnce()
{
    static const int done = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    static_cast<void>(done);
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
    : database_(database), idle_(database.idleOf(sql)), statement_(database.take(sql, idle_))
{
}

Rows::~Rows()
{
    sqlite3_reset(statement_.get());
    if (bound_ != 0) sqlite3_clear_bindings(statement_.get());
    idle_.push_back(std::move(statement_));
}

bool Rows::next()
{
    const int result = sqlite3_step(statement_.get());
    if (result == SQLITE_DONE) return false;
    if (result != SQLITE_ROW) database_.fail();
    database_.spend();
    return true;
}

std::string_view Rows::view(int column) const
{
    const void* const bytes = sqlite3_column_blob(statement_.get(), column);
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return bytes == nullptr ? std::string_view() : std::string_view(static_cast<const char*>(bytes), length);
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
    if (result != SQLITE_OK) database_.fail();
}

void Rows::bind(Bytes value)
{
    const char* const bytes = value.content.empty() ? "" : value.content.data();
    const int result = sqlite3_bind_blob64(statement_.get(), ++bound_, bytes, value.content.size(), SQLITE_TRANSIENT);
    if (result != SQLITE_OK) database_.fail();
}

void Rows::bind(const std::vector<Value>& values)
{
    for (const Value& value : values) {
        std::visit([this](const auto& held) { bind(held); }, value);
    }
}

void Rows::bindNumber(long long value)
{
    if (sqlite3_bind_int64(statement_.get(), ++bound_, value) != SQLITE_OK) database_.fail();
}

Database::Database(const std::string& path)
{
    prepareOnce();
    try {
        // The file holds password hashes and live credentials, and its log the latest of them.
        openPrivately(path, [&] { open(path); });
    } catch (const std::exception& error) {
        throw std::runtime_error("the data file " + path + " cannot be used: " + error.what() + holderText(path));
    }
}

Database::Database(const Database& writer, OnlyReading /*tag*/)
    : file_(writer.file_), system_(writer.system_), onlyReads_(true)
{
    connect();
    script(kReading);
    script(kMapping);
}

std::unique_ptr<Database> Database::reader() const
{
    return std::make_unique<Database>(*this, OnlyReading());
}

// Who has the file, where that is why it cannot be had.
std::string Database::holderText(const std::string& path) const
{
    if (!handle_ || (sqlite3_errcode(handle_.get()) != SQLITE_BUSY && !note_.isRefused())) return {};
    const std::optional<long long> holder = lockHolder(path);
    return holder ? " by process " + std::to_string(*holder) : std::string();
}

void Database::open(const std::string& path)
{
    file_ = path;
    system_ = exclusiveFiles();
    if (path == kInMemory) {
        memory_ = std::make_unique<MemoryFiles>();
        file_ = memory_->name();
        system_ = MemoryFiles::system();
    }
    connect();
    if (!memory_) note_.write(path);
    script(kOpening);
    script(kMapping);
    upgradeSchema(*this);
    sqlite3_busy_timeout(handle_.get(), kPatience);
    sqlite3_wal_hook(handle_.get(), onLogged, &unsettledPages_);
}

void Database::connect()
{
    sqlite3* handle = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    const int result = sqlite3_open_v2(file_.c_str(), &handle, flags, system_);
    handle_.reset(handle);
    if (result != SQLITE_OK) fail();
    sqlite3_progress_handler(handle, kLongWork, onLongWork, static_cast<void*>(&allowance_));
}

void Database::fail() const
{
    if (!handle_) throw std::runtime_error("out of memory");
    const int code = sqlite3_errcode(handle_.get());
    if (code == SQLITE_READONLY && onlyReads_) throw OnlyReads();
    if (code == SQLITE_INTERRUPT) throw work::Interrupted();
    throw std::runtime_error(sqlite3_errmsg(handle_.get()));
}

void Database::script(const char* sql)
{
    if (sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

void Database::settle()
{
    sqlite3_wal_checkpoint_v2(handle_.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

int Database::changes() const
{
    return sqlite3_changes(handle_.get());
}

// The same place may hold another text by now: a text that is no constant is gone when its statement is.
StatementHandle Database::take(std::string_view sql, std::vector<StatementHandle>& idle)
{
    while (!idle.empty()) {
        StatementHandle statement = std::move(idle.back());
        idle.pop_back();
        if (sql == sqlite3_sql(statement.get())) return statement;
    }
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v3(handle_.get(), sql.data(), static_cast<int>(sql.size()),
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (result != SQLITE_OK) fail();
    return StatementHandle(statement);
}

Unlimited::Unlimited(Database& database) : database_(database), allowance_(database.allowance())
{
    database_.setAllowance(nullptr);
}

Unlimited::~Unlimited()
{
    database_.setAllowance(allowance_);
}

Transaction::Transaction(Database& database) : database_(database)
{
    const Unlimited whole(database_);
    database_.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (!open_) return;
    const Unlimited undoing(database_);
    try {
        database_.run("ROLLBACK");
    } catch (const std::exception&) {
        // SQLite has already rolled back by itself where the transaction could not go on.
        open_ = false;
    }
}

void Transaction::commit()
{
    const Unlimited whole(database_);
    database_.run("COMMIT");
    open_ = false;
}

Snapshot::Snapshot(Database& database) : database_(database)
{
    const Unlimited whole(database_);
    database_.run("BEGIN");
}

Snapshot::~Snapshot()
{
    const Unlimited undoing(database_);
    try {
        database_.run("ROLLBACK");
    } catch (const std::exception&) {
        // Nothing was changed.
        return;
    }
}

Savepoint::Savepoint(Database& database) : database_(database)
{
    const Unlimited whole(database_);
    database_.run("SAVEPOINT work");
}

Savepoint::~Savepoint()
{
    if (!open_) return;
    const Unlimited undoing(database_);
    try {
        database_.run("ROLLBACK TO work");
        database_.run("RELEASE work");
    } catch (const std::exception&) {
        open_ = false;
    }
}

void Savepoint::keep()
{
    const Unlimited whole(database_);
    database_.run("RELEASE work");
    open_ = false;
}

}  // namespace service::store
