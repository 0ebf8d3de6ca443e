#include <algorithm>
#include <limits>

#include "log/Operations.h"
#include "service/base/Text.h"
#include "service/control/Handlers.h"
#include "service/journal/Journal.h"
#include "service/journal/Shape.h"

namespace service::control {

namespace {

constexpr long long kMost = std::numeric_limits<long long>::max();
constexpr long long kMostListed = 1000;
constexpr std::size_t kMostStreams = 32;

journal::Journal& journalOf(Desk& desk)
{
    if (desk.journal == nullptr) throw ControlError(404, "this service keeps no journal");
    return *desk.journal;
}

long long numberOf(const Call& call, const char* name, long long otherwise, long long least, long long most)
{
    const std::string text = call.query.text(name);
    if (text.empty()) return otherwise;
    const auto number = wholeNumber(text, least, most);
    if (!number) throw ControlError(400, std::string(name) + " has to be a number, and not " + inQuotes(text));
    return *number;
}

bool truthOf(const Call& call, const char* name)
{
    const std::string text = call.query.text(name);
    if (text != "1" && text != "0" && !text.empty()) {
        throw ControlError(400, std::string(name) + " has to be 0 or 1, and not " + inQuotes(text));
    }
    return text == "1";
}

// What is not in the data file any more has had its number all the same.
Json totalsOf(Desk& desk)
{
    const store::ExchangeTotals totals = store::exchangeTotals(desk.database);
    return Json{{"last", std::max(totals.last, desk.last)}, {"count", totals.count}};
}

}  // namespace

// Pages follow each other by the number of the last one listed.
Json listExchanges(Desk& desk, const Call& call)
{
    journalOf(desk);
    const store::ExchangeFilter filter{numberOf(call, "after", 0, 0, kMost), call.query.text("text"),
                                       truthOf(call, "failed")};
    const auto limit = static_cast<std::size_t>(numberOf(call, "limit", kMostListed, 1, kMostListed));
    const std::string operation = call.query.text("operation");
    Json list = Json::array();
    bool more = false;
    store::eachExchange(desk.database, filter, [&](store::Exchange&& exchange) {
        if (!operation.empty() && !logreader::matchesOperation(exchange.operation, operation)) return true;
        more = list.size() == limit;
        if (!more) list.push_back(journal::summaryOf(exchange));
        return !more;
    });
    Json answer = totalsOf(desk);
    answer["exchanges"] = std::move(list);
    answer["more"] = more;
    return answer;
}

Json showExchange(Desk& desk, const Call& call)
{
    journalOf(desk);
    const auto number = wholeNumber(call.name, 1, kMost);
    const auto exchange = number ? store::findExchange(desk.database, *number) : std::nullopt;
    if (!exchange) throw ControlError(404, "there is no exchange " + inQuotes(call.name));
    return journal::detailOf(*exchange);
}

Json clearExchanges(Desk& desk, const Call& /*call*/)
{
    journalOf(desk).clear();
    desk.isCleared = true;
    return totalsOf(desk);
}

Json followExchanges(Desk& desk, const Call& /*call*/)
{
    journal::Journal& journal = journalOf(desk);
    if (journal.events().count() >= kMostStreams) throw ControlError(503, "too many watch the journal already");
    desk.events = &journal.events();
    return totalsOf(desk);
}

}  // namespace service::control
