#pragma once

#include <string>

namespace service::store {
class Database;
}

namespace service::seed {

// Fills an empty data file with the named organisation and says what it did. A file that holds users already is left
// exactly as it is.
std::string fill(store::Database& database, const std::string& name);

}  // namespace service::seed
