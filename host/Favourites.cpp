// The user's favourite workspaces.
#include "host/Call.h"
#include "host/Encoding.h"
#include "host/Topics.h"

namespace host {

namespace {

/// Favourites are kept under the user's own ID unless somebody names another list. As it goes into XML.
CStringT listName(Call& call)
{
    return call.given("--list") ? call.xml("--list") : xmlOf(call.userID());
}

void list(Call& call)
{
    const CStringT name = listName(call);
    std::vector<space_t> spaces;
    call.check(call.client().GetFavoriteSpaceList(call.cred(), name, spaces));
    call.show(spaces, {"workspaceID", "members"});
}

void add(Call& call)
{
    const CStringT name = listName(call);
    call.check(call.client().createFavoriteSpace(call.formCred(), name, call.xml("workspace")));
}

void remove(Call& call)
{
    const CStringT name = listName(call);
    call.check(call.client().deleteFavoriteSpace(call.formCred(), name, call.xml("workspace")));
}

}  // namespace

Commands favouritesCommands()
{
    const Argument workspace{"workspace", "The workspace's ID"};
    const Argument name{"--list", "The name of the list, your user ID unless given"};
    return {
        {"favourites", "Your favourite workspaces", {}, nullptr},
        {"favourites list",
         "List them, with how many members each has",
         {name},
         list,
         {"GetFavoriteSpaceList"},
         {},
         membersOf<space_t>},
        {"favourites add", "Add a workspace", {workspace, name}, add, {"createFavoriteSpace"}},
        {"favourites remove", "Remove a workspace", {workspace, name}, remove, {"deleteFavoriteSpace"}},
    };
}

}  // namespace host
