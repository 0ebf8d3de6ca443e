#pragma once

namespace service::work {
class Allowance;
}

namespace service::store {

class Database;

// For as long as it lives, what is done goes to its end: what is undone, and what has taken effect when it says so.
class Unlimited {
public:
    explicit Unlimited(Database& database);
    ~Unlimited();
    Unlimited(const Unlimited&) = delete;
    Unlimited& operator=(const Unlimited&) = delete;

private:
    Database& database_;
    work::Allowance* allowance_;
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

// Everything that one request reads is of the same moment.
class Snapshot {
public:
    explicit Snapshot(Database& database);
    ~Snapshot();
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

private:
    Database& database_;
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
