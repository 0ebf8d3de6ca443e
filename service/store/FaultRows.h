#pragma once

#include <string>
#include <vector>

namespace service::store {

class Database;

struct FaultRow {
    long long id = 0;
    std::string description;  // JSON
    long long seen = 0;       // calls that it was meant for
    long long struck = 0;
};

// Returns its ID.
long long insertFault(Database& database, const std::string& description);
std::vector<FaultRow> faultRows(Database& database);
void countFault(Database& database, const FaultRow& row);

// Returns false where there is none.
bool deleteFault(Database& database, long long id);
void deleteFaults(Database& database);

}  // namespace service::store
