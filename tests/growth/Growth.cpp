// What calls cost as their input grows; under callgrind, which counts the instructions.
//   growth                 each case with an input of its size and with ten times of it
// A case is collected only while its call runs, and dumped under "NAME SIZE"; growth.py runs it and judges.
#include <valgrind/callgrind.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "client/WapiClient.h"
#include "pvutil/StringEx.h"
#include "spaces/IconName.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/Text.h"

namespace {

using kzn::test::CaptureServer;

using Call = std::function<int(CWapiClient&)>;

/// The reply that is served and the call that it answers.
struct Work {
    std::string reply;
    Call call;
};

/// `size` is chosen so that what a call costs anyway does not hide the growth.
struct Case {
    const char* name;
    std::size_t size;
    std::function<Work(std::size_t)> workOf;
};

const CStringT kCred = "c"_w;

std::string times(std::size_t count, const std::function<std::string(std::size_t)>& piece)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += piece(i);
    return text;
}

std::string times(std::size_t count, std::string_view piece)
{
    std::string text;
    text.reserve(count * piece.size());
    for (std::size_t i = 0; i < count; ++i) text += piece;
    return text;
}

std::string element(std::string_view name, std::string_view content)
{
    return std::string("<").append(name).append(">").append(content).append("</").append(name).append(">");
}

std::string success(const std::string& rest)
{
    return "<kznapi><response><result>SUCCESS</result></response>" + rest + "</kznapi>";
}

std::string listing(const std::string& step)
{
    return success("<return><step>" + step + "</step></return>");
}

int listSpaces(CWapiClient& client)
{
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    return client.GetWkspList(kCred, {}, {}, spaces, invitations);
}

int askSession(CWapiClient& client)
{
    return client.getSessionInfo(kCred);
}

std::string idOf(std::size_t number)
{
    return "workspace-" + std::to_string(number * 7919 % 1000003);
}

std::string spaceOf(std::size_t number)
{
    return element("workspace", element("workspaceID", idOf(number)) + element("workspaceName", "Plans &amp; notes"));
}

std::string roleOf(std::size_t number)
{
    return element("workspace",
                   element("workspaceID", idOf(number)) + element("roles", element("role", element("roleID", "1"))));
}

Work width(std::size_t size)
{
    return {listing(times(size, spaceOf)), listSpaces};
}

Work spacesWithRoles(std::size_t size)
{
    return {listing(times(size, [](std::size_t i) { return element("workspace", element("workspaceID", idOf(i))); }) +
                    element("user", element("workspaces", times(size, roleOf)))),
            listSpaces};
}

Work sameSpaceTwiceOver(std::size_t size)
{
    return {listing(times(size, element("workspace", element("workspaceID", "w"))) +
                    element("user", element("workspaces", times(size, [](std::size_t) { return roleOf(1); })))),
            listSpaces};
}

Work invitations(std::size_t size)
{
    return {listing(times(size,
                          [](std::size_t i) {
                              return element("spaceInvite", element("spaceInviteID", std::to_string(i)) +
                                                                element("inviteAs", "2") + element("inviteType", "3"));
                          })),
            listSpaces};
}

Work depth(std::size_t size)
{
    return {success(times(size, "<a>") + times(size, "</a>")), askSession};
}

Work attributes(std::size_t size)
{
    return {success("<a" + times(size, [](std::size_t i) { return " n" + std::to_string(i) + "=\"v\""; }) + "/>"),
            askSession};
}

Work names(std::size_t size)
{
    return {success(times(size, [](std::size_t i) { return "<name" + std::to_string(i) + "/>"; })), askSession};
}

Work longName(std::size_t size)
{
    return {success(element(times(size, "n"), "")), askSession};
}

Work longText(std::size_t size)
{
    return {listing(element("workspace", element("workspaceName", times(size, "text ")))), listSpaces};
}

// Each reference and section is a piece by itself.
Work pieces(std::size_t size)
{
    return {listing(element("workspace", element("workspaceName", times(size, "&amp;<![CDATA[x]]>")))), listSpaces};
}

Work illFormedBytes(std::size_t size)
{
    return {listing(element("workspace", element("workspaceName", times(size, "\xE2\x82\xFF")))), listSpaces};
}

Work messages(std::size_t size)
{
    return {"<kznapi><response><result>FAILURE</result></response><messageStrings>" +
                times(size, element("message", "no")) + "</messageStrings></kznapi>",
            [](CWapiClient& client) { return 1 - client.getSessionInfo(kCred); }};
}

