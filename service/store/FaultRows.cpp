#include "service/store/FaultRows.h"

#include "service/store/Database.h"

namespace service::store {

long long insertFault(Database& database, const std::string& description)
{
    Rows rows = database.select("INSERT INTO fault (description, seen, struck) VALUES (?, 0, 0) RETURNING fault_id",
                                description);
    rows.next();
    const long long id = rows.number(0);
    rows.next();
    return id;
}

std::vector<FaultRow> faultRows(Database& database)
{
    Rows rows = database.select("SELECT fault_id, description, seen, struck FROM fault ORDER BY fault_id");
    std::vector<FaultRow> all;
    while (rows.next()) all.push_back({rows.number(0), rows.text(1), rows.number(2), rows.number(3)});
    return all;
}

void countFault(Database& database, const FaultRow& row)
{
    database.run("UPDATE fault SET seen = ?, struck = ? WHERE fault_id = ?", row.seen, row.struck, row.id);
}

bool deleteFault(Database& database, long long id)
{
    return database.run("DELETE FROM fault WHERE fault_id = ?", id) > 0;
}

void deleteFaults(Database& database)
{
    database.run("DELETE FROM fault");
}

}  // namespace service::store
