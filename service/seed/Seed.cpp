#include "service/seed/Seed.h"

#include <stdexcept>

#include "service/seed/Demo.h"
#include "service/store/Database.h"
#include "service/store/Users.h"

namespace service::seed {

std::string fill(store::Database& database, const std::string& name)
{
    if (store::hasUsers(database)) return "the data file holds users already: nothing was changed";
    if (name != "demo") throw std::runtime_error("there is no seed called " + name);
    store::Transaction transaction(database);
    fillDemo(database);
    transaction.commit();
    return "the data file was filled with the demo organisation";
}

}  // namespace service::seed
