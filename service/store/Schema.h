#pragma once

namespace service::store {

class Database;

// Brings the data file to the newest version, one step after another; refuses a file that is not ours, or newer.
void upgradeSchema(Database& database);

// The newest version.
long long schemaVersion();

}  // namespace service::store
