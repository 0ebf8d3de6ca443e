#pragma once

namespace service::store {

class Database;

// How far the service's clock is ahead of the machine's, in milliseconds.
long long clockOffset(Database& database);
void setClockOffset(Database& database, long long ms);

}  // namespace service::store
