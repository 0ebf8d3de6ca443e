// The people of a workspace.
#include "host/Call.h"
#include "host/Errors.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace host {

namespace {

constexpr const char* kMember = "member";
constexpr const char* kAdmin = "admin";

WAPI_INVITEAS_TYPE roleOf(const Call& call, const char* argument)
{
    return call.text(argument) == FromUtf8(kAdmin) ? WAPI_INVITEAS_ADMIN : WAPI_INVITEAS_MEMBER;
}

void list(Call& call)
{
    std::vector<CZelMember> members;
    call.check(call.client().getMembers(call.cred(), call.text("workspace"), members));
    call.show(members, {"userID", "userName", "role", "email"});
}

void invite(Call& call)
{
    if (!call.given("user")) throw LocalProblem("nobody is named; see pvwapi members invite --help");
    std::vector<SPACEINVT> invitations;
    for (const CStringT& user : call.cdataList("user")) {
        SPACEINVT& invitation = invitations.emplace_back();
        invitation.workspaceID = call.xml("workspace");
        invitation.user = user;
        invitation.inviteMethod = call.given("--method") ? call.xml("--method") : FromUtf8("EMAIL");
        invitation.isproviderID = call.xml("--provider");
        invitation.inviteAs = roleOf(call, "--role");
    }
    call.check(call.client().inviteMembers(call.cred(), invitations, call.cdata("--message")));
    // Shown as they were typed, not as they were sent.
    const std::vector<CStringT> users = call.list("user");
    for (std::size_t at = 0; at < users.size(); ++at) {
        invitations[at].workspaceID = call.text("workspace");
        invitations[at].user = users[at];
    }
    call.show(invitations, {"user", "status", "userID", "userName", "email", "emailSent"});
}

void remove(Call& call)
{
    const CStringT user = call.text("user");
    // The ID stands between quotes in an expression, which knows no way to write one.
    if (user.find('\'') != CStringT::npos) throw LocalProblem("user: a request cannot carry an ID with a quote");
    call.check(call.client().removeSpaceMember(call.cred(), call.text("workspace"), user));
}

void role(Call& call)
{
    call.check(
        call.client().changeMemberRole(call.cred(), call.xml("workspace"), call.xml("user"), roleOf(call, "role")));
}

}  // namespace

Commands membersCommands()
{
    const Argument workspace{"workspace", "The workspace's ID"};
    const Argument user{"user", "The member's user ID"};
    const std::vector<std::string> roles{kMember, kAdmin};
    return {
        {"members", "The people of a workspace", {}, nullptr},
        {"members list", "List a workspace's members", {workspace}, list, {"getMembers"}, {}, membersOf<CZelMember>},
        {"members invite",
         "Invite people to a workspace",
         {workspace,
          {"--role", "What they are to become, member unless given", Kind::text, roles},
          {"--method", "How they hear of it: EMAIL, the default, or another way that the service knows"},
          {"--message", "A personal message, which goes along with EMAIL"},
          {"--provider", "The ID of their instant-messaging provider"},
          {"user", "Their user IDs or e-mail addresses", Kind::list, {}, false, {}, true}},
         invite,
         {"inviteMembers"},
         {},
         membersOf<SPACEINVT>},
        {"members remove",
         "Remove a member",
         {workspace, user},
         remove,
         {"removeSpaceMember"},
         "Remove {user} from workspace {workspace}?"},
        {"members role",
         "Make a member an administrator, or one no longer",
         {workspace, user, {"role", "What the member becomes", Kind::text, roles}},
         role,
         {"changeMemberRole"}},
    };
}

}  // namespace host
