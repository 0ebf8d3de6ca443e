#pragma once

namespace service::store {
class Database;
}

namespace service::seed {

// A small design office: four people, three workspaces and a template, open invitations and libraries. README.md lists
// who and what.
void fillDemo(store::Database& database);

}  // namespace service::seed
