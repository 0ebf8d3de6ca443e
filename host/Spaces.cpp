// Workspaces.
#include "host/Call.h"
#include "host/Encoding.h"
#include "host/Topics.h"

namespace host {

namespace {

using Fields = std::vector<CWapiClient::WKSP_Field_Value>;

/// `as` is what the operation at hand needs of a text in a CDATA section.
Fields descriptionOf(const Call& call, CStringT (Call::*as)(const std::string&) const)
{
    constexpr int kDescription = 0;
    if (!call.given("--description")) return {};
    return {{kDescription, (call.*as)("--description")}};
}

int favouriteOf(const Call& call)
{
    return call.given("--favourite") ? 1 : 0;
}

void list(Call& call)
{
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    call.check(call.client().GetWkspList(call.cred(), {}, {}, spaces, invitations));
    call.show(spaces, {"workspaceID", "workspaceName", "type", "role", "userName", "description"});
}

void show(Call& call)
{
    space_t space;
    std::vector<CZelSpaceInvite> invitations;
    SPACE_ACCESS access;
    CStringT unused;
    call.check(call.client().getSpaceBatch(call.cred(), call.xml("workspace"), space, invitations, access, unused));
    const Columns invited{"userDescriptor", "userName", "status", "inviteAsType", "ownerName", "expires"};
    call.showParts({{"space", space}, {"invitations", invitations, invited}, {"access", access}});
}

void create(Call& call)
{
    Fields fields = descriptionOf(call, &Call::text);
    CStringT workspaceID;
    call.check(call.client().createSpace(call.cred(), call.text("name"), fields, workspaceID, call.number("--type", 0),
                                         favouriteOf(call)));
    call.show({{"workspaceID", workspaceID}});
}

void clone(Call& call)
{
    constexpr int kTemplate = 0x10;
    const int typeAndFlags = call.number("--type", 0) | (call.given("--template") ? kTemplate : 0);
    Fields fields = descriptionOf(call, &Call::text);
    CStringT workspaceID;
    call.check(call.client().cloneWksp(call.cred(), call.text("name"), percentOf(call.text("source")), typeAndFlags,
                                       fields, workspaceID, favouriteOf(call)),
               call.emptyOne({"name"}));
    call.show({{"workspaceID", workspaceID}});
}

void edit(Call& call)
{
    Fields fields = descriptionOf(call, &Call::cdata);
    const bool named = call.given("--name");
    std::string refusal = call.emptyOne({"workspace"});
    if (!named && fields.empty()) refusal = "nothing was sent: neither --name nor --description is given";
    call.check(
        call.client().editExtWksp(call.cred(), call.text("workspace"), call.xml("--name"), named ? 1 : 0, fields),
        refusal);
}

void remove(Call& call)
{
    call.check(call.client().deleteWksp(call.cred(), call.xml("workspace")), call.emptyOne({"workspace"}));
}

void leave(Call& call)
{
    call.check(call.client().leaveWorkspace(call.cred(), call.xml("workspace")), call.emptyOne({"workspace"}));
}

void test(Call& call)
{
    call.check(call.client().GetSpacesTest({}, {}));
}

Command listCommand()
{
    return {"spaces list",          "List the workspaces that you are a member of", {}, list, {"GetWkspList"}, {},
            membersOf<SpaceForList>};
}

Command deleteCommand(const Argument& workspace)
{
    return {"spaces delete", "Delete a workspace with all that it holds",           {workspace}, remove,
            {"deleteWksp"},  "Delete workspace {workspace} with all that it holds?"};
}

}  // namespace

Commands spacesCommands()
{
    const Argument workspace{"workspace", "Its ID"};
    const Argument name{"name", "Its name"};
    const Argument type{"--type", "0, the default, comes with a discussion room, others with one tab", Kind::number};
    const Argument description{"--description", "What it is for"};
    const Argument favourite{"--favourite", "Put it among your favourites", Kind::flag};
    return {
        {"spaces", "Workspaces", {}, nullptr},
        listCommand(),
        {"spaces show",
         "Show a workspace, the invitations to it and your rights on it",
         {workspace},
         show,
         {"getSpaceBatch"}},
        {"spaces create", "Make a workspace", {name, type, description, favourite}, create, {"createSpace"}},
        {"spaces clone",
         "Make a workspace, or a template, with the tabs of another one",
         {name,
          {"source", "The ID of the workspace or template that has the tabs"},
          {"--type", "The type, 0 unless given; 0 comes with a discussion room", Kind::number},
          {"--template", "Make a template", Kind::flag},
          description,
          favourite},
         clone,
         {"cloneWksp"}},
        {"spaces edit",
         "Change a workspace's name and description",
         {workspace, {"--name", "Its new name"}, description},
         edit,
         {"editExtWksp"}},
        deleteCommand(workspace),
        {"spaces leave",
         "Be a member of a workspace no longer",
         {workspace},
         leave,
         {"leaveWorkspace"},
         "Leave workspace {workspace}?"},
        {"spaces test", "Do nothing and succeed; nothing is sent", {}, test, {"GetSpacesTest"}},
    };
}

}  // namespace host
