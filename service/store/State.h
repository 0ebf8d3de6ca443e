#pragma once

#include "service/base/Json.h"

namespace service::store {

class Database;

// Everything that the service knows, as one JSON document: a list of rows for each table, members named as the columns
// are. Bytes stand as {"hex": "..."}.
Json stateOf(Database& database);

// Puts that in the place of everything. Throws JsonError where it does not fit; whoever calls it has a transaction
// around it, so that then nothing has changed.
void replaceState(Database& database, const Json& state);

// Takes everything away.
void clearState(Database& database);

}  // namespace service::store
