// What the user may do across workspaces.
#include "host/Call.h"
#include "host/Errors.h"
#include "host/Topics.h"

namespace host {

namespace {

void roles(Call& call)
{
    if (call.given("--with") && call.given("workspace")) throw LocalProblem("name workspaces, or give --with");
    std::vector<RoleItem> items;
    const CStringT& cred = call.cred();
    if (call.given("--with")) {
        call.check(call.client().ProbeAccessAllSpace(cred, call.xml("--with"), {}, items));
    } else {
        call.check(call.client().getRole(cred, call.xmlList("workspace"), items));
    }
    call.show(items, {"id", "cmd", "access"});
}

}  // namespace

Commands rolesCommands()
{
    return {
        {"roles",
         "Ask whether you may read (get) and change (set) workspaces",
         {{"--with", "Ask for all workspaces that you share with the user of this ID, instead of naming them"},
          {"workspace", "The workspaces' IDs", Kind::list}},
         roles,
         {"getRole", "ProbeAccessAllSpace"},
         {},
         membersOf<RoleItem>},
    };
}

}  // namespace host
