#include "log/Operations.h"

#include <algorithm>
#include <array>
#include <optional>

namespace logreader {

namespace {

/// A body of the library: its command, what it is about (the task of an execute, else the type), and how the field that
/// says more begins.
struct Body {
    std::string_view operation;
    std::string_view command;
    std::string_view subject;
    std::string_view detail = {};  ///< "select=…", "xml=…"; empty: any
};

// What other callers send with the same command is told apart by the detail; no text of the user's stands in one.
constexpr std::array kBodies = std::to_array<Body>({
    {"login", "login", "", "isp="},
    {"logout", "logout", ""},
    {"cloneSession", "cloneSession", ""},
    {"getSessionInfo", "get", "sessionInfo", "select=sessionInfo"},

    {"createSpace", "execute", "AddTabs", "xml=<workspace><workspaceName>"},
    {"createTab", "execute", "AddTabs", "xml=<workspace><workspaceID>"},
    {"cloneWksp", "execute", "CloneWorkspace"},
    {"createSpaceUsingApp", "execute", "CreateWorkspaceUsingApp"},
    {"saveWorkspaceAsApp", "execute", "SaveWorkspaceAsApp"},
    {"deleteWksp", "execute", "DeleteWorkspace"},
    {"leaveWorkspace", "execute", "LeaveSpace"},
    {"editExtWksp", "set", "workspace", "xml="},
    {"getTabs", "get", "workspace", "select=tabs"},
    {"deleteTab", "delete", "tab"},
    {"editTab", "set", "tab"},
    {"editTabOrder", "set", "wksp"},
    {"SetSpaceIcon", "execute", "ManageSpaceIcon"},  // an upload, which stands in no log

    {"GetWkspList", "execute", "RunScript", "xml=<script><step><cmd>list</cmd><type>workspace</type><where><eq>"},
    {"ProbeAccessAllSpace", "execute", "RunScript",
     "xml=<script><step><cmd>list</cmd><type>workspace</type><where><and>"},
    {"getSpaceBatch", "execute", "RunScript", "xml=<script><step><cmd>get</cmd><type>workspace</type>"},
    {"GetFavoriteSpaceList", "execute", "RunScript", "xml=<script><step><cmd>get</cmd><type>wtng</type>"},
    {"createFavoriteSpace", "create", "wtng"},
    {"deleteFavoriteSpace", "delete", "wtng"},
    {"getMembers", "get", "workspace", "select=members"},
    {"removeSpaceMember", "remove", "workspace"},
    {"inviteMembers", "execute", "BulkSpaceInvite"},
    {"delInvt", "delete", "spaceInvite"},
    {"responseInvitation", "execute", "JoinSpace"},
    {"changeMemberRole", "execute", "ChangeRole"},
    {"getRole", "execute", "ProbeAccess", "xml=<tests><get><cmd>get</cmd>"},
    {"probeSpaceAccess", "execute", "ProbeAccess", "xml=<tests><set-workspace>"},
    {"probeSpaceAccess", "execute", "ProbeAccess", "xml=<tests><JoinSpace/>"},
    {"probeSpaceAccess2", "execute", "ProbeAccess", "xml=<tests><BulkSpaceInvite/>"},
    {"probeDocAccess", "execute", "ProbeAccess", "xml=<tests><set-doc>"},
    {"probeChatRoomAccess", "execute", "ProbeAccess", "xml=<tests><delete-chatRoom>"},
    {"getPolicyData", "execute", "ProbeAccess", "xml=<tests><AutomaticUpdates/>"},

    {"getUserConfigureInfo", "get", "user", "select=userID:email:"},
    {"getUserProfile", "execute", "GetUserProfile"},
    {"editExtUser", "set", "user", "xml=<user><ext>"},
    {"createRDQAVAccount", "execute", "CreateRDQAVAccounts"},
    {"getOrgInfo", "get", "org", "select=ext/KZN"},
    {"getDomainList", "get", "org", "select=org"},
    {"getLibraries", "execute", "GetUserLibraries"},
    {"getUserLibrariesWithApps", "execute", "GetUserLibrariesWithApps"},
    {"addTemplateToLibrary", "add", "grp"},
    {"getSpaceNotify", "execute", "GetWorkspaceNotificationCount", "xml=<getCount>"},
    {"getSpaceActivity", "execute", "GetWorkspaceNotificationCount", "xml=<getActivity>"},
    {"sendNotificationEvent", "execute", "SendNotificationEvent"},
    {"writeMeetingRecord", "create", "thng"},
});

bool hasDetail(const Fields& fields, std::string_view detail)
{
    if (detail.empty()) return true;
    const std::size_t begin = detail.find('=') + 1;
    const std::string_view name = detail.substr(0, begin - 1);
    return std::ranges::any_of(fields, [&](const Field& field) {
        return field.name == name && field.value.starts_with(detail.substr(begin));
    });
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lower(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) { return lower(c); });
    return result;
}

bool fits(char letter, std::string_view glob)
{
    return !glob.empty() && (glob.front() == '?' || glob.front() == letter);
}

/// "*" is tried short first; where it fails, it takes one letter more. Only the last one ever has to.
bool matchesGlob(std::string_view name, std::string_view glob)
{
    std::optional<std::string_view> behindStar;
    std::string_view behindTaken;
    while (!name.empty()) {
        if (glob.starts_with('*')) {
            glob.remove_prefix(1);
            behindStar = glob;
            behindTaken = name;
        } else if (fits(name.front(), glob)) {
            glob.remove_prefix(1);
            name.remove_prefix(1);
        } else {
            if (!behindStar) return false;
            behindTaken.remove_prefix(1);
            name = behindTaken;
            glob = *behindStar;
        }
    }
    return glob.find_first_not_of('*') == std::string_view::npos;
}

}  // namespace

std::string operationOf(const Fields& fields)
{
    const std::string_view command = valueOf(fields, "cmd");
    if (command.empty()) return "callWapi";  // the caller's own command, and an empty one
    const std::string_view subject = valueOf(fields, command == "execute" ? "task" : "type");
    const auto known = std::ranges::find_if(kBodies, [&](const Body& body) {
        return body.command == command && body.subject == subject && hasDetail(fields, body.detail);
    });
    if (known != kBodies.end()) return std::string(known->operation);
    std::string words(command);
    if (!subject.empty()) words.append(" ").append(subject);
    return words;
}

bool matchesOperation(std::string_view name, std::string_view pattern)
{
    if (pattern.find_first_of("*?") != std::string_view::npos) return matchesGlob(lower(name), lower(pattern));
    return lower(name).find(lower(pattern)) != std::string::npos;
}

}  // namespace logreader
