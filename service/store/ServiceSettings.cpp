#include "service/store/ServiceSettings.h"

#include <limits>

#include "service/base/Text.h"
#include "service/store/Database.h"

namespace service::store {

long long clockOffset(Database& database)
{
    constexpr long long kMost = std::numeric_limits<long long>::max() / 4;
    const auto text = database.value("SELECT value FROM service_setting WHERE name = 'clockOffset'");
    return text ? wholeNumber(*text, -kMost, kMost).value_or(0) : 0;
}

void setClockOffset(Database& database, long long ms)
{
    database.run("INSERT OR REPLACE INTO service_setting (name, value) VALUES ('clockOffset', ?)", std::to_string(ms));
}

}  // namespace service::store
