// Workspaces made from applications, and applications saved from workspaces.
#include "host/Call.h"
#include "host/Topics.h"

namespace host {

namespace {

void instantiate(Call& call)
{
    CStringT workspaceID;
    call.check(call.client().createSpaceUsingApp(call.cred(), call.xml("name"), call.xml("app"), workspaceID,
                                                 call.cdata("--description"), call.given("--favourite") ? 1 : 0,
                                                 call.number("--type", 0)));
    call.show({{"workspaceID", workspaceID}});
}

void save(Call& call)
{
    CStringT widgetID;
    call.check(call.client().saveWorkspaceAsApp(call.cred(), call.xml("workspace"), call.xml("name"),
                                                call.xml("library"), widgetID, call.cdata("--description")));
    call.show({{"widgetID", widgetID}});
}

}  // namespace

Commands appsCommands()
{
    const Argument description{"--description", "What it is for"};
    return {
        {"apps", "Applications: what workspaces are made from", {}, nullptr},
        {"apps instantiate",
         "Make a workspace from an application",
         {{"name", "The workspace's name"},
          {"app", "The application's name; Blank makes an empty workspace"},
          {"--type", "0, the default, comes with a discussion room", Kind::number},
          description,
          {"--favourite", "Put it among your favourites", Kind::flag}},
         instantiate,
         {"createSpaceUsingApp"}},
        {"apps save",
         "Save a workspace as an application",
         {{"workspace", "The workspace's ID"},
          {"name", "The application's name"},
          {"library", "The ID of the library that it goes into"},
          description},
         save,
         {"saveWorkspaceAsApp"}},
    };
}

}  // namespace host
