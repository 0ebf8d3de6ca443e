#include "service/rules/Rights.h"

#include <algorithm>
#include <array>

#include "service/base/Text.h"
#include "service/rules/Roles.h"
#include "service/store/Members.h"
#include "service/store/Organisations.h"

namespace service::rules {

namespace {

enum class Needs { member, administrator };

struct WorkspaceTest {
    std::string_view name;
    Needs needs;
};

constexpr std::array kWorkspaceTests{
    WorkspaceTest{"get-workspace", Needs::member},
    WorkspaceTest{"set-workspace", Needs::administrator},
    WorkspaceTest{"delete-workspace", Needs::administrator},
};

// What hosts ask for, and no command does.
constexpr std::array<std::string_view, 6> kNeverDone{"create-doc",   "set-doc",         "delete-doc",
                                                     "set-chatRoom", "delete-chatRoom", "create-chatEntry"};

Right refused(std::string reason)
{
    return {false, std::move(reason)};
}

Right workspaceRight(const Context& context, const WorkspaceTest& test, const std::string& workspaceID)
{
    const std::string& userID = context.session.userID;
    if (!store::isMember(context.database, workspaceID, userID)) {
        return refused("there is no " + inQuotes(workspaceID) + " that you can see");
    }
    if (test.needs == Needs::administrator && !isAdministrator(context, workspaceID, userID)) {
        return refused("only an administrator of the workspace may do this");
    }
    if (test.needs == Needs::administrator && !sessionMayChange(context, workspaceID)) {
        return refused("this session was cloned for another workspace");
    }
    return {true, {}};
}

Right policyRight(const Context& context, const std::string& feature)
{
    if (store::policyAllows(context.database, context.session.orgID, feature)) return {true, {}};
    return refused("your organisation does not allow " + feature);
}

// What a test asks for, as "set-workspace". Its name says it, and where it has a command or a type, they do.
std::string wantedBy(const xml::Node& test)
{
    const std::string_view name = test.name;
    const std::size_t dash = name.find('-');
    const xml::Node* const command = test.child("cmd");
    const xml::Node* const type = test.child("type");
    const bool bare = name == "get" || name == "set" || name == "delete";
    if (command == nullptr && type == nullptr && !bare) return test.name;
    std::string_view wantedType = dash == std::string_view::npos ? "workspace" : name.substr(dash + 1);
    if (type != nullptr) wantedType = trimmed(type->text);
    if (wantedType == "wksp") wantedType = "workspace";
    return std::string(command == nullptr ? name.substr(0, dash) : trimmed(command->text)) + '-' +
           std::string(wantedType);
}

}  // namespace

Right rightOf(const Context& context, const xml::Node& test)
{
    const std::string wanted = wantedBy(test);
    for (const WorkspaceTest& known : kWorkspaceTests) {
        if (known.name == wanted) return workspaceRight(context, known, std::string(trimmed(test.textAt("id"))));
    }
    if (std::ranges::find(kNeverDone, wanted) != kNeverDone.end()) return refused("this service has no command for it");
    return policyRight(context, wanted);
}

}  // namespace service::rules