Work membersWithRoles(std::size_t size)
{
    const std::string roles = element("roles", times(8, element("role", element("roleID", "r"))));
    return {success(element(
                "return", element("workspace",
                                  element("members", times(size, element("member", element("userID", "u") + roles)))))),
            [](CWapiClient& client) {
                std::vector<CZelMember> members;
                return client.getMembers(kCred, "w"_w, members);
            }};
}

Work rolesOfAMember(std::size_t size)
{
    const std::string roles = element("roles", times(size, element("role", element("roleID", "r"))));
    return {success(element("return", element("workspace", element("members", element("member", roles))))),
            [](CWapiClient& client) {
                std::vector<CZelMember> members;
                return client.getMembers(kCred, "w"_w, members);
            }};
}

// The results come in the order that is the least convenient.
Work invited(std::size_t size)
{
    std::vector<SPACEINVT> asked(size);
    for (std::size_t i = 0; i < size; ++i) {
        asked[i].workspaceID = "w"_w;
        asked[i].user = wide(std::to_string(size - i));
    }
    const std::string results = times(size, [](std::size_t i) {
        return element("invite", element("workspaceID", "w") + element("user", std::to_string(i + 1)));
    });
    return {success(element("return", element("invitationResults", results))), [asked](CWapiClient& client) {
                std::vector<SPACEINVT> invitations = asked;
                return client.inviteMembers(kCred, invitations, {});
            }};
}

Work manyArguments(std::size_t size)
{
    const std::vector<CStringT> ids(size, "workspace & more"_w);
    return {success(""), [ids](CWapiClient& client) {
                std::vector<RoleItem> roles;
                return client.getRole(kCred, ids, roles);
            }};
}

Work longArgument(std::size_t size)
{
    const CStringT text = wide(times(size, "a & \xC3\xA9"));
    return {success(""), [text](CWapiClient& client) { return client.callWapi(kCred, text); }};
}

Work headerLines(std::size_t size)
{
    const CStringT lines = wide(times(size, [](std::size_t i) { return "X-" + std::to_string(i) + ": v\r\n"; }));
    return {success(""), [lines](CWapiClient& client) {
                CStringT reply;
                const CStringT url = client.getOpURL();
                return client.WapiProxyCall(kCred, {}, CWapiClient::METHOD_GET, url, lines, 1, reply);
            }};
}

Work iconName(std::size_t size)
{
    const CStringT address = wide("http://h/" + times(size, ".."));
    return {"", [address](CWapiClient&) { return wapi::iconFileName(address).empty() ? 0 : 1; }};
}

// What has to be found: whoever judges is judged by it.
Work squares(std::size_t size)
{
    return {success(""), [size](CWapiClient&) {
                volatile std::size_t sum = 0;
                for (std::size_t i = 0; i < size * size; ++i) sum = sum + i;
                return 1;
            }};
}

const std::vector<Case>& cases()
{
    static const std::vector<Case> kCases = {
        {"width", 300, width},
        {"spaces with roles", 300, spacesWithRoles},
        {"the same space again and again", 300, sameSpaceTwiceOver},
        {"invitations", 300, invitations},
        {"depth", 90, depth},
        {"attributes", 300, attributes},
        {"names", 500, names},
        {"long name", 20000, longName},
        {"long text", 10000, longText},
        {"pieces", 1500, pieces},
        {"ill-formed bytes", 10000, illFormedBytes},
        {"messages", 1000, messages},
        {"members with roles", 50, membersWithRoles},
        {"roles of a member", 500, rolesOfAMember},
        {"invited", 200, invited},
        {"many arguments", 300, manyArguments},
        {"long argument", 10000, longArgument},
        {"header lines", 200, headerLines},
        {"icon name", 1000, iconName},
        {"squares", 300, squares},
    };
    return kCases;
}

bool measure(const Case& each, std::size_t size)
{
    CaptureServer server;
    const Work work = each.workOf(size);
    server.otherwise(200, "text/xml; charset=utf-8", work.reply);
    CWapiClient client(server.url("/op.do"));
    if (work.call(client) != 1) return false;  // the first call of all finds nothing warm
    CALLGRIND_TOGGLE_COLLECT;
    const int result = work.call(client);
    CALLGRIND_TOGGLE_COLLECT;
    const std::string name = std::string(each.name) + " " + std::to_string(size);
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    return result == 1;
}

}  // namespace

int main()
{
    for (const Case& each : cases())
        for (const std::size_t size : {each.size, each.size * 10})
            if (!measure(each, size)) {
                std::fprintf(stderr, "growth: %s of %zu came to nothing\n", each.name, size);
                return 1;
            }
    return 0;
}
