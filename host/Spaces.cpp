// Workspaces.
#include "host/Call.h"
#include "host/Topics.h"

namespace host {

namespace {

void list(Call& call)
{
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    call.check(call.client().GetWkspList(call.cred(), {}, {}, spaces, invitations));
    call.show(spaces, {"workspaceID", "workspaceName", "type", "role", "userName", "description"});
}

void create(Call& call)
{
    std::vector<CWapiClient::WKSP_Field_Value> fields;
    if (call.given("--description")) fields.push_back({0, call.text("--description")});
    CStringT workspaceID;
    call.check(call.client().createSpace(call.cred(), call.text("name"), fields, workspaceID, call.number("--type", 0),
                                         call.given("--favourite") ? 1 : 0));
    call.show({{"workspaceID", workspaceID}});
}

}  // namespace

Commands spacesCommands()
{
    return {
        {"spaces", "Workspaces", {}, nullptr},
        {"spaces list", "List the workspaces that you are a member of", {}, list},
        {"spaces create",
         "Make a workspace",
         {{"name", "Its name"},
          {"--type", "0, the default, comes with a discussion room; other types with one tab", Kind::number},
          {"--description", "What it is for"},
          {"--favourite", "Put it among your favourites", Kind::flag}},
         create},
    };
}

}  // namespace host
