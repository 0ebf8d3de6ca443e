#include "service/store/Exchanges.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "service/store/Database.h"

namespace service::store {

namespace {

constexpr long long kRowBytes = 256;  // what a row takes beside its texts
constexpr std::size_t kLongestSought = 1000;

Exchange headOf(const Rows& rows)
{
    Exchange exchange;
    exchange.number = rows.number(0);
    exchange.time = rows.number(1);
    exchange.microseconds = rows.number(2);
    exchange.user = rows.text(3);
    exchange.method = rows.text(4);
    exchange.path = rows.text(5);
    exchange.operation = rows.text(6);
    exchange.status = static_cast<unsigned>(rows.number(7));
    exchange.result = rows.text(8);
    exchange.reason = rows.text(9);
    exchange.exceptionID = rows.text(10);
    exchange.fault = rows.text(11);
    exchange.bytesOut = static_cast<std::size_t>(rows.number(12));
    exchange.bytesIn = static_cast<std::size_t>(rows.number(13));
    return exchange;
}

// A pattern of LIKE that finds exactly this text anywhere.
std::string patternFor(std::string_view text)
{
    if (text.empty()) return {};
    std::string pattern = "%";
    for (const char c : text.substr(0, kLongestSought)) {
        if (c == '%' || c == '_' || c == '\\') pattern += '\\';
        pattern += c;
    }
    return pattern + '%';
}

// How a text stands inside of a JSON string.
std::string inJson(const std::string& text)
{
    const std::string quoted = nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return quoted.substr(1, quoted.size() - 2);
}

}  // namespace

long long sizeOf(const Exchange& exchange)
{
    return kRowBytes + static_cast<long long>(exchange.fields.size() + exchange.reply.size() + exchange.reason.size() +
                                              exchange.path.size() + exchange.operation.size());
}

void insertExchange(Database& database, const Exchange& exchange)
{
    database.run(
        "INSERT INTO exchange (number, time, microseconds, user, method, path, operation, status, result, reason,"
        " exception_id, fault, bytes_out, bytes_in, size, fields, reply)"
        " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        exchange.number, exchange.time, exchange.microseconds, exchange.user, exchange.method, exchange.path,
        exchange.operation, exchange.status, exchange.result, exchange.reason, exchange.exceptionID, exchange.fault,
        exchange.bytesOut, exchange.bytesIn, sizeOf(exchange), exchange.fields, exchange.reply);
}

void eachExchange(Database& database, const ExchangeFilter& filter, const std::function<bool(Exchange&&)>& take)
{
    const std::string plain = patternFor(filter.text);
    const std::string json = patternFor(inJson(filter.text));
    Rows rows = database.select(
        "SELECT number, time, microseconds, user, method, path, operation, status, result, reason, exception_id,"
        " fault, bytes_out, bytes_in FROM exchange WHERE number > ?1 AND (?2 = 0 OR result <> 'SUCCESS') AND (?3 = '' "
        "OR"
        " operation LIKE ?3 ESCAPE '\\' OR user LIKE ?3 ESCAPE '\\' OR reason LIKE ?3 ESCAPE '\\'"
        " OR exception_id LIKE ?3 ESCAPE '\\' OR fields LIKE ?4 ESCAPE '\\' OR reply LIKE ?3 ESCAPE '\\')"
        " ORDER BY number",
        filter.after, filter.failedOnly ? 1 : 0, plain, json);
    while (rows.next()) {
        if (!take(headOf(rows))) return;
    }
}

std::optional<Exchange> findExchange(Database& database, long long number)
{
    Rows rows = database.select(
        "SELECT number, time, microseconds, user, method, path, operation, status, result, reason, exception_id,"
        " fault, bytes_out, bytes_in, fields, reply FROM exchange WHERE number = ?",
        number);
    if (!rows.next()) return std::nullopt;
    Exchange exchange = headOf(rows);
    exchange.fields = rows.text(14);
    exchange.reply = rows.text(15);
    return exchange;
}

ExchangeTotals exchangeTotals(Database& database)
{
    Rows rows = database.select(
        "SELECT count(*), coalesce(sum(size), 0), coalesce(max(number), 0) FROM exchange INDEXED BY exchange_size");
    rows.next();
    return {rows.number(0), rows.number(1), rows.number(2)};
}

long long deleteOldestExchange(Database& database)
{
    Rows rows =
        database.select("DELETE FROM exchange WHERE number = (SELECT min(number) FROM exchange) RETURNING size");
    return rows.next() ? rows.number(0) : 0;
}

void deleteExchanges(Database& database)
{
    database.run("DELETE FROM exchange");
}

}  // namespace service::store
