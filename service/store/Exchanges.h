#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace service::store {

class Database;

// One request with its reply, as it may be shown: nothing secret is in it.
struct Exchange {
    long long number = 0;
    long long time = 0;  // the service's own, in milliseconds since 1970
    long long microseconds = 0;
    std::string user;  // empty where nobody was known
    std::string method;
    std::string path;
    std::string operation;
    unsigned status = 0;
    std::string result;
    std::string reason;
    std::string exceptionID;
    std::string fault;         // the kind of the one that struck it
    std::size_t bytesOut = 0;  // of the request
    std::size_t bytesIn = 0;   // of the reply
    std::string fields;        // JSON: a list of pairs
    std::string reply;         // as far as it is kept
};

// Which exchanges are meant; an empty text leaves the choice open.
struct ExchangeFilter {
    long long after = 0;  // numbers above this
    std::string text;     // somewhere in it, whatever the case of the letters
    bool failedOnly = false;
};

void insertExchange(Database& database, const Exchange& exchange);

// Hands on those that the filter lets pass, the oldest first and without fields and reply, until `take` says no.
void eachExchange(Database& database, const ExchangeFilter& filter, const std::function<bool(Exchange&&)>& take);

std::optional<Exchange> findExchange(Database& database, long long number);

struct ExchangeTotals {
    long long count = 0;
    long long bytes = 0;
    long long last = 0;  // the highest number
};

ExchangeTotals exchangeTotals(Database& database);

// What one exchange counts towards the bytes of all.
long long sizeOf(const Exchange& exchange);

// The size of what went; 0 where there was nothing.
long long deleteOldestExchange(Database& database);
void deleteExchanges(Database& database);

}  // namespace service::store
