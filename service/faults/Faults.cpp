#include "service/faults/Faults.h"

#include <cstdint>
#include <iostream>

#include "service/base/Json.h"
#include "service/store/Database.h"

namespace service::faults {

namespace {

// A number from 0 to 1 for each call, the same in each run with the same seed; it needs no memory of the calls before.
double chance(long long seed, long long call)
{
    std::uint64_t bits = static_cast<std::uint64_t>(seed) + static_cast<std::uint64_t>(call) * 0x9E3779B97F4A7C15ULL;
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9ULL;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBULL;
    bits ^= bits >> 31U;
    constexpr double kRange = 9007199254740992.0;  // what a double counts without gaps
    return static_cast<double>(bits >> 11U) / kRange;
}

bool isMeant(const Fault& fault, const http::Operation& operation)
{
    return fault.operation.empty() || fault.operation == operation.command || fault.operation == operation.task;
}

bool strikesNow(const Fault& fault, const store::FaultRow& row)
{
    if (fault.call != 0 && fault.call != row.seen) return false;
    if (fault.times != 0 && row.struck >= fault.times) return false;
    return chance(fault.seed, row.seen) < fault.probability;
}

}  // namespace

Faults::Faults(store::Database& database)
{
    reload(database);
}

void Faults::reload(store::Database& database)
{
    std::vector<Entry> entries;
    for (store::FaultRow& row : store::faultRows(database)) {
        Fault fault = faultOf(parseJson(row.description));
        entries.push_back({std::move(row), std::move(fault)});
    }
    entries_ = std::move(entries);
    areSet_ = !entries_.empty();
}

std::optional<Fault> Faults::strike(store::Database& database, const http::Operation& operation)
{
    if (entries_.empty()) return std::nullopt;
    try {
        return counted(database, operation);
    } catch (const std::exception& error) {
        std::clog << "a fault could not be counted: " << error.what() << std::endl;
        return std::nullopt;
    }
}

// What is undone in the data file was not counted here either.
std::optional<Fault> Faults::counted(store::Database& database, const http::Operation& operation)
{
    std::vector<Entry> entries = entries_;
    const Entry* struck = nullptr;
    store::Transaction transaction(database);
    for (Entry& entry : entries) {
        if (!isMeant(entry.fault, operation)) continue;
        ++entry.row.seen;
        if (struck == nullptr && strikesNow(entry.fault, entry.row)) {
            struck = &entry;
            ++entry.row.struck;
        }
        store::countFault(database, entry.row);
    }
    transaction.commit();
    entries_.swap(entries);
    return struck == nullptr ? std::nullopt : std::optional<Fault>(struck->fault);
}

}  // namespace service::faults
