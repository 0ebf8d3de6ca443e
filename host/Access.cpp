// What the user may do.
#include "host/Call.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace host {

namespace {

constexpr const char* kSet = "set";
constexpr const char* kDelete = "delete";
constexpr const char* kJoin = "join";

unsigned long bitOf(const CStringT& test)
{
    if (test == FromUtf8(kSet)) return 0x01;
    if (test == FromUtf8(kDelete)) return 0x02;
    return 0x20;
}

unsigned long testsOf(const Call& call)
{
    constexpr unsigned long kAll = 0x23;
    unsigned long tests = 0;
    for (const CStringT& test : call.list("--test")) tests |= bitOf(test);
    return tests != 0 ? tests : kAll;
}

void space(Call& call)
{
    SPACE_ACCESS access;
    call.check(call.client().probeSpaceAccess(call.cred(), call.xml("workspace"), access, testsOf(call)));
    call.show(access, {"setWorkspaceAccess", "setWorkspaceReason", "deleteWorkspaceAccess", "deleteWorkspaceReason",
                       "joinSpaceAccess", "joinSpaceReason"});
}

void own(Call& call)
{
    SPACE_ACCESS access;
    call.check(call.client().probeSpaceAccess2(call.cred(), access));
    call.show(access, {"bulkSpaceInviteAccess", "bulkSpaceInviteReason", "createChatRoomAccess", "createChatRoomReason",
                       "createDocAccess", "createDocReason"});
}

void doc(Call& call)
{
    DOC_ACCESS access;
    call.check(call.client().probeDocAccess(call.cred(), call.xml("document"), access));
    call.show(access);
}

void room(Call& call)
{
    ROOM_ACCESS access;
    call.check(call.client().probeChatRoomAccess(call.cred(), call.xml("room"), access));
    call.show(access);
}

}  // namespace

Commands accessCommands()
{
    return {
        {"access", "What you may do, as the service says it", {}, nullptr},
        {"access own", "Invite in bulk, make discussion rooms and documents", {}, own, {"probeSpaceAccess2"}},
        {"access space",
         "Change and delete a workspace, and join workspaces",
         {{"workspace", "The workspace's ID"},
          {"--test",
           "What to ask for, all unless given; set and delete come together; may be repeated",
           Kind::list,
           {kSet, kDelete, kJoin}}},
         space,
         {"probeSpaceAccess"}},
        {"access doc", "Change and delete a document", {{"document", "The document's ID"}}, doc, {"probeDocAccess"}},
        {"access room",
         "Change and delete a discussion room, and write in it",
         {{"room", "The room's ID"}},
         room,
         {"probeChatRoomAccess"}},
    };
}

}  // namespace host
